// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/cloud/PointDeletion.h"

#include "tests/views/cloud/CloudFixture.h"
#include "tests/views/cloud/ProjectionAnew.h"

#include <climits>
#include <cmath>

using namespace cloud;

class PointDeletion : public CloudFixture
{
protected:
    PointDeletion()
    {
        bytes.originX = 50000;
        bytes.originY = 30000;
        bytes.divisor = 2;
        bytes.points = CloudBytes::randomPoints(60000, 1000, 800, 200);
    }

    ScenePoint sceneOf(const CloudDot& dot) const
    {
        return {(dot.x + 0.5) / 50 - 5, (dot.y + 0.5) / 50 - 3, (dot.z + 0.5) / 50};
    }

    /// Checks the points of a box against those of the projection written anew.
    /// @return how many lie in the box
    std::size_t expectSame(const Camera& camera, ViewSize size, const QRect& box)
    {
        const PointSet found = pointsInBox(cloud, camera, size, box);
        std::size_t inside = 0, wrong = 0;
        for (std::size_t i = 0; i < bytes.points.size(); ++i) {
            const PixelPlace place = anew::place(sceneOf(bytes.points[i]), camera, size);
            // Sums in another order may differ in the last bits: a point on the border belongs to either.
            constexpr double hair = 1e-7;
            if (std::abs(place.x - std::round(place.x)) < hair ||
                std::abs(place.y - std::round(place.y)) < hair)
                continue;
            const bool in = box.contains(int(std::trunc(place.x)), int(std::trunc(place.y)));
            inside += in;
            wrong += in != found.contains(i);
        }
        EXPECT_EQ(wrong, 0u) << "rotation " << camera.rotation << " tilt " << camera.tilt << " zoom "
                             << camera.zoom << " box " << box.left() << ',' << box.top() << ' ' << box.right()
                             << ',' << box.bottom();
        return inside;
    }
};

TEST_F(PointDeletion, TheBoxTakesThePointsThatAProjectionWrittenAnewPutsIntoIt)
{
    make(bytes);
    std::size_t inside = 0;
    for (const double rotation : {0.0, 0.9, -3.0}) {
        for (const double tilt : {0.0, kFirstTilt, kHalfPi}) {
            for (const double zoom : {0.1, 0.37, 1.0}) {
                const Camera camera{rotation, tilt, zoom, 4.1, 3.3, 50};
                inside += expectSame(camera, {542, 463}, QRect(QPoint(200, 150), QPoint(330, 300)));
                inside += expectSame(camera, {1001, 700}, QRect(QPoint(400, 320), QPoint(401, 420)));
            }
        }
    }
    EXPECT_GT(inside, 30000u);
}

TEST_F(PointDeletion, ABoxDrawnBackwardsTakesTheSamePoints)
{
    make(bytes);
    const Camera camera{0.4, 0.6, 0.5, 4, 3, 50};
    const auto words = [&](QPoint from, QPoint to) {
        return pointsInBox(cloud, camera, {542, 463}, QRect(from, to)).words();
    };
    const auto forwards = words({150, 120}, {400, 300});
    EXPECT_EQ(words({400, 300}, {150, 120}), forwards);
    EXPECT_EQ(words({150, 300}, {400, 120}), forwards);
    EXPECT_EQ(words({400, 120}, {150, 300}), forwards);
    EXPECT_GT(expectSame(camera, {542, 463}, QRect(QPoint(400, 300), QPoint(150, 120))), 300u);
}

TEST_F(PointDeletion, EveryKindOfBoxIsTakenAsTheToolkitDoes)
{
    // One point in each pixel around the view's top left corner, also outside of the view.
    bytes = {};
    bytes.points.clear();
    for (unsigned x = 0; x < 12; ++x) {
        for (unsigned y = 0; y < 12; ++y)
            bytes.points.push_back({x, y, 0});
    }
    make(bytes);
    const ViewSize size{400, 300};
    const Camera camera{0, 0, 1, 1.5 + 0.055, 2.0 + 0.055, 100};
    for (int x1 = -7; x1 <= 7; ++x1) {
        for (int x2 = -7; x2 <= 7; ++x2) {
            const QRect wide(QPoint(x1, -3), QPoint(x2, 2)), tall(QPoint(-2, x1), QPoint(3, x2));
            for (const QRect& box : {wide, tall}) {
                const PointSet found = pointsInBox(cloud, camera, size, box);
                for (std::size_t i = 0; i < cloud.size(); ++i) {
                    const Quantisation scene(cloud.header());
                    const Pixel pixel = pixelOf({scene.x(cloud.x(i)), scene.y(cloud.y(i)), 0}, camera, size);
                    ASSERT_EQ(found.contains(i), box.contains(pixel.x, pixel.y))
                        << pixel.x << ',' << pixel.y << " box " << x1 << ' ' << x2;
                }
            }
        }
    }
}

TEST_F(PointDeletion, AnEmptyBoxTakesNothing)
{
    make(bytes);
    const Camera camera{0, 0, 0.1, 5, 5, 50};
    EXPECT_EQ(pointsInBox(cloud, camera, {542, 463}, QRect(-1, -1, 0, 0)).size(), 0u);
    EXPECT_EQ(pointsInBox(cloud, camera, {542, 463}, QRect(270, 230, 0, 0)).size(), 0u);
}

TEST_F(PointDeletion, PlacesBeyondAllWholeNumbersAreInNoBox)
{
    bytes = {};
    bytes.refinement = 4000000000u;
    bytes.gridWidth = 0;
    bytes.points = {{0, 0, 0}, {65535, 65535, 65535}};
    make(bytes);
    const Camera camera{0.7, 0.5, 1, 1e6, -1e6, Quantisation(cloud.header()).steps};
    EXPECT_EQ(pointsInBox(cloud, camera, {542, 463}, QRect(QPoint(-1000, -1000), QPoint(1000, 1000))).size(),
              0u);
}

TEST_F(PointDeletion, TheOthersStayInTheirOrderPlaneByPlane)
{
    make(bytes);
    const Camera camera{0.4, 0.6, 0.5, 4, 3, 50};
    const PointSet gone = pointsInBox(cloud, camera, {542, 463}, QRect(100, 100, 200, 200));
    const auto rest = without(gone, cloud);
    ASSERT_TRUE(rest);
    CloudBytes expected = bytes;
    expected.points.clear();
    for (std::size_t i = 0; i < bytes.points.size(); ++i) {
        if (!gone.contains(i)) expected.points.push_back(bytes.points[i]);
    }
    EXPECT_GT(gone.size(), 300u);
    EXPECT_EQ(rest->size(), expected.points.size());
    ASSERT_TRUE(writePointCloud(pathOf(), *rest));
    EXPECT_EQ(readBytes(pathOf()), expected.file());
}

TEST_F(PointDeletion, AnyNumberOfPointsMayStayOrGo)
{
    for (const std::size_t count : {0u, 1u, 63u, 64u, 65u, 1023u, 1024u, 1025u, 131073u}) {
        bytes.points = CloudBytes::randomPoints(count, 1000, 800, 200);
        make(bytes);
        PointSet some(count), all(count);
        for (std::size_t i = 0; i < count; ++i) {
            all.insert(i);
            if (i % 3 == 0) some.insert(i);
        }
        EXPECT_EQ(without(PointSet(count), cloud)->size(), count);
        EXPECT_EQ(without(some, cloud)->size(), count - (count + 2) / 3);
        const auto none = without(all, cloud);
        EXPECT_EQ(none->size(), 0u);
        EXPECT_EQ(none->header().dataBytes(), 0u);
    }
}
