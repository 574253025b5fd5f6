// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/WorkerQueue.h"

namespace albumd {
namespace {

thread_local bool t_refusing = false;

} // namespace

WorkerQueue::WorkerQueue(int threads, std::size_t mostWaiting, std::function<void()> onPressure)
    : m_mostWaiting(mostWaiting)
    , m_onPressure(std::move(onPressure))
{
    for (int i = 0; i < threads; ++i)
        m_threads.emplace_back([this] { run(); });
}

bool WorkerQueue::refusing()
{
    return t_refusing;
}

void WorkerQueue::enqueue(std::function<void()> work)
{
    bool full = false;
    bool pressure = false;
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        full = m_waiting.size() >= m_mostWaiting;
        if (!full) m_waiting.push_back(std::move(work));
        pressure = m_waiting.size() > static_cast<std::size_t>(m_idle);
    }
    if (pressure) m_onPressure();
    if (!full) {
        m_something.notify_one();
        return;
    }
    t_refusing = true;
    work();
    t_refusing = false;
}

void WorkerQueue::shutdown()
{
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_ending = true;
    }
    m_something.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
    m_threads.clear();
}

void WorkerQueue::run()
{
    std::unique_lock<std::mutex> guard(m_lock);
    for (;;) {
        ++m_idle;
        m_something.wait(guard, [this] { return m_ending || !m_waiting.empty(); });
        --m_idle;
        if (m_waiting.empty()) return;
        const std::function<void()> work = std::move(m_waiting.front());
        m_waiting.pop_front();
        guard.unlock();
        work();
        guard.lock();
    }
}

} // namespace albumd
