// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/pictures/PanoramaPicture.h"

#include "linking/pictures/TileDecoder.h"
#include "linking/pno/PnoFile.h"
#include "project/LocalText.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

namespace {

constexpr int kTile = static_cast<int>(pno::kTilePixels);
constexpr int kBytesPerPixel = 3;

/// Which tiles make the picture.
struct Mosaic
{
    int level, columns, rows;
};

/// The picture's memory, shared by the threads: each tile writes its own square only.
struct Canvas
{
    std::uint8_t* bits;
    int width, height, stride;
    std::optional<QRgb> missing; ///< of squares without a tile; as they were without a value
};

void fillRows(const Canvas& canvas, int x, int y, int width, int height)
{
    const QRgb colour = *canvas.missing;
    for (int row = y; row < y + height; ++row) {
        std::uint8_t* pixel = canvas.bits + std::ptrdiff_t(row) * canvas.stride + x * kBytesPerPixel;
        for (int i = 0; i < width; ++i, pixel += kBytesPerPixel) {
            pixel[0] = std::uint8_t(qRed(colour));
            pixel[1] = std::uint8_t(qGreen(colour));
            pixel[2] = std::uint8_t(qBlue(colour));
        }
    }
}

void drawClipped(const QImage& tile, const Canvas& canvas, int x, int y)
{
    const QImage rgb = tile.convertToFormat(QImage::Format_RGB888);
    const int width = std::min(rgb.width(), kTile);
    const int height = std::min({rgb.height(), kTile, canvas.height - y});
    for (int row = 0; row < height; ++row)
        std::memcpy(canvas.bits + std::ptrdiff_t(y + row) * canvas.stride + x * kBytesPerPixel,
                    rgb.constScanLine(row), static_cast<std::size_t>(width) * kBytesPerPixel);
}

void drawTile(PnoFile& file, const Mosaic& mosaic, int index, const Canvas& canvas, TileDecoder& decoder)
{
    const int column = index % mosaic.columns;
    const int row = index / mosaic.columns;
    const int x = (mosaic.columns - 1 - column) * kTile; // column 0 is the rightmost
    const int y = row * kTile;
    std::uint32_t size = 0;
    if (y >= canvas.height) return;
    const auto clear = [&] {
        if (canvas.missing) fillRows(canvas, x, y, kTile, std::min(kTile, canvas.height - y));
    };
    const PnoBytes bytes = file.ReadTile(mosaic.level, column, row, &size);
    if (!bytes) return clear();
    std::uint8_t* square = canvas.bits + std::ptrdiff_t(y) * canvas.stride + x * kBytesPerPixel;
    const bool whole = canvas.height - y >= kTile;
    if (whole && decoder.decodePlainJpeg(bytes.get(), size, square, canvas.stride)) return;
    clear(); // the tile may cover less than its square, or nothing
    drawClipped(TileDecoder::decode(bytes.get(), size), canvas, x, y);
}

void drawTiles(PnoFile& file, const Mosaic& mosaic, const Canvas& canvas)
{
    std::atomic<int> next{0};
    const auto work = [&] {
        TileDecoder decoder;
        for (int index = next++; index < mosaic.columns * mosaic.rows; index = next++)
            drawTile(file, mosaic, index, canvas, decoder);
    };
    std::vector<std::thread> helpers;
    try {
        for (unsigned count = std::thread::hardware_concurrency(); count > 1; --count)
            helpers.emplace_back(work);
    } catch (const std::system_error&) {
        // As many as the system gives; this thread alone finishes the picture, too.
    }
    work();
    for (std::thread& helper : helpers)
        helper.join();
}

bool assemble(const QString& pnoPath, QImage* image, const std::optional<QRgb>& missing)
{
    const auto file = std::make_unique<PnoFile>();
    if (file->Open(localtext::toLocal(pnoPath).constData()) != pno::Ok) return false;

    Mosaic mosaic;
    if (image->width() == 8192) {
        mosaic = {10, 32, 16};
    } else if (image->width() == 4096) {
        mosaic = {8, 16, 8};
    } else {
        if (missing) image->fill(*missing);
        return true;
    }

    const QImage::Format format = image->format();
    if (format != QImage::Format_RGB888) *image = image->convertToFormat(QImage::Format_RGB888);
    const Canvas canvas{image->bits(), image->width(), image->height(), image->bytesPerLine(), missing};
    drawTiles(*file, mosaic, canvas);
    const int below = mosaic.rows * kTile;
    if (missing && image->height() > below)
        fillRows(canvas, 0, below, image->width(), image->height() - below);
    if (format != QImage::Format_RGB888) *image = image->convertToFormat(format);
    return true;
}

} // namespace

bool assemblePanorama(const QString& pnoPath, QImage* image)
{
    return assemble(pnoPath, image, std::nullopt);
}

bool assemblePanorama(const QString& pnoPath, QImage* image, const QColor& missing)
{
    const bool opened = assemble(pnoPath, image, missing.rgb());
    if (!opened) image->fill(missing);
    return opened;
}
