// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The maker's small parts.
#include "companions/pnomaker/ContentHash.h"
#include "companions/pnomaker/Labels.h"
#include "companions/pnomaker/Pyramid.h"
#include "companions/pnomaker/Resampler.h"
#include "companions/pnomaker/Stripe.h"
#include "companions/pnomaker/WorkerPool.h"
#include "project/PanoIdentity.h"

#include <atomic>
#include <gtest/gtest.h>
#include <numeric>
#include <stdexcept>

namespace {

using namespace pnomaker;

TEST(Labels, AnIdReadsBackAsItsNumber)
{
    for (const std::uint64_t number :
         {std::uint64_t(0), std::uint64_t(1), std::uint64_t(123456789), ~std::uint64_t(0)}) {
        const std::string id = idFromNumber(number);
        EXPECT_TRUE(isId(id)) << id;
        EXPECT_EQ(panoIdFromName(id), number);
    }
}

TEST(Labels, NamesArePaddedToFourBytes)
{
    EXPECT_EQ(fittedName(""), "____");
    EXPECT_EQ(fittedName("ab"), "ab__");
    EXPECT_EQ(fittedName("é"), "é__");
    EXPECT_EQ(fittedName("abcd"), "abcd");
}

TEST(Labels, NamesAreCutBetweenCharactersAtThirtyOneBytes)
{
    EXPECT_EQ(fittedName(std::string(40, 'a')), std::string(31, 'a'));
    EXPECT_EQ(fittedName(std::string(31, 'a')), std::string(31, 'a'));
    // Ten characters of three bytes fit, the eleventh would reach byte 33.
    std::string ten;
    for (int i = 0; i < 10; ++i)
        ten += "厅";
    EXPECT_EQ(fittedName(ten + "厅"), ten);
    EXPECT_EQ(fittedName(std::string(30, 'a') + "é"), std::string(30, 'a'));
}

TEST(Labels, ControlCharactersDoNotEnterNames)
{
    EXPECT_EQ(fittedName("a\nb\tc"), "a_b_c");
}

TEST(ContentHash, DoesNotDependOnHowTheBytesAreCut)
{
    std::vector<std::uint8_t> bytes(1000);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t(3));
    ContentHash whole;
    whole.add(bytes.data(), bytes.size());
    for (const std::size_t cut : {1u, 7u, 32u, 33u, 999u}) {
        ContentHash parts;
        for (std::size_t at = 0; at < bytes.size(); at += cut)
            parts.add(bytes.data() + at, std::min(cut, bytes.size() - at));
        EXPECT_EQ(parts.value(), whole.value()) << cut;
    }
}

TEST(ContentHash, EveryByteCounts)
{
    std::vector<std::uint8_t> bytes(100);
    ContentHash plain;
    plain.add(bytes.data(), bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] ^= 1;
        ContentHash changed;
        changed.add(bytes.data(), bytes.size());
        EXPECT_NE(changed.value(), plain.value()) << i;
        bytes[i] ^= 1;
    }
}

TEST(Pyramid, OddTopLevelsHaveTheRoundedGrid)
{
    const Pyramid pyramid = fullSpherePyramid(11);
    EXPECT_EQ(pyramid.levels[11].width, 11585);
    EXPECT_EQ(pyramid.levels[11].height, 5793);
    EXPECT_EQ(pyramid.levels[11].columns, 46);
    EXPECT_EQ(pyramid.levels[11].rows, 23);
    EXPECT_EQ(pyramid.levels[10].width, 8192);
    EXPECT_EQ(pyramid.levels[1].width, 362);
    EXPECT_EQ(pyramid.levels[1].height, 181);
    EXPECT_EQ(pyramid.levels[0].columns * pyramid.levels[0].rows, 1);
}

TEST(Pyramid, TheTopLevelIsTheSmallestThatKeepsTheWidth)
{
    EXPECT_EQ(topLevelForWidth(256), 10);
    EXPECT_EQ(topLevelForWidth(8192), 10);
    EXPECT_EQ(topLevelForWidth(8193), 11);
    EXPECT_EQ(topLevelForWidth(11585), 11);
    EXPECT_EQ(topLevelForWidth(11586), 12);
    EXPECT_EQ(topLevelForWidth(60000), 12);
}

TEST(AxisWeights, AlwaysSumToOne)
{
    for (const int outputs : {1, 7, 71, 99, 100, 150, 1000}) {
        const AxisWeights weights(100, outputs, 0, 100.0 / outputs, true);
        for (const Taps& taps : weights.taps)
            EXPECT_EQ(
                std::accumulate(&weights.values[taps.weights], &weights.values[taps.weights] + taps.count, 0),
                1 << 14)
                << outputs;
    }
}

TEST(AxisWeights, ShrinkingCountsEveryInputAsOftenAsAnyOther)
{
    const AxisWeights weights(1448, 1024, 0, 1448.0 / 1024, true);
    std::vector<double> counted(1448);
    for (const Taps& taps : weights.taps)
        for (int k = 0; k < taps.count; ++k)
            counted[static_cast<std::size_t>((taps.first + k) % 1448)] += weights.values[taps.weights + k];
    for (const double sum : counted)
        EXPECT_NEAR(sum, 16384.0 * 1024 / 1448, 4);
}

/// Compares with the same sums in floating point.
void expectAreaAverage(int inWidth, int inHeight, int outWidth, int outHeight)
{
    auto stripe = std::make_shared<Stripe>(0, inHeight, inWidth, 0, inHeight);
    std::uint32_t state = 1;
    for (int i = 0; i < inWidth * inHeight * 3; ++i) {
        state = state * 1664525u + 1013904223u;
        stripe->bytes[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(state >> 24);
    }
    StripeWindow window;
    window.stripes.push_back(stripe);
    const double stepX = static_cast<double>(inWidth) / outWidth,
                 stepY = static_cast<double>(inHeight) / outHeight;
    const Resampler resampler(inWidth, inHeight, outWidth, outHeight, 0, stepY);
    std::vector<std::uint8_t> row(static_cast<std::size_t>(outWidth) * 3);
    std::vector<std::int16_t> scratch;
    for (int y = 0; y < outHeight; ++y) {
        resampler.makeRow(window, y, row.data(), scratch);
        for (int x = 0; x < outWidth; ++x)
            for (int c = 0; c < 3; ++c) {
                double sum = 0;
                for (int v = 0; v < inHeight; ++v)
                    for (int u = 0; u < inWidth; ++u) {
                        const double w =
                            std::min<double>(u + 1, (x + 1) * stepX) - std::max<double>(u, x * stepX);
                        const double h =
                            std::min<double>(v + 1, (y + 1) * stepY) - std::max<double>(v, y * stepY);
                        if (w > 0 && h > 0) sum += w * h * stripe->row(v)[3 * u + c];
                    }
                ASSERT_NEAR(row[static_cast<std::size_t>(3 * x + c)], sum / (stepX * stepY), 0.52)
                    << x << ", " << y;
            }
    }
}

TEST(Resampler, ShrinkingIsTheExactAreaAverage)
{
    expectAreaAverage(64, 32, 32, 16);
    expectAreaAverage(64, 32, 45, 23);
    expectAreaAverage(64, 32, 63, 31);
    expectAreaAverage(64, 32, 7, 3);
    expectAreaAverage(64, 32, 1, 1);
    expectAreaAverage(64, 32, 64, 32);
}

TEST(WorkerPool, ForEachRunsEveryIndexOnceAheadOfQueuedJobs)
{
    WorkerPool pool(3);
    std::atomic<int> jobs{0};
    for (int i = 0; i < 50; ++i)
        pool.submit([&] { ++jobs; });
    std::vector<int> seen(1000);
    pool.forEach(1000, [&](int i) { ++seen[static_cast<std::size_t>(i)]; });
    EXPECT_EQ(seen, std::vector<int>(1000, 1));
}

TEST(WorkerPool, FinishesQueuedJobsBeforeItGoes)
{
    std::atomic<int> jobs{0};
    {
        WorkerPool pool(2);
        for (int i = 0; i < 100; ++i)
            pool.submit([&] { ++jobs; });
    }
    EXPECT_EQ(jobs, 100);
}

TEST(WorkerPool, HandsOnWhatABodyThrows)
{
    WorkerPool pool(2);
    EXPECT_THROW(pool.forEach(10,
                              [](int i) {
                                  if (i == 7) throw std::runtime_error("seven");
                              }),
                 std::runtime_error);
}

} // namespace
