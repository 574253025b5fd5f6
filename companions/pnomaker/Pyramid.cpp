// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnomaker/Pyramid.h"

#include <algorithm>
#include <cmath>

namespace pnomaker {

Pyramid fullSpherePyramid(int topLevel)
{
    // The same steps, in the same order and precision, as a reader takes them: it compares for equality.
    Pyramid pyramid;
    pyramid.topLevel = topLevel;
    const double fullWidth = pno::kTilePixels * std::pow(2.0, topLevel / 2.0);
    for (int i = 0; i <= topLevel; ++i) {
        LevelSize& level = pyramid.levels[i];
        const double width = fullWidth / std::pow(std::sqrt(2.0), topLevel - i);
        level.width = static_cast<int>(width + 0.5);
        level.height = static_cast<int>((pno::kPi - 0.0) * width / (pno::kPi - -pno::kPi) + 0.5);
        const LevelSize& smallest = pyramid.levels[i % 2];
        level.columns = (255 + std::max(level.width, smallest.width << (i / 2))) / 256;
        level.rows = (255 + std::max(level.height, smallest.height << (i / 2))) / 256;
        level.firstTile = pyramid.tileCount;
        pyramid.tileCount += level.columns * level.rows;
    }
    return pyramid;
}

int topLevelForWidth(int width)
{
    for (int level = 10; level < 12; ++level)
        if (fullSpherePyramid(level).levels[level].width >= width) return level;
    return 12;
}

} // namespace pnomaker
