// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/support/PnoParts.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace pnotest {
namespace {

void append(Bytes* bytes, const void* data, std::size_t size)
{
    const auto* first = static_cast<const std::uint8_t*>(data);
    bytes->insert(bytes->end(), first, first + size);
}

template <typename Record>
Bytes asBytes(const std::vector<Record>& records)
{
    Bytes bytes;
    append(&bytes, records.data(), records.size() * sizeof(Record));
    return bytes;
}

void setText(char* field, std::size_t size, const std::string& text)
{
    std::memcpy(field, text.data(), std::min(size, text.size()));
}

std::uint32_t doubledTiles(std::uint32_t pixels, std::uint32_t smallest, std::uint32_t doublings)
{
    return (std::max(pixels, smallest << doublings) + 255) / 256;
}

PnoImageInfo makeInfo(const PnoOptions& options)
{
    PnoImageInfo info{};
    setText(info.name, sizeof info.name, options.name);
    setText(info.identity, sizeof info.identity, options.identity);
    info.format = 1;
    info.mosaic_pixel_size = 256;
    info.max_zoom_level = options.level;
    for (std::uint32_t level = 0; level <= options.level; ++level) {
        const double width = 256.0 * std::pow(2.0, level / 2.0);
        const double height = (options.polar_max - options.polar_min) * width / (pno::kPi + pno::kPi);
        info.widths[level] = static_cast<std::uint32_t>(std::floor(width + 0.5));
        info.heights[level] = static_cast<std::uint32_t>(std::floor(height + 0.5));
        info.columns[level] = doubledTiles(info.widths[level], info.widths[level % 2], level / 2);
        info.rows[level] = doubledTiles(info.heights[level], info.heights[level % 2], level / 2);
    }
    info.pixel_scale = 6.28318530717959 / (256.0 * std::pow(2.0, options.level / 2.0));
    info.output_min_x = info.valid_min_x = -pno::kPi;
    info.output_max_x = info.valid_max_x = pno::kPi;
    info.output_min_y = info.valid_min_y = options.polar_min;
    info.output_max_y = info.valid_max_y = options.polar_max;
    info.quality = 90;
    return info;
}

pno::CaptureTime makeCapture()
{
    pno::CaptureTime capture{};
    capture.year = 2024;
    capture.month = 2;
    capture.day = 29;
    capture.hour = 13;
    capture.minute = 37;
    capture.second = 42;
    capture.millisecond = 250;
    return capture;
}

// Equal bytes are stored once: tests with solid tiles stay small.
void addTile(int level, int column, int row, const TileSource& source, std::vector<pno::TileRecord>* records,
             Bytes* data)
{
    const Bytes tile = source(level, column, row);
    pno::TileRecord record{};
    record.level = static_cast<std::int16_t>(level);
    record.column = static_cast<std::int16_t>(column);
    record.row = static_cast<std::int16_t>(row);
    record.size = static_cast<std::uint32_t>(tile.size());
    for (const pno::TileRecord& earlier : *records) {
        if (earlier.size == record.size &&
            std::equal(tile.begin(), tile.end(), data->begin() + earlier.offset)) {
            record.offset = earlier.offset;
            records->push_back(record);
            return;
        }
    }
    record.offset = static_cast<std::uint32_t>(data->size());
    append(data, tile.data(), tile.size());
    records->push_back(record);
}

} // namespace

Bytes join(const std::vector<Segment>& segments)
{
    Bytes bytes = {0xC0, 0x73};
    for (const Segment& segment : segments) {
        const auto length = segment.statedLength.value_or(static_cast<std::int32_t>(segment.data.size()));
        append(&bytes, &segment.marker, sizeof segment.marker);
        append(&bytes, &length, sizeof length);
        append(&bytes, segment.data.data(), segment.data.size());
    }
    return bytes;
}

TileSource tinyTiles()
{
    return [](int level, int column, int row) {
        return Bytes{static_cast<std::uint8_t>(level), static_cast<std::uint8_t>(column),
                     static_cast<std::uint8_t>(row), 0xA5};
    };
}

PnoParts parts(const PnoOptions& options)
{
    PnoParts result;
    result.capture = makeCapture();
    result.info = makeInfo(options);
    const TileSource source = options.tiles ? options.tiles : tinyTiles();
    for (std::uint32_t level = 0; level <= options.level; ++level) {
        for (std::uint32_t row = 0; row < result.info.rows[level]; ++row) {
            for (std::uint32_t column = 0; column < result.info.columns[level]; ++column)
                addTile(static_cast<int>(level), static_cast<int>(column), static_cast<int>(row), source,
                        &result.tiles, &result.tileData);
        }
    }
    result.lidar = static_cast<bool>(options.depthTiles);
    if (!result.lidar) return result;
    for (int row = 0; row < 16; ++row) {
        for (int column = 0; column < 32; ++column)
            addTile(10, column, row, options.depthTiles, &result.depthTiles, &result.depthData);
    }
    result.pointValues = options.pointValues;
    result.points = options.points;
    result.extra = options.extra;
    return result;
}

Segment PnoParts::captureSegment() const
{
    Segment segment{0xFFD0, {}, {}};
    append(&segment.data, &capture, sizeof capture);
    return segment;
}

Segment PnoParts::infoSegment() const
{
    Segment segment{0xFFD1, {}, {}};
    append(&segment.data, &info, sizeof info);
    return segment;
}

Segment PnoParts::tileDirectorySegment() const
{
    return {0xFFD2, asBytes(tiles), {}};
}

Segment PnoParts::tileDataSegment() const
{
    return {0xFFD3, tileData, {}};
}

Segment PnoParts::depthDirectorySegment() const
{
    return {0xFFD5, asBytes(depthTiles), {}};
}

Segment PnoParts::depthDataSegment() const
{
    return {0xFFD6, depthData, {}};
}

Segment PnoParts::pointSegment() const
{
    Segment segment{0xFFD7, {}, {}};
    append(&segment.data, pointValues.data(), sizeof pointValues);
    append(&segment.data, points.data(), points.size());
    return segment;
}

Segment PnoParts::extraSegment() const
{
    return {0xFFD8, extra, {}};
}

std::vector<Segment> PnoParts::segments() const
{
    std::vector<Segment> all = {captureSegment(), infoSegment(), tileDirectorySegment(), tileDataSegment()};
    if (lidar) {
        all.push_back(depthDirectorySegment());
        all.push_back(depthDataSegment());
        all.push_back(pointSegment());
        all.push_back(extraSegment());
    }
    return all;
}

std::size_t PnoParts::tileIndex(int level, int column, int row) const
{
    std::size_t index = 0;
    for (int below = 0; below < level; ++below)
        index += std::size_t(info.columns[below]) * info.rows[below];
    return index + std::size_t(row) * info.columns[level] + std::size_t(column);
}

} // namespace pnotest
