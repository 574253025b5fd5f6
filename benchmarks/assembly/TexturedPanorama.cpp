// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "benchmarks/assembly/TexturedPanorama.h"

#include "tests/support/JpegTiles.h"
#include "tests/support/PnoParts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

constexpr int kLevel = 10;

using pnotest::Bytes;

double hash(int x, int y)
{
    std::uint32_t value =
        static_cast<std::uint32_t>(x) * 374761393u + static_cast<std::uint32_t>(y) * 668265263u;
    value = (value ^ (value >> 13)) * 1274126177u;
    return (value ^ (value >> 16)) / 4294967296.0;
}

double smoothNoise(double x, double y)
{
    const int column = static_cast<int>(std::floor(x));
    const int row = static_cast<int>(std::floor(y));
    const double fx = x - column;
    const double fy = y - row;
    const double top = hash(column, row) * (1 - fx) + hash(column + 1, row) * fx;
    const double bottom = hash(column, row + 1) * (1 - fx) + hash(column + 1, row + 1) * fx;
    return top * (1 - fy) + bottom * fy;
}

// Detail at every scale with less of it the finer, as photographs have, and hard edges here and there.
Bytes texturedTile(int column, int row)
{
    std::vector<std::uint8_t> rgb;
    rgb.reserve(256 * 256 * 3);
    for (int y = row * 256; y < (row + 1) * 256; ++y) {
        for (int x = column * 256; x < (column + 1) * 256; ++x) {
            double light = 40;
            for (int octave = 0; octave < 7; ++octave) {
                const double scale = 256 >> octave;
                light += 64 * std::pow(0.62, octave) * smoothNoise(x / scale, y / scale);
            }
            const bool edge = smoothNoise(x / 90.0, y / 90.0) > 0.6;
            const double warm = 30 * smoothNoise(x / 400.0, y / 400.0);
            light += 24 * (hash(x, y) - 0.5); // the sensor's grain
            for (const double value : {light + warm, light + (edge ? 35.0 : 0.0), light - warm})
                rgb.push_back(static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0)));
        }
    }
    return pnotest::jpegFromPixels(rgb.data(), 256, 256, 90);
}

// A file's other levels; nothing but the thumbnail looks at them.
Bytes greyTile()
{
    const std::vector<std::uint8_t> rgb(256 * 256 * 3, 128);
    return pnotest::jpegFromPixels(rgb.data(), 256, 256, 90);
}

} // namespace

std::string writeTexturedPanorama(const pnotest::TemporaryFolder& folder, const std::string& name,
                                  const std::string& identity)
{
    const Bytes grey = greyTile();
    pnotest::PnoOptions options;
    if (!identity.empty()) options.identity = identity;
    options.tiles = [&](int level, int column, int row) {
        return level == kLevel ? texturedTile(column, row) : grey;
    };
    return folder.write(name, pnotest::panorama(options));
}
