// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Picture files of every kind as rows of RGB.
#include "companions/pnotool/input/JpegSource.h"
#include "companions/pnotool/input/PictureSource.h"
#include "companions/pnotool/input/RangeInput.h"
#include "tests/pnomaker/JpegFiles.h"
#include "tests/pnomaker/PictureFiles.h"
#include "tests/pnomaker/Pictures.h"
#include "tests/pnomaker/Readback.h"
#include "tests/support/TestFiles.h"

#include <gmock/gmock.h>

namespace {

using namespace pnotest;
using testing::HasSubstr;

constexpr int kWidth = 300; // no multiple of a tile, a strip or a JPEG block
constexpr int kHeight = 150;

PaintedPicture sample()
{
    return gradient(kWidth, kHeight);
}

std::vector<std::uint8_t> sampleRows()
{
    std::vector<std::uint8_t> rgb(kWidth * kHeight * 3);
    sample().readRows(rgb.data(), kHeight);
    return rgb;
}

/// Reads in uneven portions, as a pipeline may.
std::vector<std::uint8_t> readAll(pnotool::PictureSource& source)
{
    std::vector<std::uint8_t> rgb(static_cast<std::size_t>(source.width() * source.height() * 3));
    int portion = 1;
    for (int y = 0; y < source.height(); ++portion) {
        const int rows = std::min(portion, source.height() - y);
        if (!source.readRows(rgb.data() + static_cast<std::ptrdiff_t>(y) * source.width() * 3, rows))
            return {};
        y += rows;
    }
    return rgb;
}

using Expect = std::function<Rgb(const std::uint8_t* rgb, int y)>;

/// Reads the file twice, through rewind, and compares every pixel.
void expectPicture(const std::string& path, const Expect& expected, int tolerance)
{
    std::string error;
    const auto source = pnotool::openPicture(path, error);
    ASSERT_NE(source, nullptr) << error;
    ASSERT_EQ(source->width(), kWidth);
    ASSERT_EQ(source->height(), kHeight);
    const std::vector<std::uint8_t> rgb = readAll(*source);
    ASSERT_FALSE(rgb.empty()) << source->error();
    const std::vector<std::uint8_t> painted = sampleRows();
    for (int i = 0; i < kWidth * kHeight; ++i) {
        const Rgb want = expected(&painted[static_cast<std::size_t>(3 * i)], i / kWidth);
        for (int c = 0; c < 3; ++c)
            ASSERT_NEAR(rgb[static_cast<std::size_t>(3 * i + c)], want[static_cast<std::size_t>(c)],
                        tolerance)
                << i % kWidth << ", " << i / kWidth << " channel " << c;
    }
    ASSERT_TRUE(source->rewind());
    EXPECT_EQ(readAll(*source), rgb);
}

Rgb colour(const std::uint8_t* rgb, int)
{
    return {rgb[0], rgb[1], rgb[2]};
}

Rgb grey(const std::uint8_t* rgb, int)
{
    return {rgb[1], rgb[1], rgb[1]};
}

Rgb fromPalette(const std::uint8_t* rgb, int)
{
    return {std::uint8_t(rgb[0] / 64 * 85), std::uint8_t(rgb[1] / 64 * 85), std::uint8_t(rgb[2] / 64 * 85)};
}

TEST(PictureInput, ReadsEveryKindOfPng)
{
    const TemporaryFolder folder;
    const auto onBlack = [](const Expect& kind) {
        return [kind](const std::uint8_t* rgb, int y) {
            return y < kHeight / 2 ? kind(rgb, y) : Rgb{0, 0, 0};
        };
    };
    const std::vector<std::pair<PngKind, Expect>> kinds = {{PngKind::Rgb8, colour},
                                                           {PngKind::Rgb16, colour},
                                                           {PngKind::Grey8, grey},
                                                           {PngKind::Grey16, grey},
                                                           {PngKind::Grey1,
                                                            [](const std::uint8_t* rgb, int) {
                                                                const std::uint8_t value =
                                                                    rgb[1] >= 128 ? 255 : 0;
                                                                return Rgb{value, value, value};
                                                            }},
                                                           {PngKind::Palette, fromPalette},
                                                           {PngKind::Rgba8, onBlack(colour)},
                                                           {PngKind::GreyAlpha8, onBlack(grey)},
                                                           {PngKind::InterlacedRgb8, colour}};
    for (const auto& [kind, expected] : kinds) {
        SCOPED_TRACE(static_cast<int>(kind));
        PaintedPicture picture = sample();
        ASSERT_TRUE(writePng(folder.path("a.png"), picture, kind));
        expectPicture(folder.path("a.png"), expected, 0);
    }
}

TEST(PictureInput, ReadsEveryKindOfTiff)
{
    const TemporaryFolder folder;
    const std::vector<std::tuple<TiffKind, Expect, int>> kinds = {
        {TiffKind::Rgb8Strips, colour, 0},   {TiffKind::Rgb16Lzw, colour, 0},
        {TiffKind::Rgb8Tiles, colour, 0},    {TiffKind::Grey8Tiles, grey, 0},
        {TiffKind::Grey16Strips, grey, 0},   {TiffKind::White8, grey, 0},
        {TiffKind::Palette, fromPalette, 0}, {TiffKind::YcbcrJpeg, colour, 12},
        {TiffKind::Planar, colour, 0}};
    for (const auto& [kind, expected, tolerance] : kinds) {
        SCOPED_TRACE(static_cast<int>(kind));
        PaintedPicture picture = sample();
        ASSERT_TRUE(writeTiff(folder.path("a.tif"), picture, kind));
        expectPicture(folder.path("a.tif"), expected, tolerance);
    }
}

TEST(PictureInput, ReadsEveryKindOfJpeg)
{
    const TemporaryFolder folder;
    JpegForm plain, greyForm, progressive, inks;
    greyForm.grey = true;
    progressive.progressive = true;
    inks.adobeInks = true;
    const std::vector<std::pair<JpegForm, Expect>> kinds = {
        {plain, colour}, {greyForm, grey}, {progressive, colour}, {inks, colour}};
    for (const auto& [form, expected] : kinds) {
        SCOPED_TRACE(&form - &kinds[0].first);
        PaintedPicture picture = sample();
        ASSERT_TRUE(writeJpeg(folder.path("a.jpg"), picture, form));
        expectPicture(folder.path("a.jpg"), expected, 10);
    }
}

TEST(PictureInput, AProgressiveJpegReadsTheSameWithItsCoefficientsOnDisk)
{
    const TemporaryFolder folder;
    JpegForm form;
    form.progressive = true;
    PaintedPicture picture(2001, 1500, [](int x, int y) {
        return Rgb{std::uint8_t(x * y / 99), std::uint8_t(x), std::uint8_t(y)};
    });
    ASSERT_TRUE(writeJpeg(folder.path("a.jpg"), picture, form));
    pnotool::JpegSource inMemory(folder.path("a.jpg")), onDisk(folder.path("a.jpg"), 0);
    ASSERT_TRUE(inMemory.open());
    ASSERT_TRUE(onDisk.open());
    const std::vector<std::uint8_t> rgb = readAll(inMemory);
    ASSERT_FALSE(rgb.empty());
    EXPECT_EQ(readAll(onDisk), rgb);
    ASSERT_TRUE(onDisk.rewind());
    EXPECT_EQ(readAll(onDisk), rgb);
}

TEST(PictureInput, EveryKindCutOffIsAnErrorNotAGreyArea)
{
    const TemporaryFolder folder;
    std::vector<std::string> files;
    const auto path = [&](const char* name) { return files.emplace_back(folder.path(name)); };
    JpegForm progressive;
    progressive.progressive = true;
    for (const auto& write : std::vector<std::function<bool(PaintedPicture&)>>{
             [&](auto& p) { return writeJpeg(path("plain.jpg"), p); },
             [&](auto& p) { return writeJpeg(path("progressive.jpg"), p, progressive); },
             [&](auto& p) { return writePng(path("plain.png"), p, PngKind::Rgb8); },
             [&](auto& p) { return writePng(path("interlaced.png"), p, PngKind::InterlacedRgb8); }}) {
        PaintedPicture picture = noise(kWidth, kHeight);
        ASSERT_TRUE(write(picture));
    }
    for (const std::string& file : files)
        for (const double share : {0.3, 0.6, 0.97}) {
            std::vector<std::uint8_t> bytes = fileBytes(file);
            bytes.resize(static_cast<std::size_t>(static_cast<double>(bytes.size()) * share));
            folder.write("cut", bytes);
            std::string error;
            const auto source = pnotool::openPicture(folder.path("cut"), error);
            if (!source) {
                EXPECT_THAT(error, HasSubstr("damaged"));
                continue;
            }
            EXPECT_TRUE(readAll(*source).empty()) << file << " " << share;
            EXPECT_THAT(source->error(), HasSubstr("damaged")) << file << " " << share;
            EXPECT_EQ(source->error().find('\n'), std::string::npos);
        }
}

TEST(PictureInput, ATiffCutOffIsAnError)
{
    const TemporaryFolder folder;
    for (const TiffKind kind :
         {TiffKind::Rgb8Strips, TiffKind::Rgb16Lzw, TiffKind::Rgb8Tiles, TiffKind::Planar}) {
        PaintedPicture picture = noise(kWidth, kHeight);
        ASSERT_TRUE(writeTiff(folder.path("a.tif"), picture, kind));
        std::vector<std::uint8_t> bytes = fileBytes(folder.path("a.tif"));
        // The directory stands last: only zeroing what is before it leaves a file that opens.
        bytes.resize(bytes.size() / 2);
        folder.write("cut.tif", bytes);
        std::string error;
        const auto source = pnotool::openPicture(folder.path("cut.tif"), error);
        if (source) {
            EXPECT_TRUE(readAll(*source).empty());
            error = source->error();
        }
        EXPECT_THAT(error, HasSubstr("damaged"));
    }
}

TEST(PictureInput, BentFilesNeverCrash)
{
    const TemporaryFolder folder;
    std::vector<std::string> files;
    PaintedPicture picture = noise(64, 32);
    const auto again = [&]() -> PaintedPicture& {
        picture.rewind();
        return picture;
    };
    writeJpeg(files.emplace_back(folder.path("a.jpg")), again());
    JpegForm progressive;
    progressive.progressive = true;
    writeJpeg(files.emplace_back(folder.path("p.jpg")), again(), progressive);
    for (const PngKind kind : {PngKind::Rgb8, PngKind::Palette, PngKind::InterlacedRgb8})
        writePng(files.emplace_back(folder.path(std::to_string(static_cast<int>(kind)) + ".png")), again(),
                 kind);
    for (const TiffKind kind : {TiffKind::Rgb8Strips, TiffKind::Rgb16Lzw, TiffKind::Rgb8Tiles,
                                TiffKind::Palette, TiffKind::YcbcrJpeg})
        writeTiff(files.emplace_back(folder.path(std::to_string(static_cast<int>(kind)) + ".tif")), again(),
                  kind);
    std::uint32_t state = 7;
    const auto random = [&] { return (state = state * 1664525u + 1013904223u) >> 8; };
    for (const std::string& file : files) {
        const std::vector<std::uint8_t> whole = fileBytes(file);
        for (int trial = 0; trial < 60; ++trial) {
            std::vector<std::uint8_t> bytes = whole;
            for (unsigned i = 0; i <= random() % 4; ++i)
                bytes[(trial % 2 ? random() % std::min<std::size_t>(bytes.size(), 300)
                                 : random() % bytes.size())] = static_cast<std::uint8_t>(random());
            folder.write("bent", bytes);
            std::string error;
            const auto source = pnotool::openPicture(folder.path("bent"), error);
            // A bent size can be huge: its first rows are enough then.
            std::vector<std::uint8_t> rgb;
            if (source && source->width() < 100000)
                for (int y = 0; y < std::min(source->height(), 64); ++y) {
                    rgb.resize(static_cast<std::size_t>(source->width()) * 3);
                    if (!source->readRows(rgb.data(), 1)) break;
                }
            pnomaker::RangePicture range;
            if (bytes.size() > 4) (void)pnotool::readRangePicture(folder.path("bent"), range);
        }
    }
}

TEST(PictureInput, NamesWhatIsNoPicture)
{
    const TemporaryFolder folder;
    const auto refusal = [](const std::string& path) {
        std::string error;
        EXPECT_EQ(pnotool::openPicture(path, error), nullptr);
        return error;
    };
    EXPECT_THAT(refusal(folder.path("none.jpg")), HasSubstr("cannot be read"));
    EXPECT_THAT(refusal(folder.write("empty.jpg", {})), HasSubstr("empty"));
    EXPECT_THAT(refusal(folder.write("text.jpg", {'h', 'e', 'l', 'l', 'o'})),
                HasSubstr("not a JPEG, PNG or TIFF"));
    EXPECT_THAT(refusal(folder.write("short.jpg", {0xFF, 0xD8, 0xFF})), HasSubstr("damaged"));
    EXPECT_THAT(refusal(folder.path("")), HasSubstr("folder"));
}

TEST(PictureInput, RangePicturesComeFromPngAndTiff)
{
    const TemporaryFolder folder;
    pnomaker::RangePicture range;
    range.width = 70;
    range.height = 35;
    for (int i = 0; i < 70 * 35; ++i)
        range.values.push_back(static_cast<std::uint16_t>(i * 27));
    ASSERT_TRUE(writeGrey16Png(folder.path("r.png"), range));
    ASSERT_TRUE(writeGrey16Tiff(folder.path("strips.tif"), range, false));
    ASSERT_TRUE(writeGrey16Tiff(folder.path("tiles.tif"), range, true));
    for (const char* name : {"r.png", "strips.tif", "tiles.tif"}) {
        pnomaker::RangePicture read;
        ASSERT_EQ(pnotool::readRangePicture(folder.path(name), read), "") << name;
        EXPECT_EQ(read.width, 70);
        EXPECT_EQ(read.height, 35);
        EXPECT_EQ(read.values, range.values) << name;
    }
}

TEST(PictureInput, RangePicturesOfAnyOtherKindAreRefused)
{
    const TemporaryFolder folder;
    pnomaker::RangePicture range;
    PaintedPicture picture = sample();
    writePng(folder.path("grey8.png"), picture, PngKind::Grey8);
    picture.rewind();
    writePng(folder.path("rgb16.png"), picture, PngKind::Rgb16);
    picture.rewind();
    writeTiff(folder.path("rgb.tif"), picture, TiffKind::Rgb8Strips);
    for (const char* name : {"grey8.png", "rgb16.png", "rgb.tif"})
        EXPECT_THAT(pnotool::readRangePicture(folder.path(name), range), HasSubstr("16 bits")) << name;
    EXPECT_THAT(pnotool::readRangePicture(folder.write("empty", {}), range), HasSubstr("empty"));
    EXPECT_THAT(pnotool::readRangePicture(folder.write("text", {'a', 'b', 'c'}), range),
                HasSubstr("not a PNG or TIFF"));
    EXPECT_THAT(pnotool::readRangePicture(folder.path("none"), range), HasSubstr("cannot be read"));
}

} // namespace
