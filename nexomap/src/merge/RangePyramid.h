// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/FrontEnd.h"

#include <vector>

namespace nexomap {

/// A scanner's ranges at several resolutions, as one over the range: on a plane that number is linear across
/// the picture, so averages and slopes taken on it are those of the surface.
class RangePyramid
{
public:
    struct Level
    {
        cv::Mat1f nearness;     ///< 1 / metres; 0: no return
        double noise_m = 0.004; ///< standard deviation of a range, from the picture itself
        double step_rad = 0.0;  ///< between rows

        int columns() const { return nearness.cols; }
        int rows() const { return nearness.rows; }
    };

    /// @param farthest_m  ranges beyond it count as no return
    RangePyramid(const RangePicture& picture, double farthest_m);

    /// The finest first; each has half the sides of the one before it.
    const std::vector<Level>& levels() const { return m_levels; }

private:
    std::vector<Level> m_levels;
};

/// A panorama's small range map as a range picture; its depth edges become holes.
RangePicture rangePictureOf(const RangeMap& map);

} // namespace nexomap
