// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/RangePyramid.h"

#include <optional>

namespace nexomap {

/// The surface at one pixel of a range level: nearness as a linear function of the picture.
struct SurfaceFit
{
    float nearness = 0.f;   ///< 1 / metres, at the pixel's middle
    float per_column = 0.f; ///< change over `SurfaceFitter::columnStep` columns to the right
    float per_row = 0.f;    ///< change over one row down
    int support = 0;        ///< of the 25 pixels about it, how many lie on the surface
    bool measured = true;   ///< the pixel itself does; otherwise it has no return, or a false one
    Eigen::Vector3f normal = Eigen::Vector3f::UnitZ(); ///< toward the scanner, panorama frame
    float cosine = 1.f;                                ///< of the angle between ray and normal
};

/// Fits planes into a range level: through those of the 25 pixels about each that agree with the smoothest of
/// five small windows about it, so that edges and corners stay sharp.
/// Choosing among windows: Kuwahara et al., Processing of RI-angiocardiographic images, 1976.
class SurfaceFitter
{
public:
    /// @param level  must outlive the fitter
    explicit SurfaceFitter(const RangePyramid::Level& level);

    /// Columns from one tap to the next: near the poles pixels lie too close together to tell slopes.
    int columnStep(int row) const { return m_rows[std::size_t(row)].step; }
    /// @param fill  also where the pixel has no return but its neighbours on all sides show one surface
    /// @return nullopt without a surface: pixels between two depths, lone ones, surfaces seen at less than 8
    /// degrees
    std::optional<SurfaceFit> fit(int column, int row, bool fill) const;
    /// Unit vector of a pixel's middle, panorama frame, moved by fractions of a column and a row.
    Eigen::Vector3f direction(int column, int row, float columns = 0.f, float rows = 0.f) const;

private:
    struct Row
    {
        float sin_polar, cos_polar;
        int step;
    };
    float at(int column, int row) const;
    bool fitSmallWindow(int column, int row, int step, SurfaceFit* plane, float* deviation) const;
    bool fitAgreeing(int column, int row, SurfaceFit* plane) const;
    bool isThinThing(int column, int row, float nearness) const;
    void orient(int column, int row, SurfaceFit* plane) const;
    float noise(int row, const SurfaceFit& plane) const;

    const RangePyramid::Level& m_level;
    std::vector<Row> m_rows;
    std::vector<Eigen::Vector2f> m_columns; ///< cosine and sine of the azimuth
};

} // namespace nexomap
