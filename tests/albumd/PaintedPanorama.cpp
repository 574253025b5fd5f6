// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/albumd/PaintedPanorama.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace albumtest {
namespace {

using pnotest::Bytes;
using pnotest::Colour;

struct Area
{
    double left, right, top, bottom; ///< pixels of the level
};

Area areaOf(const Patch& patch, double width)
{
    const double perRadian = width / (2 * M_PI);
    return {(M_PI - patch.azimuth - patch.half) * perRadian, (M_PI - patch.azimuth + patch.half) * perRadian,
            (patch.polar - patch.half) * perRadian, (patch.polar + patch.half) * perRadian};
}

class Painter
{
public:
    Painter(Colour ground, std::vector<Patch> patches)
        : m_ground(ground)
        , m_patches(std::move(patches))
        , m_plain(pnotest::solidJpeg(ground))
    {}

    Bytes tile(int level, int column, int row) const
    {
        const double width = std::floor(256 * std::pow(2, level / 2.0) + 0.5);
        const double x0 = width - 256 * (column + 1);
        const double y0 = 256.0 * row;
        std::vector<Area> here;
        std::vector<Colour> colours;
        for (const Patch& patch : m_patches) {
            const Area area = areaOf(patch, width);
            if (area.right < x0 || area.left > x0 + 256 || area.bottom < y0 || area.top > y0 + 256) continue;
            here.push_back(area);
            colours.push_back(patch.colour);
        }
        if (here.empty()) return m_plain;
        Bytes pixels;
        pixels.reserve(256 * 256 * 3);
        for (int y = 0; y < 256; ++y)
            for (int x = 0; x < 256; ++x) {
                Colour colour = m_ground;
                for (std::size_t i = 0; i < here.size(); ++i)
                    if (x0 + x + 0.5 > here[i].left && x0 + x + 0.5 < here[i].right &&
                        y0 + y + 0.5 > here[i].top && y0 + y + 0.5 < here[i].bottom)
                        colour = colours[i];
                pixels.insert(pixels.end(), {colour.red, colour.green, colour.blue});
            }
        return pnotest::jpegFromPixels(pixels.data(), 256, 256, 95);
    }

private:
    Colour m_ground;
    std::vector<Patch> m_patches;
    Bytes m_plain;
};

} // namespace

Bytes paintedPanorama(const std::string& id, Colour ground, const std::vector<Patch>& patches)
{
    const Painter painter(ground, patches);
    pnotest::PnoOptions options;
    options.identity = id;
    options.tiles = [&](int level, int column, int row) { return painter.tile(level, column, row); };
    return pnotest::panorama(options);
}

} // namespace albumtest
