// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Work by several threads that is taken in order, and how it ends when something fails.

#include "nexomap/src/merge/OrderedWork.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>

using namespace nexomap;

namespace {

TEST(OrderedWork, ResultsAreTakenOnceEachAndInOrder)
{
    for (const std::size_t jobs : {0, 1, 2, 100})
        for (const std::size_t threads : {1, 2, 5}) {
            std::vector<std::size_t> numbers;
            OrderedWork<std::size_t>(jobs, threads)
                .run([] { return [](std::size_t job, std::size_t* result) { *result = job * job; }; },
                     [&](std::size_t job, std::size_t result) {
                         EXPECT_EQ(result, job * job);
                         numbers.push_back(job);
                     });
            ASSERT_EQ(numbers.size(), jobs);
            for (std::size_t k = 0; k < jobs; ++k)
                EXPECT_EQ(numbers[k], k);
        }
}

TEST(OrderedWork, NoMoreJobsAreBegunThanResultsAreKeptFor)
{
    std::atomic<std::size_t> begun{0};
    std::size_t taken = 0, farthest = 0;
    OrderedWork<int>(200, 2).run([&] { return [&](std::size_t, int*) { ++begun; }; },
                                 [&](std::size_t, int) { farthest = std::max(farthest, begun - taken++); });
    EXPECT_LE(farthest, 5u); // four results, and the one that is being taken
}

TEST(OrderedWork, AFailureOfAnySideEndsAllAndComesOut)
{
    const auto works = [] { return [](std::size_t, int*) {}; };
    const auto takes = [](std::size_t, int) {};
    using Failing = std::runtime_error;
    EXPECT_THROW(OrderedWork<int>(50, 3).run(works,
                                             [](std::size_t job, int) {
                                                 if (job == 7) throw Failing("taking");
                                             }),
                 Failing);
    EXPECT_THROW(OrderedWork<int>(50, 3).run(
                     [] {
                         return [](std::size_t job, int*) {
                             if (job == 7) throw Failing("working");
                         };
                     },
                     takes),
                 Failing);
    const auto unmade = []() {
        throw Failing("making");
        return [](std::size_t, int*) {};
    };
    EXPECT_THROW(OrderedWork<int>(50, 3).run(unmade, takes), Failing);
}

} // namespace
