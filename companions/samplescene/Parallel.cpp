// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Parallel.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace samplescene {

void parallelFor(std::size_t count, std::size_t piece, int threads,
                 const std::function<void(std::size_t, std::size_t)>& work)
{
    std::atomic<std::size_t> next{0};
    const auto loop = [&] {
        for (;;) {
            const std::size_t begin = next.fetch_add(piece);
            if (begin >= count) return;
            work(begin, std::min(count, begin + piece));
        }
    };
    const unsigned wanted =
        threads > 0 ? static_cast<unsigned>(threads) : std::thread::hardware_concurrency();
    std::vector<std::thread> helpers;
    for (unsigned i = 1; i < wanted && i * piece < count; ++i)
        helpers.emplace_back(loop);
    loop();
    for (std::thread& helper : helpers)
        helper.join();
}

} // namespace samplescene
