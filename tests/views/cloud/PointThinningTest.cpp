// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/cloud/PointThinning.h"

#include "tests/views/cloud/CloudFixture.h"

#include <map>

class PointThinning : public CloudFixture
{
protected:
    std::vector<std::size_t> thinned() const
    {
        const auto set = cloud::thinnedPoints(cloud);
        EXPECT_TRUE(set);
        std::vector<std::size_t> points;
        for (std::size_t i = 0; set && i < cloud.size(); ++i) {
            if (set->contains(i)) points.push_back(i);
        }
        EXPECT_EQ(points.size(), set->size());
        return points;
    }

    /// The rule as a person would apply it.
    std::vector<std::size_t> byHand() const
    {
        const quint64 width = quint64(bytes.gridWidth) * bytes.refinement;
        const quint64 cells = width * bytes.gridHeight * bytes.refinement;
        std::map<quint64, int> counted;
        std::vector<std::size_t> points;
        for (std::size_t i = 0; i < bytes.points.size(); ++i) {
            const quint64 cell = width * bytes.points[i].y + bytes.points[i].x;
            if (cell < cells && counted[cell]++ < 5) points.push_back(i);
        }
        return points;
    }
};

TEST_F(PointThinning, TheFirstFiveOfACellStayInTheOrderOfTheFile)
{
    for (unsigned i = 0; i < 20; ++i)
        bytes.points.push_back({i % 2 + 10, 7, i});
    make(bytes);
    EXPECT_EQ(thinned(), (std::vector<std::size_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST_F(PointThinning, TheHeightOfPointsDoesNotCount)
{
    for (unsigned i = 0; i < 7; ++i)
        bytes.points.push_back({3, 4, 100 * i});
    make(bytes);
    EXPECT_EQ(thinned().size(), 5u);
}

TEST_F(PointThinning, ManyPointsOnManyThreadsStayTheSame)
{
    bytes.gridWidth = 150;
    bytes.gridHeight = 100;
    bytes.refinement = 2;
    bytes.points = CloudBytes::randomPoints(1100000, 300, 200, 50);
    make(bytes);
    const auto expected = byHand();
    EXPECT_GT(expected.size(), 290000u);
    EXPECT_LT(expected.size(), bytes.points.size());
    EXPECT_EQ(thinned(), expected);
}

TEST_F(PointThinning, PointsBeyondTheLastCellAreLeftOut)
{
    bytes.gridWidth = 10;
    bytes.gridHeight = 10;
    bytes.points = CloudBytes::randomPoints(5000, 65536, 65536, 65536);
    for (unsigned i = 0; i < 5; ++i)
        bytes.points.push_back({i, 9, 0});
    bytes.points.push_back({10, 9, 0}); // the first cell beyond
    make(bytes);
    EXPECT_EQ(thinned(), byHand());
    EXPECT_GE(thinned().size(), 5u);
}

TEST_F(PointThinning, AGridWithoutCellsKeepsNoPoint)
{
    bytes.gridHeight = 0;
    bytes.points = {{1, 1, 1}};
    make(bytes);
    EXPECT_TRUE(thinned().empty());
}
