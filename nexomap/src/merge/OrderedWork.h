// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace nexomap {

/// Jobs that several threads do and one takes in order. Results are used again and again, so that after the
/// first few no job asks for memory. Failures of either side end all and come out of `run`.
template <class Result>
class OrderedWork
{
public:
    /// @param threads  at least 1
    OrderedWork(std::size_t jobs, std::size_t threads)
        : m_jobs(jobs)
        , m_threads(threads)
        , m_slots(2 * threads)
    {}

    /// @param makeWorker  called once in each thread; what it returns is called with a job's number and a
    /// pointer to the result, which still holds an earlier one
    /// @param take  called with each number in turn and its result, in the calling thread
    template <class MakeWorker, class Take>
    void run(const MakeWorker& makeWorker, const Take& take)
    {
        {
            Team team(*this);
            for (std::size_t k = 0; k < m_threads; ++k)
                team.threads.emplace_back([&] { work(makeWorker); });
            while (m_taken < m_jobs) {
                Slot& slot = m_slots[m_taken % m_slots.size()];
                {
                    std::unique_lock<std::mutex> lock(m_mutex);
                    m_filled.wait(lock, [&] { return slot.full || m_stop; });
                    if (!slot.full) break;
                }
                take(m_taken, slot.result);
                const std::lock_guard<std::mutex> lock(m_mutex);
                slot.full = false;
                ++m_taken;
                m_emptied.notify_one();
            }
        }
        if (m_failure) std::rethrow_exception(m_failure);
    }

private:
    struct Slot
    {
        Result result{};
        bool full = false;
    };
    /// Waits for the threads, whatever happens.
    struct Team
    {
        explicit Team(OrderedWork& owner)
            : work(owner)
        {}
        ~Team()
        {
            work.stop();
            for (std::thread& thread : threads)
                thread.join();
        }
        OrderedWork& work;
        std::vector<std::thread> threads;
    };

    void stop()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
        m_filled.notify_all();
        m_emptied.notify_all();
    }
    template <class MakeWorker>
    void work(const MakeWorker& makeWorker)
    {
        try {
            auto worker = makeWorker();
            for (;;) {
                std::size_t job = 0;
                {
                    std::unique_lock<std::mutex> lock(m_mutex);
                    m_emptied.wait(lock, [&] {
                        return m_stop || m_begun == m_jobs || m_begun < m_taken + m_slots.size();
                    });
                    if (m_stop || m_begun == m_jobs) return;
                    job = m_begun++;
                    if (m_begun == m_jobs) m_emptied.notify_all();
                }
                Slot& slot = m_slots[job % m_slots.size()];
                worker(job, &slot.result);
                const std::lock_guard<std::mutex> lock(m_mutex);
                slot.full = true;
                m_filled.notify_one();
            }
        } catch (...) {
            {
                const std::lock_guard<std::mutex> lock(m_mutex);
                if (!m_failure) m_failure = std::current_exception();
            }
            stop();
        }
    }

    const std::size_t m_jobs, m_threads;
    std::vector<Slot> m_slots;
    std::size_t m_begun = 0, m_taken = 0;
    bool m_stop = false;
    std::exception_ptr m_failure;
    std::mutex m_mutex;
    std::condition_variable m_filled, m_emptied;
};

} // namespace nexomap
