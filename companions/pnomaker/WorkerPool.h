// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace pnomaker {

/// A fixed set of threads that take jobs in order; urgent jobs go first.
class WorkerPool
{
public:
    /// @param threads  0: one per core
    explicit WorkerPool(int threads = 0);
    ~WorkerPool(); ///< finishes the queued jobs

    int size() const { return static_cast<int>(m_threads.size()); }

    /// Queues a job, which must not throw.
    void submit(std::function<void()> job);

    /// Runs body(0) ... body(count - 1) on the pool and the calling thread, ahead of queued jobs; returns
    /// when all are done.
    void forEach(int count, const std::function<void(int)>& body);

private:
    void run();

    std::mutex m_lock;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_jobs;
    bool m_stop = false;
    std::vector<std::thread> m_threads;
};

} // namespace pnomaker
