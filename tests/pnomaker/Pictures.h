// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnomaker/PnoMaker.h"

#include <array>
#include <functional>

/// Made-up pictures of any size for the maker.
namespace pnotest {

using Rgb = std::array<std::uint8_t, 3>;

/// Rows computed from a function of the pixel; never holds the picture.
class PaintedPicture : public pnomaker::RowSource
{
public:
    using Paint = std::function<Rgb(int x, int y)>;

    PaintedPicture(int width, int height, Paint paint);
    int width() const override { return m_width; }
    int height() const override { return m_height; }
    bool readRows(std::uint8_t* rgb, int count) override;
    std::string error() const override { return "painted rows ran out"; }
    bool rewind() override;

    int failAtRow = -1; ///< reading this row fails
    int passes = 1;     ///< how often reading began

private:
    int m_width;
    int m_height;
    int m_nextRow = 0;
    Paint m_paint;
};

/// A smooth picture whose colour tells the direction: red rises with x, green with y.
PaintedPicture gradient(int width, int height);

/// Grey with one patch around a direction.
/// @param polar_min, polar_max  what the rows cover, radians
PaintedPicture patch(int width, int height, double azimuth, double polar, double polar_min = 0,
                     double polar_max = pno::kPi);

/// Every pixel differs from its neighbours: as large as a JPEG can get.
PaintedPicture noise(int width, int height);

} // namespace pnotest
