// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// From station to station: where a visit begins, what markers do, which way the visitor looks afterwards.

#include "companions/lumiscope/pictures/LoadPlan.h"
#include "tests/lumiscope/support/ViewerTest.h"

#include <QFile>
#include <QSignalSpy>

#include <cmath>

using namespace lumiscope;

namespace {

constexpr double kDegree = sphere::kPi / 180.0;

/// Three stations, each turned otherwise; the middle one is linked to both others.
class Walk : public ViewerTest
{
protected:
    Walk()
    {
        made.addStation("AAAAAAAAAAAAAB", QStringLiteral("hall"), 2, 0, 0);
        made.addStation("AAAAAAAAAAAAAC", QStringLiteral(u"厨房 kitchen"), 7, 4, 1);
        made.addStation("AAAAAAAAAAAAAD", QStringLiteral("yard"), -3, 7, -3);
        made.link(0, 1);
        made.link(1, 2);
    }

    const Neighbour& neighbour(int index) const
    {
        return visitor().here().neighbours[static_cast<std::size_t>(index)];
    }

    /// Turns until the neighbour's marker stands about in the middle of the view's width.
    void lookAt(const Neighbour& neighbour)
    {
        for (int i = 0; i < 200; ++i) {
            const double left =
                std::remainder(neighbour.marker.azimuth - visitor().camera().yaw, 2 * sphere::kPi);
            if (std::abs(left) < 0.1) return;
            key(left > 0 ? Qt::Key_Left : Qt::Key_Right);
        }
        FAIL() << "the view does not turn";
    }

    /// What the sky shows, row by row above the middle: there are no markers.
    QImage sky() const
    {
        const QImage frame = view->grabFramebuffer();
        return frame.copy(0, 0, frame.width(), frame.height() / 3);
    }
};

/// Largest shift in pixels between where the colours of two rows change.
int shiftBetween(const QImage& a, const QImage& b)
{
    const auto edges = [](const QImage& image) {
        std::vector<int> found;
        const int row = image.height() / 2;
        for (int x = 4; x + 4 < image.width(); ++x) {
            const auto green = [&](int at) { return qGreen(image.pixel(at, row)); };
            const bool crosses = (green(x) < 130) != (green(x + 1) < 130);
            if (crosses) found.push_back(x);
        }
        return found;
    };
    const auto first = edges(a), second = edges(b);
    if (first.empty() || first.size() != second.size()) return 1000;
    int shift = 0;
    for (std::size_t i = 0; i < first.size(); ++i)
        shift = std::max(shift, std::abs(first[i] - second[i]));
    return shift;
}

TEST_F(Walk, BeginsAtTheEntryPanoramaLookingAtItsMiddle)
{
    open(made.save(1));
    EXPECT_EQ(station(), 1);
    EXPECT_NEAR(visitor().camera().yaw, 0.0, 1e-9);
    EXPECT_NEAR(visitor().look().polar, sphere::kHalfPi, 1e-9);
    EXPECT_NEAR(visitor().look().zoom, 1.0, 1e-9);
    EXPECT_NEAR(heading(), 7 * kSector, 1e-6);
    const QPoint up = view->rect().center() - QPoint(-20, 20);
    EXPECT_TRUE(sameColour(colourAt(up), worldColour(heading() - 0.03, sphere::kHalfPi - 0.03)));
    EXPECT_EQ(textOf("place"), QStringLiteral(u"厨房 kitchen"));
    EXPECT_EQ(window->windowTitle(), QStringLiteral(u"一次 tour - Lumiscope"));
}

TEST_F(Walk, TakesTheEntryViewThatTheFileStates)
{
    QFile file(made.save(0));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray turned = withDescription(
        file.readAll(), "direction=\"0\" elevation=\"1.5707963267949\" view_angle=\"1.5707963267949\"",
        "direction=\"1.25\" elevation=\"1.3\" view_angle=\"1.2\"");
    open(made.write(QStringLiteral("turned.roa"), turned));
    EXPECT_NEAR(visitor().camera().yaw, 1.25, 1e-9);
    EXPECT_NEAR(visitor().look().polar, 1.3, 1e-9);
    EXPECT_NEAR(visitor().look().zoom, 1.0 / std::tan(0.6), 1e-9);
}

TEST_F(Walk, AClickOnAFloorMarkerGoesThere)
{
    open(made.save(0));
    lookAt(neighbour(0));
    click(view, pixelOf(neighbour(0)));
    EXPECT_TRUE(arrivesAt(1));
    EXPECT_EQ(textOf("place"), QStringLiteral(u"厨房 kitchen"));
}

TEST_F(Walk, TheMarkerIsDrawnOnTheFloorBelowTheNeighbour)
{
    open(made.save(0));
    lookAt(neighbour(0));
    const Neighbour& seen = neighbour(0);
    EXPECT_NEAR(seen.marker.azimuth, std::atan2(1, 4) - 2 * kSector, 1e-6);
    EXPECT_NEAR(seen.marker.polar, sphere::kPi - std::atan2(std::hypot(4, 1), WorldTour::kHeight_m), 1e-6);
    const MarkerSpot spot = visitor().spot(seen);
    ASSERT_FALSE(spot.atEdge);
    const QPoint at = pixelOf(seen.marker.azimuth, seen.marker.polar);
    EXPECT_LE(std::abs(spot.centre.x - at.x()), 1.0);
    EXPECT_LE(std::abs(spot.centre.y - at.y()), 1.0);
    key(Qt::Key_Up); // the marker that Enter takes is orange
    key(Qt::Key_Down);
    move(QPoint(450, 20));
    const QPoint now = pixelOf(seen.marker.azimuth, seen.marker.polar);
    EXPECT_TRUE(sameColour(colourAt(now), QColor(0x2B, 0x8C, 0xFF), 40));
    EXPECT_FALSE(sameColour(colourAt(now - QPoint(0, 60)), QColor(0x2B, 0x8C, 0xFF), 40));
}

TEST_F(Walk, HeadingsAreTrueInTheWorldNotInThePicture)
{
    open(made.save(0));
    lookAt(neighbour(0));
    key(Qt::Key_Left, 3);
    ASSERT_TRUE(waitFor([&] { return view->shownWidth(0) == kSharpWidth; }));
    const double before = heading();
    const double yawBefore = visitor().camera().yaw;
    const QImage sky0 = sky();
    std::vector<double> whileWalking;
    QObject::connect(view, &WalkView::painted, view, [&] { whileWalking.push_back(heading()); });
    key(Qt::Key_Return);
    ASSERT_TRUE(arrivesAt(1));
    ASSERT_TRUE(waitFor([&] { return view->shownWidth(1) == kSharpWidth; }));
    ASSERT_GE(whileWalking.size(), 2u);
    for (const double each : whileWalking)
        EXPECT_NEAR(each, before, kDegree);
    EXPECT_NEAR(visitor().camera().yaw, yawBefore + 2 * kSector - 7 * kSector, 1e-6);
    // At 900 pixels for 90 degrees, one degree in the middle is 7.8 pixels.
    EXPECT_LE(shiftBetween(sky0, sky()), 3);
}

TEST_F(Walk, ShowsBothPanoramasOnTheWayAndStopsPaintingAfterwards)
{
    open(made.save(0));
    lookAt(neighbour(0));
    ASSERT_TRUE(waitFor([&] { return view->isReady(1); }));
    QSignalSpy walked(view, &WalkView::walked);
    key(Qt::Key_Return);
    EXPECT_TRUE(view->isWalking());
    ASSERT_TRUE(walked.wait(kPatience_ms));
    EXPECT_FALSE(view->isWalking());
    ASSERT_TRUE(
        waitFor([&] { return view->shownWidth(1) == kSharpWidth && view->shownWidth(2) == kSharpWidth; }));
    QSignalSpy painted(view, &WalkView::painted);
    EXPECT_FALSE(painted.wait(300));
}

TEST_F(Walk, HoveringAMarkerTellsNameAndDistance)
{
    open(made.save(0));
    lookAt(neighbour(0));
    EXPECT_FALSE(shown("hover"));
    ASSERT_TRUE(waitFor([&] { return !window->tour().stations[1].node.base_name.isEmpty(); }));
    move(pixelOf(neighbour(0)));
    EXPECT_TRUE(waitFor([&] { return shown("hover"); }));
    EXPECT_EQ(textOf("hover"), QStringLiteral(u"厨房 kitchen (4.1 m)"));
    EXPECT_EQ(view->cursor().shape(), Qt::PointingHandCursor);
    move(QPoint(450, 20));
    EXPECT_TRUE(waitFor([&] { return !shown("hover"); }));
    EXPECT_EQ(view->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(Walk, EnterGoesToTheMarkerInViewAndNowhereWithoutOne)
{
    open(made.save(0));
    key(Qt::Key_Left, 6); // the marker leaves to the right
    ASSERT_FALSE(visitor().markerInView());
    key(Qt::Key_Return);
    EXPECT_FALSE(view->isWalking());
    lookAt(neighbour(0));
    key(Qt::Key_Enter);
    EXPECT_TRUE(arrivesAt(1));
}

TEST_F(Walk, AMarkerBelowTheViewStandsAtItsLowerEdge)
{
    made.addStation("AAAAAAAAAAAAAE", QStringLiteral("near"), 0, 0.5, 0);
    made.link(0, 3);
    open(made.save(0));
    lookAt(neighbour(0));
    ASSERT_EQ(neighbour(0).station, 3);
    const MarkerSpot spot = visitor().spot(neighbour(0));
    EXPECT_TRUE(spot.atEdge);
    EXPECT_TRUE(view->rect().contains(spot.target.center()));
    click(view, spot.target.center());
    EXPECT_TRUE(arrivesAt(3));
}

TEST_F(Walk, NeighboursAreLoadedAheadAndFarStationsAreNot)
{
    open(made.save(0));
    EXPECT_TRUE(
        waitFor([&] { return view->shownWidth(0) == kSharpWidth && view->shownWidth(1) == kSharpWidth; }));
    EXPECT_FALSE(view->isReady(2));
    lookAt(neighbour(0));
    key(Qt::Key_Return);
    ASSERT_TRUE(arrivesAt(1));
    EXPECT_TRUE(waitFor([&] { return view->shownWidth(2) == kSharpWidth; }));
    EXPECT_TRUE(view->isReady(0));
    for (int i = 0; i < 2; ++i)
        if (neighbour(i).station == 2) lookAt(neighbour(i));
    key(Qt::Key_Return);
    ASSERT_TRUE(arrivesAt(2));
    EXPECT_TRUE(waitFor([&] { return !view->isReady(0); })); // two steps behind
}

TEST_F(Walk, APanoramaThatCannotBeReadIsToldInPlaceAndTheWayGoesOn)
{
    made.addBrokenStation("AAAAAAAAAAAAAF", QStringLiteral("broken"), 1, 3);
    made.link(0, 3);
    open(made.save(0));
    for (int i = 0; i < 2; ++i)
        if (neighbour(i).station == 3) lookAt(neighbour(i));
    ASSERT_TRUE(visitor().markerInView());
    key(Qt::Key_Return);
    ASSERT_TRUE(arrivesAt(3));
    EXPECT_TRUE(waitFor([&] { return shown("notice"); }));
    EXPECT_EQ(textOf("notice"),
              QStringLiteral("This panorama cannot be shown. Its markers and the map lead on."));
    lookAt(neighbour(0));
    click(view, pixelOf(neighbour(0)));
    EXPECT_TRUE(arrivesAt(0));
    EXPECT_TRUE(waitFor([&] { return !shown("notice"); }));
}

TEST_F(Walk, ABrokenEntryIsToldInPlaceAndTheWayGoesOn)
{
    made.addBrokenStation("AAAAAAAAAAAAAF", QStringLiteral("broken"), 1, 3);
    made.link(3, 0);
    openAnything(made.save(3));
    ASSERT_TRUE(waitFor([&] {
        return shown("notice") &&
               textOf("notice").startsWith(QStringLiteral("This panorama cannot be shown."));
    }));
    EXPECT_TRUE(shown("map"));
    lookAt(neighbour(0));
    key(Qt::Key_Return);
    EXPECT_TRUE(arrivesAt(0));
}

TEST_F(Walk, TheTourFileStaysAsItIs)
{
    const QString path = made.save(0);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    file.close();
    QFile::setPermissions(path, QFile::ReadOwner);
    open(path);
    window.reset();
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), before);
}

} // namespace
