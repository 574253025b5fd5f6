// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/SurfaceFit.h"

#include <functional>

namespace nexomap {

/// A piece of surface as a station sees it, in the panorama's frame.
struct SurfaceSample
{
    Eigen::Vector3f point = Eigen::Vector3f::Zero();   ///< metres
    Eigen::Vector3f normal = Eigen::Vector3f::UnitZ(); ///< toward the scanner
    float range_m = 0.f;
    float cosine = 1.f;   ///< of the angle between ray and normal
    float area_m2 = 0.f;  ///< of the surface, that it stands for
    bool measured = true; ///< false: interpolated
};

struct SamplingOptions
{
    double cell_m = 0.01;     ///< cells that are to be filled
    bool interpolate = false; ///< also between measurements of one surface that lie farther apart
};

/// A panorama's surfaces as evenly as its ranges allow: what is near is taken from a coarser level.
class SurfaceSampling
{
public:
    using Take = std::function<void(const SurfaceSample&)>;

    /// @param pyramid  must outlive the sampling
    SurfaceSampling(const RangePyramid& pyramid, const SamplingOptions& options);

    /// The picture falls into so many bands of rows, which several threads may work on at once.
    int bands() const;
    void forEachInBand(int band, const Take& take) const;

private:
    int levelOf(int block_column, int block_row) const;
    void takePixel(int level, int column, int row, const Take& take) const;

    const RangePyramid& m_pyramid;
    SamplingOptions m_options;
    std::vector<SurfaceFitter> m_fitters;
};

} // namespace nexomap
