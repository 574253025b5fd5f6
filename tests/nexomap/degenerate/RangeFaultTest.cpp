// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Ranges that are not what the picture shows: holes, noise, turned maps, other units.

#include "tests/nexomap/degenerate/DegenerateFixture.h"

using namespace nexomap;

namespace {

class DegenerateRange : public Degenerate
{
protected:
    const std::vector<RigidPose> m_stations = {standAt(1.5, 2.8, 1.5, 0.4), standAt(4.3, 1.6, 1.52, -1.9),
                                               standAt(2.8, 3.3, 1.5, 1.6)};

    /// Three stations of one room; the ranges of the last are altered.
    template <class Alter>
    void linkWithLast(const Alter& alter)
    {
        const BoxPlace place = furnishedRoom();
        for (int k = 0; k < 3; ++k) {
            MadeUpRoom::Shot shot = place.shoot(m_stations[std::size_t(k)]);
            if (k == 2) alter(shot.range_mm);
            add(shot, m_stations[std::size_t(k)], true);
        }
        linkAll();
        EXPECT_TRUE(linked(0, 1)) << "the sound ones do without it";
        EXPECT_LT(errorOf(0, 1).metres, 0.03);
    }
};

void turnBy(cv::Mat1w& range, int columns)
{
    cv::Mat1w turned(range.size());
    for (int x = 0; x < range.cols; ++x)
        range.col(x).copyTo(turned.col((x + columns) % range.cols));
    range = turned;
}

TEST_F(DegenerateRange, AHalfMissingMapStillPlacesItsPanorama)
{
    linkWithLast([](cv::Mat1w& range) { range.colRange(0, range.cols / 2).setTo(0); });
    EXPECT_LT(errorOf(0, 2).degrees, 0.2);
    EXPECT_LT(errorOf(0, 2).metres, 0.03);
}

TEST_F(DegenerateRange, AMapOfNoiseDoesNotPlaceItsPanoramaWrong)
{
    linkWithLast([](cv::Mat1w& range) { cv::randu(range, 500, 20000); });
    EXPECT_EQ(wrongLinks(1.0, 0.1), 0);
}

TEST_F(DegenerateRange, AMapShiftedByOneColumnIsHarmless)
{
    linkWithLast([](cv::Mat1w& range) { turnBy(range, 1); });
    EXPECT_LT(errorOf(0, 2).degrees, 0.6);
    EXPECT_LT(errorOf(0, 2).metres, 0.05);
}

TEST_F(DegenerateRange, AMapTurnedByHalfATileDoesNotPlaceItsPanoramaWrong)
{
    // 128 of 8192 columns
    linkWithLast([](cv::Mat1w& range) { turnBy(range, range.cols * 128 / 8192); });
    EXPECT_EQ(wrongLinks(1.0, 0.2), 0);
}

TEST_F(DegenerateRange, AMapTurnedByAQuarterDoesNotPlaceItsPanoramaWrong)
{
    linkWithLast([](cv::Mat1w& range) { turnBy(range, range.cols / 4); });
    EXPECT_EQ(wrongLinks(1.0, 0.2), 0);
}

TEST_F(DegenerateRange, AMapInOtherUnitsDoesNotBendTheOthers)
{
    linkWithLast(
        [](cv::Mat1w& range) { range.forEach([](ushort& r, const int*) { r = ushort(r / 3.28); }); });
    EXPECT_EQ(wrongLinks(1.0, 0.2), 0);
}

TEST_F(DegenerateRange, AllMapsInOtherUnitsGiveASoundTourOfAnotherSize)
{
    const BoxPlace place = furnishedRoom();
    for (const RigidPose& station : m_stations) {
        MadeUpRoom::Shot shot = place.shoot(station);
        shot.range_mm.forEach([](ushort& r, const int*) { r = ushort(r * 3.28); });
        add(shot, station, true);
    }
    linkAll();
    EXPECT_EQ(NexomapGetPanoGroupNum(), 1);
    for (const int k : {1, 2}) {
        EXPECT_LT(errorOf(0, k).degrees, 0.3);
        EXPECT_LT(errorOf(0, k).direction_deg, 1.0);
        EXPECT_NEAR((found(k).t - found(0).t).norm(),
                    3.28 * (m_truth[std::size_t(k)].t - m_truth[0].t).norm(), 0.1);
    }
}

} // namespace
