// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the point-cloud view paints, seen in its pictures.

#include "tests/views/cloud/CloudViewFixture.h"
#include "tests/views/cloud/ProjectionAnew.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <map>

using cloud::Camera;
using cloud::kFirstTilt;
using cloud::kHalfPi;

class CloudRendering : public CloudViewFixture
{
protected:
    /// Seven points of colours of their own, apart from each other, none near the icons in the first view.
    void makeSevenPoints()
    {
        bytes.originX = 20000; // 2 m
        bytes.originY = 15000;
        bytes.originZ = 5000;
        bytes.points = {{200, 150, 50, 255, 0, 0},     {260, 120, 50, 0, 255, 0},   {150, 220, 90, 0, 0, 255},
                        {300, 200, 10, 255, 255, 0},   {120, 70, 130, 255, 0, 255}, {240, 60, 0, 0, 255, 255},
                        {170, 130, 200, 255, 255, 255}};
    }

    /// Where the matrix, written anew, draws a point: window pixels, the first one's middle at (0.5, 0.5).
    cloud::PixelPlace drawnAt(const CloudDot& dot, const Camera& camera) const
    {
        const cloud::ViewSize size = Probe::size(*view);
        const anew::Matrix m = anew::matrix(camera, size, 0.5 / camera.scale);
        const double x = (dot.x + 0.5) / 100 - 2, y = (dot.y + 0.5) / 100 - 1.5,
                     z = (dot.z + 0.5) / 100 - 0.5;
        return {(m[0][0] * x + m[0][1] * y + m[0][2] * z + m[0][3] + 1) / 2 * size.width,
                (1 - m[1][0] * x - m[1][1] * y - m[1][2] * z - m[1][3]) / 2 * size.height};
    }

    /// @return how many of the points lie in the view, none under an icon or another point
    int expectPointsInPlace(const Camera& wanted)
    {
        const QImage picture = frame(wanted);
        const Camera camera = Probe::camera(*view);
        const double scale = picture.devicePixelRatio();
        std::multimap<QRgb, QPoint> lit;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixel(x, y) != qRgb(0, 0, 0)) lit.emplace(picture.pixel(x, y), QPoint(x, y));
            }
        }
        int seen = 0;
        for (const CloudDot& dot : bytes.points) {
            const cloud::PixelPlace at = drawnAt(dot, camera);
            const QPoint near(int(at.x), int(at.y));
            if (!QRect({0, 0}, view->size()).adjusted(2, 2, -2, -2).contains(near) ||
                QRect(0, 0, 100, 60).contains(near))
                continue;
            const QRgb colour = qRgb(int(dot.red), int(dot.green), int(dot.blue));
            EXPECT_EQ(lit.count(colour), 1u) << "a point is one pixel";
            if (lit.count(colour) != 1) continue;
            const QPoint found = lit.find(colour)->second;
            // The pixel that holds the place; single precision may tip it over a border.
            EXPECT_NEAR(found.x() + 0.5, at.x * scale, 0.51) << "rotation " << camera.rotation;
            EXPECT_NEAR(found.y() + 0.5, at.y * scale, 0.51) << "rotation " << camera.rotation;
            // The pixel by which points are deleted leaves the half step between the two to the eye.
            EXPECT_LE(std::abs(found.x() / scale - pixelOf(dot).x()), 2);
            EXPECT_LE(std::abs(found.y() / scale - pixelOf(dot).y()), 2);
            ++seen;
        }
        return seen;
    }
};

TEST_F(CloudRendering, WithoutACloudTheViewIsGreyWithoutIcons)
{
    show();
    const QImage picture = frame();
    EXPECT_EQ(countOf(picture, kGrey), picture.width() * picture.height());
}

TEST_F(CloudRendering, ZeroPointsLoadAnEmptyCloudOnBlackWithIcons)
{
    show();
    load();
    const QImage picture = frame();
    EXPECT_EQ(countOf(picture, kGrey), 0);
    EXPECT_GT(countOf(picture, kBox), 0);
    EXPECT_EQ(picture.pixel(300, 300), QColor(Qt::black).rgb());
}

TEST_F(CloudRendering, ARefusedFileEmptiesTheView)
{
    show();
    bytes.points = CloudBytes::randomPoints(50, 300, 300, 100);
    const QByteArray good = bytes.file();
    for (const QByteArray& bad : {QByteArray(), good.left(55), good + 'x', withField(good, 48, 4294967295u),
                                  withField(good, 12, 0), withField(good, 12, 101), withField(good, 32, 0),
                                  withField(good, 36, 0), withField(good, 20, 4294967295u)}) {
        load(good);
        EXPECT_EQ(countOf(frame(), kGrey), 0);
        load(bad);
        const QImage picture = frame();
        EXPECT_EQ(countOf(picture, kGrey), picture.width() * picture.height());
        EXPECT_EQ(Probe::heldPoints(*view), 0u);
    }
    load(good);
    view->LoadPointCloud(path() + QStringLiteral(".missing"));
    EXPECT_GT(countOf(frame(), kGrey), 0);
}

TEST_F(CloudRendering, PointsStandWhereTheCameraSays)
{
    makeSevenPoints();
    for (const QSize size : {QSize(542, 463), QSize(321, 241), QSize(901, 500), QSize(420, 777)}) {
        view = std::make_unique<PntCloudWidget>();
        view->setUp(&owner, &box, &boxOn, &remove);
        show(size);
        load();
        int seen = 0;
        for (const double rotation : {0.0, 0.6, kHalfPi, -2.2, 4.0}) {
            for (const double tilt : {0.0, kFirstTilt, 1.2, kHalfPi}) {
                for (const double zoom : {0.5, 0.75, 1.0})
                    seen += expectPointsInPlace({rotation, tilt, zoom, 0.1, -0.07, 0});
            }
        }
        EXPECT_GT(seen, 150) << size.width();
    }
}

TEST_F(CloudRendering, FromAboveOneStepIsOnePixelToThePixel)
{
    show();
    // A block of 40 x 30 steps, each of a colour of its own.
    for (unsigned x = 0; x < 40; ++x) {
        for (unsigned y = 0; y < 30; ++y)
            bytes.points.push_back({x, y, 0, 10 + 5 * x, 10 + 8 * y, 77});
    }
    load();
    const QImage picture = frame({0, 0, 1, 0.2, 0.15, 0});
    for (const CloudDot& dot : bytes.points) {
        const QPoint at = pixelOf(dot);
        ASSERT_EQ(picture.pixelColor(at), QColor(int(dot.red), int(dot.green), int(dot.blue)))
            << dot.x << ',' << dot.y << " at " << at.x() << ',' << at.y();
    }
}

TEST_F(CloudRendering, ACloudLoadedBeforeTheViewIsShownIsDrawn)
{
    makeSevenPoints();
    load();
    show();
    EXPECT_GT(expectPointsInPlace({0, kFirstTilt, 1, 0, 0, 0}), 5);
}

TEST_F(CloudRendering, TheScaleIsTheHorizontalStepsPerUnit)
{
    bytes.divisor = 3;
    bytes.refinement = 4;
    load();
    EXPECT_EQ(Probe::camera(*view).scale, 132.0);
}

// A later point of the same pixel hides an earlier one, so that a picture as it is cannot show a first pass.
// With colours combined by exclusive or instead, two draws of a point take each other back.
TEST_F(CloudRendering, AboveZoom07TheThinnedPointsAreDrawnFirstThenAll)
{
    show();
    for (unsigned i = 0; i < 6; ++i) // six in one cell, the last of a colour of its own
        bytes.points.push_back({100, 100, 0, 16, 16, 16});
    bytes.points.back() = {100, 100, 0, 128, 64, 32};
    bytes.points.push_back({150, 120, 0, 0, 0, 200});
    load();
    const auto xored = [&](double zoom) {
        frame({0, 0, zoom, 1, 1, 0});
        view->makeCurrent();
        ::glEnable(GL_COLOR_LOGIC_OP);
        ::glLogicOp(GL_XOR);
        const QImage picture = frame();
        view->makeCurrent();
        ::glDisable(GL_COLOR_LOGIC_OP);
        return picture;
    };
    const QColor sixth(128, 64, 32), alone(0, 0, 200), allSix(128 ^ 16, 64 ^ 16, 32 ^ 16);

    // The sixth is not among the thinned: it would lie below them, were they drawn last.
    const QImage plain = frame({0, 0, 1, 1, 1, 0});
    EXPECT_EQ(countOf(plain, sixth), 1);
    EXPECT_EQ(countOf(plain, QColor(16, 16, 16)), 0);

    const QImage twice = xored(1.0);
    EXPECT_EQ(countOf(twice, sixth), 1); // the five before it are drawn in both passes
    EXPECT_EQ(countOf(twice, alone), 0);
    for (const double zoom : {0.7, 0.5}) {
        const QImage once = xored(zoom);
        EXPECT_EQ(countOf(once, allSix), 1) << zoom;
        EXPECT_EQ(countOf(once, alone), 1) << zoom;
    }
    EXPECT_EQ(countOf(xored(0.7001), sixth), 1);
}

TEST_F(CloudRendering, TheIconsStandInTheirRectangles)
{
    show();
    load();
    QImage picture = frame();
    EXPECT_EQ(extentOf(picture, kBox), QRect(14, 14, 27, 27)); // the inclusive edges are the corners
    EXPECT_EQ(extentOf(picture, kRemove), QRect(56, 14, 27, 27));
    EXPECT_EQ(countOf(picture, kBoxOn), 0);
    click(kBoxIcon);
    picture = frame();
    EXPECT_EQ(extentOf(picture, kBoxOn), QRect(14, 14, 27, 27));
    EXPECT_EQ(countOf(picture, kBox), 0);
}

TEST_F(CloudRendering, ATransparentPixelOfAnIconShowsItsStoredColour)
{
    remove.fill(qRgba(0, 200, 100, 0)); // bytes in R, G, B, A order: red and blue change places
    show();
    load();
    EXPECT_EQ(extentOf(frame(), QColor(100, 200, 0)), QRect(56, 14, 27, 27));
}

TEST_F(CloudRendering, TheSelectionIsALightBlueLineOfFourPixelsOnFourOff)
{
    show();
    load();
    click(kBoxIcon);
    press({150, 120});
    moveTo({350, 300});
    const QImage picture = frame();
    const QColor blue =
        picture.pixelColor(extentOf(picture, QColor(0, 127, 255)).topLeft()) == QColor(0, 127, 255)
            ? QColor(0, 127, 255)
            : QColor(0, 128, 255);
    const QRect extent = extentOf(picture, blue);
    EXPECT_LE(std::abs(extent.left() - 150) + std::abs(extent.right() - 350), 3);
    EXPECT_LE(std::abs(extent.top() - 120) + std::abs(extent.bottom() - 300), 3);

    const auto runsOf = [&](bool along, int other) {
        std::vector<int> runs{0};
        bool on = false;
        for (int i = along ? 156 : 126; i < (along ? 345 : 295); ++i) {
            const bool lit = picture.pixelColor(along ? QPoint(i, other) : QPoint(other, i)) == blue;
            if (lit != on) runs.push_back(0);
            on = lit;
            ++runs.back();
        }
        return std::vector<int>(runs.begin() + 1, runs.end() - 1);
    };
    for (const auto& runs : {runsOf(true, extent.top()), runsOf(true, extent.bottom()),
                             runsOf(false, extent.left()), runsOf(false, extent.right())}) {
        ASSERT_GT(runs.size(), 15u);
        for (std::size_t i = 1; i < runs.size(); ++i)
            EXPECT_EQ(runs[i], 4) << i;
    }
    EXPECT_EQ(picture.pixel(250, 200), QColor(Qt::black).rgb());
}

TEST_F(CloudRendering, OutsideBoxModeNoSelectionIsDrawn)
{
    show();
    load();
    click(kBoxIcon);
    drag({150, 120}, {350, 300});
    EXPECT_EQ(Probe::selection(*view), QRect(QPoint(150, 120), QPoint(350, 300)));
    click(kBoxIcon);
    const QImage picture = frame();
    EXPECT_EQ(countOf(picture, QColor(0, 127, 255)) + countOf(picture, QColor(0, 128, 255)), 0);
}

TEST_F(CloudRendering, AResizeBelow321x241IsIgnored)
{
    makeSevenPoints();
    show({400, 300});
    load();
    for (const QSize size : {QSize(320, 300), QSize(400, 240), QSize(200, 150)}) {
        resize(size);
        EXPECT_EQ(Probe::size(*view).width, 400);
        EXPECT_EQ(Probe::size(*view).height, 300);
        // What is seen is the top left part of the last picture, the icons where they are picked.
        EXPECT_EQ(extentOf(frame(), kBox), QRect(14, 14, 27, 27));
    }
    resize({321, 241});
    EXPECT_EQ(Probe::size(*view).width, 321);
    EXPECT_EQ(Probe::size(*view).height, 241);
}

TEST_F(CloudRendering, ResetEmptiesTheViewAndLooksAsAtFirst)
{
    makeSevenPoints();
    bytes.divisor = 2;
    show();
    load();
    frame({1, 1, 0.5, 2, 3, 0});
    click(kBoxIcon);
    view->ResetPointCloud();
    const QImage picture = frame();
    EXPECT_EQ(countOf(picture, kGrey), picture.width() * picture.height());
    const Camera camera = Probe::camera(*view);
    EXPECT_EQ(camera.rotation, 0.0);
    EXPECT_EQ(camera.tilt, kFirstTilt);
    EXPECT_EQ(camera.zoom, 1.0);
    EXPECT_EQ(camera.pan_x, 0.0);
    EXPECT_EQ(camera.pan_y, 0.0);
    EXPECT_EQ(camera.scale, 50.0);
    EXPECT_FALSE(Probe::boxMode(*view));
    EXPECT_FALSE(Probe::dragging(*view));
    EXPECT_EQ(Probe::heldPoints(*view), 0u);
}

TEST_F(CloudRendering, LoadingAnotherCloudKeepsTheView)
{
    show();
    load();
    Probe::look(*view, {1, 1, 0.5, 2, 3, 0});
    bytes.divisor = 4;
    load();
    EXPECT_EQ(Probe::camera(*view).zoom, 0.5);
    EXPECT_EQ(Probe::camera(*view).pan_y, 3.0);
    EXPECT_EQ(Probe::camera(*view).scale, 25.0);
}
