// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace nexomap {

/// Calls work(0) .. work(count - 1) on all processors. The first exception is thrown again here, once all
/// threads have ended.
template <class Work>
void parallelFor(int count, const Work& work)
{
    const int threads = std::min(count, std::max(1, int(std::thread::hardware_concurrency())));
    std::atomic<int> next{0};
    std::exception_ptr first;
    std::mutex lock;
    const auto loop = [&] {
        try {
            for (int k = next++; k < count; k = next++)
                work(k);
        } catch (...) {
            const std::lock_guard<std::mutex> guard(lock);
            if (!first) first = std::current_exception();
        }
    };
    std::vector<std::thread> helpers;
    try {
        for (int k = 1; k < threads; ++k)
            helpers.emplace_back(loop);
    } catch (const std::system_error&) { // no more threads to be had: those that run suffice
    }
    loop();
    for (std::thread& helper : helpers)
        helper.join();
    if (first) std::rethrow_exception(first);
}

} // namespace nexomap
