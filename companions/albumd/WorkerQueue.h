// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A fixed number of threads, and a queue of connections that has an end.

#pragma once

#include <httplib.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace albumd {

class WorkerQueue : public httplib::TaskQueue
{
public:
    /// @param onPressure  called when work comes and no thread is free for it
    WorkerQueue(int threads, std::size_t mostWaiting, std::function<void()> onPressure);

    /// Work that finds the queue full is run at once, on the caller's thread, with `refusing` true: it is to
    /// do no more than send the client away.
    void enqueue(std::function<void()> work) override;
    void shutdown() override;

    static bool refusing();

private:
    void run();

    std::mutex m_lock;
    std::condition_variable m_something;
    std::deque<std::function<void()>> m_waiting;
    std::size_t m_mostWaiting;
    int m_idle = 0;
    bool m_ending = false;
    std::function<void()> m_onPressure;
    std::vector<std::thread> m_threads;
};

} // namespace albumd
