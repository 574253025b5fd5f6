// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The pictures compiled into the program: there under their names, sized and coloured as the views need them.

#include <QImage>
#include <QString>

#include <gtest/gtest.h>

namespace {

QImage icon(const char* name)
{
    return QImage(QStringLiteral(":/Tourwright/Resources/") + QLatin1String(name) + QStringLiteral(".png"));
}

int opaquePixels(const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) == 255 ? 1 : 0;
    return count;
}

TEST(Icons, HotspotMarkersHaveTwiceTheSizeAtWhichTheyAreDrawn)
{
    for (const char* name : {"LinkPhoto1", "LinkPhoto2", "LinkInfo1", "LinkInfo2"}) {
        EXPECT_EQ(icon(name).size(), QSize(56, 56)) << name;
        EXPECT_EQ(qAlpha(icon(name).pixel(0, 0)), 0) << name;
        EXPECT_GT(opaquePixels(icon(name)), 56 * 56 / 2) << name;
    }
    EXPECT_EQ(icon("LinkNeighborB2").size(), QSize(224, 224));
    EXPECT_EQ(icon("Cross1").size(), QSize(84, 84));
    EXPECT_EQ(icon("Cross2").size(), QSize(84, 84));
}

TEST(Icons, NormalAndSelectedMarkersDiffer)
{
    for (const char* name : {"LinkPhoto", "LinkInfo", "BoxSel", "Cross", "Digital"})
        EXPECT_NE(icon((std::string(name) + "1").c_str()), icon((std::string(name) + "2").c_str())) << name;
}

TEST(Icons, ButtonsOfThePointCloudViewAreOpaqueBecauseTheyAreDrawnWithoutBlending)
{
    for (const char* name : {"BoxSel1", "BoxSel2", "Delete1"})
        EXPECT_EQ(opaquePixels(icon(name)), 56 * 56) << name;
}

TEST(Icons, EveryDigitLiesWithinItsTenthOfTheStrip)
{
    for (const char* name : {"Digital1", "Digital2"}) {
        const QImage strip = icon(name);
        ASSERT_EQ(strip.size(), QSize(220, 32)) << name;
        for (int digit = 0; digit < 10; ++digit) {
            const QImage glyph = strip.copy(digit * 22, 0, 22, 32);
            EXPECT_GT(opaquePixels(glyph), 20) << name << ' ' << digit;
            for (int y = 0; y < 32; ++y) {
                EXPECT_EQ(qAlpha(glyph.pixel(0, y)), 0) << name << ' ' << digit;
                EXPECT_EQ(qAlpha(glyph.pixel(21, y)), 0) << name << ' ' << digit;
            }
        }
    }
}

TEST(Icons, NoTwoDigitsLookAlike)
{
    const QImage strip = icon("Digital1");
    for (int one = 0; one < 10; ++one)
        for (int other = one + 1; other < 10; ++other)
            EXPECT_NE(strip.copy(one * 22, 0, 22, 32), strip.copy(other * 22, 0, 22, 32))
                << one << ' ' << other;
}

TEST(Icons, TransparentPixelsBesideADrawingHaveItsColour)
{
    const QImage cross = icon("Cross1");
    int checked = 0;
    for (int y = 1; y < cross.height() - 1; ++y)
        for (int x = 1; x < cross.width() - 1; ++x)
            if (qAlpha(cross.pixel(x, y)) == 0 && qAlpha(cross.pixel(x + 1, y)) > 0) {
                const QRgb inside = cross.pixel(x + 1, y);
                EXPECT_NEAR(qGreen(cross.pixel(x, y)), qGreen(inside), 80);
                ++checked;
            }
    EXPECT_GT(checked, 20);
}

TEST(Icons, CommandIconsComeInTwoDensities)
{
    for (const char* name : {"New", "Open", "Save", "SaveAs", "Quit", "Preview", "Upload", "AddPano",
                             "Remove", "AutoLink", "AddLink", "Map", "AddPhoto", "SelPhoto", "AddInfo"}) {
        EXPECT_EQ(icon(name).size(), QSize(16, 16)) << name;
        EXPECT_EQ(icon((std::string(name) + "@2x").c_str()).size(), QSize(32, 32)) << name;
    }
}

} // namespace
