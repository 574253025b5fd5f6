// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnomaker/WorkerPool.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <memory>

namespace pnomaker {

WorkerPool::WorkerPool(int threads)
{
    const int count =
        threads > 0 ? threads : std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
    for (int i = 0; i < count; ++i)
        m_threads.emplace_back([this] { run(); });
}

WorkerPool::~WorkerPool()
{
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_stop = true;
    }
    m_wake.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
}

void WorkerPool::submit(std::function<void()> job)
{
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_jobs.push_back(std::move(job));
    }
    m_wake.notify_one();
}

void WorkerPool::forEach(int count, const std::function<void(int)>& body)
{
    /// Shared by the threads that take part, some of which may start only after everything is done.
    struct Share
    {
        std::function<void(int)> body;
        int count = 0;
        std::atomic<int> next{0};
        std::atomic<int> done{0};
        std::mutex lock;
        std::condition_variable finished;
        std::exception_ptr problem;

        void work()
        {
            for (int i = next++; i < count; i = next++) {
                try {
                    body(i);
                } catch (...) {
                    const std::lock_guard<std::mutex> guard(lock);
                    problem = std::current_exception();
                }
                if (++done == count) {
                    const std::lock_guard<std::mutex> guard(lock);
                    finished.notify_all();
                }
            }
        }
    };
    if (count <= 0) return;
    const auto share = std::make_shared<Share>();
    share->body = body;
    share->count = count;
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        const int partners = std::min(count - 1, static_cast<int>(m_threads.size()));
        for (int i = 0; i < partners; ++i)
            m_jobs.emplace_front([share] { share->work(); });
    }
    m_wake.notify_all();
    share->work();
    std::unique_lock<std::mutex> guard(share->lock);
    share->finished.wait(guard, [&] { return share->done == share->count; });
    if (share->problem) std::rethrow_exception(share->problem);
}

void WorkerPool::run()
{
    std::unique_lock<std::mutex> guard(m_lock);
    for (;;) {
        m_wake.wait(guard, [this] { return m_stop || !m_jobs.empty(); });
        if (m_jobs.empty()) return;
        const std::function<void()> job = std::move(m_jobs.front());
        m_jobs.pop_front();
        guard.unlock();
        job();
        guard.lock();
    }
}

} // namespace pnomaker
