// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/SurfaceSampling.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr int kBandRows = 4;        // of the coarsest level
constexpr double kFineShare = 0.35; // of a cell, from sample to sample
constexpr double kFinest_m = 0.006; // closer together scanners show their noise only
constexpr double kFillShare = 0.8;
constexpr int kMostParts = 8;
constexpr int kPlaneSupport = 15; // of 25: enough to interpolate on

} // namespace

SurfaceSampling::SurfaceSampling(const RangePyramid& pyramid, const SamplingOptions& options)
    : m_pyramid(pyramid)
    , m_options(options)
{
    for (const RangePyramid::Level& level : pyramid.levels())
        m_fitters.emplace_back(level);
}

int SurfaceSampling::bands() const
{
    return (m_pyramid.levels().back().rows() + kBandRows - 1) / kBandRows;
}

/// The coarsest level whose pixels lie close enough together at the block's nearest range.
int SurfaceSampling::levelOf(int block_column, int block_row) const
{
    const auto& levels = m_pyramid.levels();
    const int last = int(levels.size()) - 1;
    const int probe = std::max(0, last - 2); // fine enough to see what is in the block
    const int side = 1 << (last - probe);
    float most = 0.f;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            most = std::max(
                most, levels[std::size_t(probe)].nearness(block_row * side + y, block_column * side + x));
    if (!(most > 0.f)) return last;
    const double wanted_m = std::max(kFinest_m, kFineShare * m_options.cell_m);
    int level = last;
    while (level > 0 && levels[std::size_t(level)].step_rad / double(most) > wanted_m)
        --level;
    return level;
}

void SurfaceSampling::takePixel(int level, int column, int row, const Take& take) const
{
    const SurfaceFitter& fitter = m_fitters[std::size_t(level)];
    const auto fit = fitter.fit(column, row, m_options.interpolate);
    if (!fit) return;
    const int step = fitter.columnStep(row);
    const float range = 1.f / fit->nearness;
    const Eigen::Vector3f u = fitter.direction(column, row);
    const float pixel_m = float(m_pyramid.levels()[std::size_t(level)].step_rad) * range;
    const Eigen::Vector3f right = fitter.direction(column, row, float(step), 0.f);
    const float area = pixel_m * range * (right - u).norm() / fit->cosine;
    int across = 1, down = 1;
    if (m_options.interpolate && fit->support >= kPlaneSupport) {
        const float limit = float(kFillShare * m_options.cell_m);
        const auto length = [&](float columns, float rows, float slope) {
            return ((fitter.direction(column, row, columns, rows) - u) * range - u * (slope * range * range))
                .norm();
        };
        across = std::clamp(int(std::ceil(length(float(step), 0.f, fit->per_column) / limit)), 1, kMostParts);
        down = std::clamp(int(std::ceil(length(0.f, 1.f, fit->per_row) / limit)), 1, kMostParts);
    }
    SurfaceSample sample;
    sample.normal = fit->normal;
    sample.cosine = fit->cosine;
    sample.measured = fit->measured;
    sample.area_m2 = area / float(across * down);
    for (int j = 0; j < down; ++j)
        for (int i = 0; i < across; ++i) {
            const float x = (float(i) + 0.5f) / float(across) - 0.5f;
            const float y = (float(j) + 0.5f) / float(down) - 0.5f;
            const float nearness = fit->nearness + x * fit->per_column + y * fit->per_row;
            if (!(nearness > 0.3f * fit->nearness)) continue;
            sample.range_m = 1.f / nearness;
            sample.point = fitter.direction(column, row, x * float(step), y) * sample.range_m;
            take(sample);
        }
}

void SurfaceSampling::forEachInBand(int band, const Take& take) const
{
    const auto& levels = m_pyramid.levels();
    const int last = int(levels.size()) - 1;
    const int from = band * kBandRows, to = std::min(levels.back().rows(), from + kBandRows);
    for (int block_row = from; block_row < to; ++block_row)
        for (int block_column = 0; block_column < levels.back().columns(); ++block_column) {
            const int level = levelOf(block_column, block_row);
            const int side = 1 << (last - level);
            for (int row = block_row * side; row < (block_row + 1) * side; ++row) {
                const int step = m_fitters[std::size_t(level)].columnStep(row);
                // Every step-th column of the whole row, wherever the block begins.
                int column = (block_column * side + step - 1) / step * step;
                for (; column < (block_column + 1) * side; column += step)
                    takePixel(level, column, row, take);
            }
        }
}

} // namespace nexomap
