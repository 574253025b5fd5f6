// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the view paints, proved by geometry: coloured discs at known directions stand where the projection
// says.

#include "tests/views/PatchedPanorama.h"
#include "tests/views/ViewFixture.h"

#include <cmath>

using sphere::kHalfPi;
using sphere::kPi;

class PanoramaRendering : public ViewFixture
{
protected:
    static constexpr double kRadius = 0.015;

    /// Checks every patch that lies whole inside the frame.
    /// @return how many there were
    int expectPatchesInPlace(const std::vector<Patch>& patches, const sphere::Camera& camera)
    {
        const QImage picture = frame(camera);
        const sphere::ViewSize size = Probe::size(*view);
        const double scale = picture.devicePixelRatio();
        // A disc away from the middle is drawn larger, by up to the square of the secant.
        const double perRadian = std::max(size.width, size.height) / 2.0 * camera.zoom;
        int seen = 0;
        for (const Patch& patch : patches) {
            const sphere::ScreenPoint screen = sphere::screenFromSphere(patch.centre, camera);
            const sphere::PixelPoint at = sphere::pixelFromScreen(screen, size);
            const double stretch =
                1 + (screen.u * screen.u + screen.v * screen.v) / camera.zoom / camera.zoom;
            const int reach = int(kRadius * perRadian * stretch) + 4;
            // Far outside the middle the disc's centre of gravity is no longer its centre.
            if (stretch > 2.2) continue;
            if (at.x < reach || at.y < reach || at.x > size.width - 1 - reach ||
                at.y > size.height - 1 - reach)
                continue;
            const sphere::PixelPoint onDevice{(at.x + 0.5) * scale - 0.5, (at.y + 0.5) * scale - 0.5};
            const auto found = patchCentre(picture, patch, onDevice, int(reach * scale));
            const double miss = std::hypot(found.x - onDevice.x, found.y - onDevice.y) / scale;
            // Written so that a patch not found fails too.
            if (!(miss <= 1.0))
                ADD_FAILURE() << "patch at azimuth " << patch.centre.azimuth << " polar "
                              << patch.centre.polar << " is " << miss << " pixels off; yaw " << camera.yaw
                              << " polar " << camera.polar << " zoom " << camera.zoom << " size "
                              << size.width << 'x' << size.height;
            m_worst = std::max(m_worst, miss);
            ++seen;
        }
        return seen;
    }

    void expectPatchesInPlaceAllAround(QSize size)
    {
        const auto patches = patchesAllAround();
        panorama = patchedPanorama(4096, patches, kRadius);
        show(HotSpotWidget::Hotspots, size);
        int seen = 0;
        for (const double yaw : {0.0, 1.3, kPi, -2.2, 8.0}) {
            for (const double polar : {0.3, 0.9, kHalfPi, 2.2, 2.85}) {
                for (const double zoom : {0.5, 1.0, Probe::maxZoom(*view)})
                    seen += expectPatchesInPlace(patches, {yaw, polar, zoom});
            }
        }
        EXPECT_GT(seen, 75);
        RecordProperty("worst_thousandths_of_a_pixel", int(m_worst * 1000));
        std::cout << seen << " patches, the worst " << m_worst << " pixels off\n";
    }

    double m_worst = 0;
};

TEST_F(PanoramaRendering, PatchesStandInPlaceInTheUsualWindow)
{
    expectPatchesInPlaceAllAround({1056, 930});
}
TEST_F(PanoramaRendering, PatchesStandInPlaceInAWideWindow)
{
    expectPatchesInPlaceAllAround({1600, 500});
}
TEST_F(PanoramaRendering, PatchesStandInPlaceInATallWindow)
{
    expectPatchesInPlaceAllAround({600, 800});
}
TEST_F(PanoramaRendering, PatchesStandInPlaceInTheSmallestWindow)
{
    expectPatchesInPlaceAllAround({321, 241});
}
TEST_F(PanoramaRendering, PatchesStandInPlaceInAWindowOfOddSides)
{
    expectPatchesInPlaceAllAround({777, 613});
}

TEST_F(PanoramaRendering, PatchesStandInPlaceOnAFullPanoramaAtItsMaximumZoom)
{
    const auto patches = patchesAllAround();
    panorama = patchedPanorama(8192, patches, kRadius);
    show(HotSpotWidget::Hotspots);
    EXPECT_NEAR(Probe::maxZoom(*view), 2.469, 0.001);
    int seen = 0;
    for (const double yaw : {0.2, kPi - 0.1}) {
        for (const double polar : {0.8, kHalfPi, 2.3})
            seen += expectPatchesInPlace(patches, {yaw, polar, Probe::maxZoom(*view)});
    }
    EXPECT_GT(seen, 10);
    std::cout << seen << " patches, the worst " << m_worst << " pixels off\n";
}

TEST_F(PanoramaRendering, TheSeamShowsNoGap)
{
    panorama.fill(Qt::white);
    show(HotSpotWidget::Hotspots);
    for (const double yaw : {kPi, -kPi, kPi - 0.3, -kPi + 0.3, kPi - kPi / 16384}) {
        for (const double polar : {0.6, 1.2, kHalfPi, 2.0, 2.5}) {
            for (const double zoom : {0.5, 1.0, 2.4}) {
                const QImage picture = frame({yaw, polar, zoom});
                int others = 0;
                for (int y = 0; y < picture.height(); ++y) {
                    for (int x = 0; x < picture.width(); ++x)
                        others += picture.pixel(x, y) != qRgb(255, 255, 255);
                }
                // Straight below the viewer the design leaves a hole of a fifth of a thousandth of a radian.
                EXPECT_LE(others, polar > 2.4 ? 1 : 0)
                    << "yaw " << yaw << " polar " << polar << " zoom " << zoom;
            }
        }
    }
}

TEST_F(PanoramaRendering, IconsStandWhereTheirRectanglesSay)
{
    node.photos = {PhotoHotspot{}, PhotoHotspot{}};
    node.photos[0].sphere_x = 0.2;
    node.photos[0].sphere_y = 1.4;
    node.photos[1].sphere_x = -0.3;
    node.infos = {InfoHotspot{}};
    node.infos[0].sphere_x = 0.1;
    node.infos[0].sphere_y = 1.8;
    for (const QSize size : {QSize(1056, 930), QSize(500, 700)}) {
        if (view)
            resize(size);
        else
            show(HotSpotWidget::Hotspots, size);
        for (const sphere::Camera& camera :
             {sphere::Camera{0.0, kHalfPi, 1.0}, sphere::Camera{0.1, 1.5, 0.7}}) {
            view->selectPhoto(1);
            const QImage picture = frame(camera);
            const auto expectAt = [&](QColor colour, double azimuth, double polar) {
                const auto at = sphere::pixelFromSphere({azimuth, polar}, camera, Probe::size(*view));
                const QRect extent = extentOf(picture, colour);
                EXPECT_NEAR(extent.left(), std::trunc(at.x - 14), 1.0);
                EXPECT_NEAR(extent.top(), std::trunc(at.y - 14), 1.0);
                EXPECT_NEAR(extent.right(), std::trunc(at.x - 14) + 27, 1.0);
                EXPECT_NEAR(extent.bottom(), std::trunc(at.y - 14) + 27, 1.0);
            };
            expectAt(colours::kPhoto, 0.2, 1.4);
            expectAt(colours::kPhotoSelected, -0.3, kHalfPi);
            expectAt(colours::kInfo, 0.1, 1.8);
        }
    }
}

TEST_F(PanoramaRendering, TransparentPartsOfAnIconShowThePanorama)
{
    panorama.fill(Qt::white);
    photo.fill(QColor(0, 0, 0, 0));
    node.photos = {PhotoHotspot{}};
    show(HotSpotWidget::Hotspots);
    EXPECT_EQ(frame().pixelColor(frame().rect().center()), QColor(Qt::white));
}

TEST_F(PanoramaRendering, APhotoIsDrawnBelowAText)
{
    node.photos = {PhotoHotspot{}};
    node.infos = {InfoHotspot{}};
    show(HotSpotWidget::Hotspots);
    const QImage picture = frame();
    EXPECT_TRUE(extentOf(picture, colours::kPhoto).isNull());
    EXPECT_FALSE(extentOf(picture, colours::kInfo).isNull());
}

TEST_F(PanoramaRendering, AHotspotBehindTheViewerIsNotOnTheScreen)
{
    node.photos = {PhotoHotspot{}};
    node.photos[0].sphere_x = kPi;
    show(HotSpotWidget::Hotspots);
    EXPECT_TRUE(extentOf(frame(), colours::kPhoto).isNull());
    EXPECT_FALSE(node.photos[0].marker.intersects(view->rect()));
}

TEST_F(PanoramaRendering, WithoutContentTheViewIsGrey)
{
    panorama.fill(Qt::white);
    show(HotSpotWidget::Hotspots);
    EXPECT_EQ(frame().pixelColor(100, 100), QColor(Qt::white));
    view->clear();
    EXPECT_EQ(frame().pixelColor(100, 100), QColor(160, 160, 164));
    EXPECT_EQ(frame().pixelColor(500, 500), QColor(160, 160, 164));
}

TEST_F(PanoramaRendering, WithoutAProgramTheViewIsGrey)
{
    panorama.fill(Qt::white);
    node.photos = {PhotoHotspot{}};
    show(HotSpotWidget::Hotspots);
    Probe::loseProgram(*view);
    const QImage picture = frame();
    EXPECT_EQ(extentOf(picture, QColor(160, 160, 164)), view->rect());
    EXPECT_TRUE(extentOf(picture, colours::kPhoto).isNull());
}

TEST_F(PanoramaRendering, ThePictureIsUploadedOnlyWhenAPanoramaIsShown)
{
    panorama.fill(Qt::white);
    show(HotSpotWidget::Hotspots);
    panorama.fill(Qt::darkRed);
    EXPECT_EQ(frame().pixelColor(100, 100), QColor(Qt::white));
    view->showPanorama(&node);
    EXPECT_EQ(frame().pixelColor(100, 100), QColor(Qt::darkRed));
}

TEST_F(PanoramaRendering, APictureOfAnotherSizeIsShownAllTheSame)
{
    show(HotSpotWidget::Hotspots);
    panorama = QImage(2048, 1024, QImage::Format_RGB888);
    panorama.fill(Qt::cyan);
    view->showPanorama(&node);
    const QImage picture = frame();
    EXPECT_EQ(extentOf(picture, Qt::cyan), view->rect());
}

TEST_F(PanoramaRendering, TheViewRepaintsItself)
{
    show(HotSpotWidget::Hotspots);
    Probe::look(*view, {0.5, 1.0, 1.0});
    EXPECT_TRUE(QTest::qWaitFor([&] { return Probe::painted(*view).yaw == 0.5; }));
}
