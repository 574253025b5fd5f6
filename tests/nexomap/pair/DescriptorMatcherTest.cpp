// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/pair/DescriptorMatcher.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <climits>
#include <random>

using namespace nexomap;

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes randomDescriptors(int count, int highest, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> value(0, highest);
    Bytes bytes(std::size_t(count) * kDescriptorBytes);
    for (std::uint8_t& byte : bytes)
        byte = std::uint8_t(value(random));
    return bytes;
}

int distance2(const Bytes& a, int i, const Bytes& b, int j)
{
    int sum = 0;
    for (int k = 0; k < kDescriptorBytes; ++k) {
        const int d =
            int(a[std::size_t(i * kDescriptorBytes + k)]) - int(b[std::size_t(j * kDescriptorBytes + k)]);
        sum += d * d;
    }
    return sum;
}

/// The definition, word for word.
std::vector<DescriptorMatch> bruteForce(const Bytes& a, const Bytes& b, double ratio)
{
    const int rows = int(a.size()) / kDescriptorBytes, columns = int(b.size()) / kDescriptorBytes;
    std::vector<int> best_row(std::size_t(columns), -1), best_of_column(std::size_t(columns), INT_MAX);
    for (int j = 0; j < columns; ++j)
        for (int i = 0; i < rows; ++i)
            if (const int d = distance2(a, i, b, j); d < best_of_column[std::size_t(j)])
                best_of_column[std::size_t(j)] = d, best_row[std::size_t(j)] = i;
    std::vector<DescriptorMatch> matches;
    for (int i = 0; i < rows; ++i) {
        int best = -1, first = INT_MAX, second = INT_MAX;
        for (int j = 0; j < columns; ++j) {
            const int d = distance2(a, i, b, j);
            if (d < first) {
                second = first, first = d, best = j;
            } else if (d < second) {
                second = d;
            }
        }
        const bool distinct = columns < 2 || first < ratio * ratio * second;
        if (best >= 0 && distinct && best_row[std::size_t(best)] == i)
            matches.push_back({i, best, first, second});
    }
    return matches;
}

void expectSame(const std::vector<DescriptorMatch>& found, const std::vector<DescriptorMatch>& expected)
{
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_EQ(found[i].index_0, expected[i].index_0);
        EXPECT_EQ(found[i].index_1, expected[i].index_1);
        EXPECT_EQ(found[i].distance2, expected[i].distance2);
    }
}

class EachKernel : public testing::TestWithParam<const MatchKernel*>
{};

} // namespace

TEST_P(EachKernel, EqualsBruteForceWhateverTheSizes)
{
    for (const auto& [rows, columns] :
         {std::pair{1, 1}, {1, 40}, {40, 1}, {3, 17}, {16, 16}, {517, 263}, {513, 1025}}) {
        const Bytes a = randomDescriptors(rows, 127, 1), b = randomDescriptors(columns, 127, 2);
        expectSame(matchDescriptors(a, b, 1.0, GetParam()), bruteForce(a, b, 1.0));
    }
}

TEST_P(EachKernel, EqualsBruteForceAmongManyTies)
{
    const Bytes a = randomDescriptors(300, 1, 3);
    Bytes b = randomDescriptors(150, 1, 4);
    b.insert(b.end(), b.begin(), b.end()); // every column twice
    expectSame(matchDescriptors(a, b, 1.0, GetParam()), bruteForce(a, b, 1.0));
    expectSame(matchDescriptors(b, b, 1.0, GetParam()), bruteForce(b, b, 1.0));
}

TEST_P(EachKernel, LargestValuesDoNotOverflow)
{
    Bytes a(std::size_t(8) * kDescriptorBytes, 127), b = a;
    for (std::size_t i = 0; i < 8; ++i)
        a[i * kDescriptorBytes + i] = b[i * kDescriptorBytes + i] = 0;
    const auto matches = matchDescriptors(a, b, 0.85, GetParam());
    ASSERT_EQ(matches.size(), 8u);
    for (const DescriptorMatch& match : matches) {
        EXPECT_EQ(match.index_0, match.index_1);
        EXPECT_EQ(match.distance2, 0);
        EXPECT_EQ(match.second_distance2, 2 * 127 * 127);
    }
}

TEST_P(EachKernel, FindsThePartnersOfNoisyCopies)
{
    const Bytes a = randomDescriptors(700, 40, 5);
    Bytes b = a;
    std::mt19937 random(6);
    for (std::uint8_t& byte : b)
        byte = std::uint8_t(byte + random() % 4);
    const auto matches = matchDescriptors(a, b, 0.85, GetParam());
    EXPECT_EQ(matches.size(), 700u);
    for (const DescriptorMatch& match : matches)
        EXPECT_EQ(match.index_0, match.index_1);
}

INSTANTIATE_TEST_SUITE_P(DescriptorMatcher, EachKernel, testing::ValuesIn(availableMatchKernels()),
                         [](const auto& info) {
                             std::string name = info.param->name;
                             for (char& c : name)
                                 if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                             return name;
                         });

TEST(DescriptorMatcher, NothingMatchesNothing)
{
    const Bytes some = randomDescriptors(5, 127, 1);
    EXPECT_TRUE(matchDescriptors({}, {}, 0.85).empty());
    EXPECT_TRUE(matchDescriptors(some, {}, 0.85).empty());
    EXPECT_TRUE(matchDescriptors({}, some, 0.85).empty());
}

TEST(DescriptorMatcher, OneThreadAndTwoGiveTheSame)
{
    const Bytes a = randomDescriptors(2000, 20, 7), b = randomDescriptors(1500, 20, 8);
    const int threads = cv::getNumThreads();
    cv::setNumThreads(1);
    const auto one = matchDescriptors(a, b, 1.0);
    cv::setNumThreads(2);
    const auto two = matchDescriptors(a, b, 1.0);
    cv::setNumThreads(threads);
    expectSame(two, one);
}
