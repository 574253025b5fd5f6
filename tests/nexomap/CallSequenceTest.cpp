// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Random sequences of calls: no crash, and after every call counts and indices fit each other.

#include "tests/nexomap/LibraryFixture.h"
#include "tests/nexomap/RandomCalls.h"

#include <atomic>
#include <thread>

using namespace nexomap;

namespace {

class CallSequence : public LibraryTest
{
protected:
    /// Runs `work(tour, seed)` on a fresh library for each sequence.
    template <class Work>
    void forEachSequence(RandomRanges ranges, const Work& work)
    {
        const MadeUpTour tour = randomTour(ranges);
        const int first = firstSeed(11);
        const int count = sequences();
        for (int k = 0; k < count && !HasFailure(); ++k) {
            SCOPED_TRACE("seed " + std::to_string(first + k));
            startWith(randomFrontEnd(tour, ranges));
            work(tour, unsigned(first + k));
            NexomapClean();
            for (const std::string& name : folder.names())
                std::filesystem::remove(folder / name);
        }
    }
    void anyOrder(RandomRanges ranges)
    {
        forEachSequence(ranges, [&](const MadeUpTour& tour, unsigned seed) {
            RandomCalls calls(tour, folder.path(), seed);
            for (int call = 0; call < 600 && !HasFailure(); ++call) {
                SCOPED_TRACE("call " + std::to_string(call));
                ASSERT_NE(calls.next(), NEXOMAP_INTERNAL);
                ASSERT_NO_FATAL_FAILURE(expectSound());
            }
        });
    }
    void severalThreads(RandomRanges ranges)
    {
        forEachSequence(ranges, [&](const MadeUpTour& tour, unsigned seed) {
            std::atomic<int> broken{0}, done{0};
            const auto work = [&](unsigned number) {
                RandomCalls calls(tour, folder.path(), 3 * seed + number);
                for (int call = 0; call < 150; ++call) {
                    const int status = calls.next();
                    broken += status > 0 || status <= NEXOMAP_INTERNAL;
                    done += status == NEXOMAP_OK;
                }
            };
            std::thread threads[] = {std::thread(work, 0), std::thread(work, 1), std::thread(work, 2)};
            for (std::thread& thread : threads)
                thread.join();
            EXPECT_EQ(broken, 0);
            EXPECT_GT(done, 50);
            ASSERT_NO_FATAL_FAILURE(expectSound());
        });
    }
};

TEST_F(CallSequence, AnyOrderOfCallsLeavesASoundState)
{
    anyOrder(RandomRanges::All);
}

TEST_F(CallSequence, AnyOrderOfCallsWithoutLidarLeavesASoundState)
{
    anyOrder(RandomRanges::None);
}

TEST_F(CallSequence, AnyOrderOfCallsWithLidarOnSomePanoramasLeavesASoundState)
{
    anyOrder(RandomRanges::EverySecond);
}

TEST_F(CallSequence, AnyCallsFromThreeThreadsAtOnceLeaveASoundState)
{
    severalThreads(RandomRanges::All);
}

TEST_F(CallSequence, AnyCallsFromThreeThreadsAtOnceWithoutLidarLeaveASoundState)
{
    severalThreads(RandomRanges::None);
}

TEST_F(CallSequence, AnyCallsFromThreeThreadsAtOnceWithLidarOnSomePanoramasLeaveASoundState)
{
    severalThreads(RandomRanges::EverySecond);
}

} // namespace
