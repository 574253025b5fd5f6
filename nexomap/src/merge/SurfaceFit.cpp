// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/SurfaceFit.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr float kLeastCosine = 0.139f; // 8 degrees
constexpr int kLeastSupport = 9, kFillSupport = 14;

/// Least squares of value = a + b x + c y over a few taps.
struct PlaneSums
{
    float n = 0, x = 0, y = 0, xx = 0, xy = 0, yy = 0, v = 0, xv = 0, yv = 0, vv = 0;

    void add(float dx, float dy, float value)
    {
        n += 1.f, x += dx, y += dy, v += value;
        xx += dx * dx, xy += dx * dy, yy += dy * dy;
        xv += dx * value, yv += dy * value, vv += value * value;
    }
    bool solve(float* a, float* b, float* c) const
    {
        const float cxx = xx - x * x / n, cxy = xy - x * y / n, cyy = yy - y * y / n;
        const float cxv = xv - x * v / n, cyv = yv - y * v / n;
        const float determinant = cxx * cyy - cxy * cxy;
        if (!(determinant > 0.5f)) return false; // all in one line
        *b = (cxv * cyy - cyv * cxy) / determinant;
        *c = (cyv * cxx - cxv * cxy) / determinant;
        *a = (v - *b * x - *c * y) / n;
        return true;
    }
    float deviation(float a, float b, float c) const
    {
        return std::sqrt(std::max(0.f, (vv - a * v - b * xv - c * yv) / std::max(1.f, n - 3.f)));
    }
};

} // namespace

SurfaceFitter::SurfaceFitter(const RangePyramid::Level& level)
    : m_level(level)
{
    for (int y = 0; y < level.rows(); ++y) {
        const double polar = (y + 0.5) * level.step_rad;
        const int widest = std::max(1, level.columns() / 16);
        const int step = std::clamp(int(1.0 / std::sin(polar)), 1, widest);
        m_rows.push_back({float(std::sin(polar)), float(std::cos(polar)), step});
    }
    for (int x = 0; x < level.columns(); ++x) {
        const double azimuth = kPi - 2.0 * kPi * (x + 0.5) / level.columns();
        m_columns.emplace_back(float(std::cos(azimuth)), float(std::sin(azimuth)));
    }
}

float SurfaceFitter::at(int column, int row) const
{
    const int columns = m_level.columns();
    if (row < 0 || row >= m_level.rows()) return 0.f;
    if (column < 0)
        column += columns;
    else if (column >= columns)
        column -= columns;
    return m_level.nearness(row, column);
}

Eigen::Vector3f SurfaceFitter::direction(int column, int row, float columns, float rows) const
{
    const Row& r = m_rows[std::size_t(row)];
    const Eigen::Vector2f& azimuth = m_columns[std::size_t(column)];
    const Eigen::Vector3f u(r.sin_polar * azimuth.x(), r.sin_polar * azimuth.y(), r.cos_polar);
    if (columns == 0.f && rows == 0.f) return u;
    const float down = rows * float(m_level.step_rad);
    const float right = columns * float(2.0 * kPi / m_level.columns()) * r.sin_polar;
    const Eigen::Vector3f to_pole(r.cos_polar * azimuth.x(), r.cos_polar * azimuth.y(), -r.sin_polar);
    return (u + down * to_pole + right * Eigen::Vector3f(azimuth.y(), -azimuth.x(), 0.f)).normalized();
}

void SurfaceFitter::orient(int column, int row, SurfaceFit* plane) const
{
    const Row& r = m_rows[std::size_t(row)];
    const Eigen::Vector2f& azimuth = m_columns[std::size_t(column)];
    const Eigen::Vector3f to_pole(r.cos_polar * azimuth.x(), r.cos_polar * azimuth.y(), -r.sin_polar);
    const float column_rad = float(2.0 * kPi / m_level.columns()) * float(r.step);
    // The plane n . X = d has the nearness (n / d) . u, so this is its gradient, put together from two
    // slopes.
    const Eigen::Vector3f away =
        plane->nearness * direction(column, row) + plane->per_row / float(m_level.step_rad) * to_pole +
        plane->per_column / (column_rad * r.sin_polar) * Eigen::Vector3f(azimuth.y(), -azimuth.x(), 0.f);
    const float length = away.norm();
    plane->normal = -away / length;
    plane->cosine = plane->nearness / length;
}

float SurfaceFitter::noise(int row, const SurfaceFit& plane) const
{
    const Row& r = m_rows[std::size_t(row)];
    const float down = plane.per_row / float(m_level.step_rad);
    const float right =
        plane.per_column / (float(2.0 * kPi / m_level.columns()) * float(r.step) * r.sin_polar);
    const float q = std::max(plane.nearness, 1e-3f);
    const float slant = std::sqrt(1.f + (down * down + right * right) / (q * q)); // 1 / cosine
    // The footprint of the beam stretches with the incidence.
    return float(m_level.noise_m) * q * q * std::min(4.f, 1.f + 0.25f * (slant - 1.f));
}

bool SurfaceFitter::fitSmallWindow(int column, int row, int step, SurfaceFit* plane, float* deviation) const
{
    PlaneSums sums;
    const float reference = at(column, row);
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
            const float q = at(column + dx * step, row + dy);
            if (q > 0.f) sums.add(float(dx), float(dy), q - reference);
        }
    float a = 0, b = 0, c = 0;
    if (sums.n < 6.f || !sums.solve(&a, &b, &c)) return false;
    *deviation = sums.deviation(a, b, c);
    plane->nearness = a + reference;
    plane->per_column = b;
    plane->per_row = c;
    return plane->nearness > 0.f;
}

bool SurfaceFitter::fitAgreeing(int column, int row, SurfaceFit* plane) const
{
    const int step = columnStep(row);
    const float limit = 3.5f * noise(row, *plane);
    PlaneSums sums;
    for (int dy = -2; dy <= 2; ++dy)
        for (int dx = -2; dx <= 2; ++dx) {
            const float q = at(column + dx * step, row + dy);
            if (!(q > 0.f)) continue;
            const float off =
                q - plane->nearness - float(dx) * plane->per_column - float(dy) * plane->per_row;
            if (std::abs(off) <= limit) sums.add(float(dx), float(dy), off);
        }
    float a = 0, b = 0, c = 0;
    if (sums.n < float(kLeastSupport) || !sums.solve(&a, &b, &c)) return false;
    plane->nearness += a;
    plane->per_column += b;
    plane->per_row += c;
    plane->support = int(sums.n);
    return plane->nearness > 0.f;
}

bool SurfaceFitter::isThinThing(int column, int row, float nearness) const
{
    const int step = columnStep(row);
    const float limit = std::max(0.012f * nearness, 3.f * float(m_level.noise_m) * nearness * nearness);
    int same = 0;
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
            same += std::abs(at(column + dx * step, row + dy) - nearness) <= limit;
    return same >= 4; // itself and three more
}

std::optional<SurfaceFit> SurfaceFitter::fit(int column, int row, bool fill) const
{
    const float own = at(column, row);
    if (!(own > 0.f) && !fill) return std::nullopt;
    const int step = columnStep(row);
    const auto agrees = [&](const SurfaceFit& plane) {
        return own > 0.f && std::abs(own - plane.nearness) <= 3.5f * noise(row, plane);
    };
    SurfaceFit middle, best;
    float deviation = 0.f, least = 0.f;
    const bool has_middle =
        fitSmallWindow(column, row, step, &middle, &deviation) && deviation <= 3.f * noise(row, middle);
    bool found = has_middle && agrees(middle);
    best = middle;
    least = deviation;
    if (own > 0.f && (!found || deviation > 1.8f * noise(row, middle)))
        for (const int dy : {-1, 1})
            for (const int dx : {-1, 1}) {
                SurfaceFit plane;
                if (!fitSmallWindow(column + dx * step, row + dy, step, &plane, &deviation)) continue;
                plane.nearness -= float(dx) * plane.per_column + float(dy) * plane.per_row;
                if (found && deviation >= least) continue;
                if (deviation > 3.f * noise(row, plane) || !agrees(plane)) continue;
                best = plane;
                least = deviation;
                found = true;
            }
    if (found && fitAgreeing(column, row, &best)) {
        orient(column, row, &best);
        if (best.cosine < kLeastCosine) return std::nullopt;
        return best;
    }
    if (own > 0.f && isThinThing(column, row, own)) {
        SurfaceFit thin;
        thin.nearness = own;
        thin.support = 4;
        thin.normal = -direction(column, row);
        return thin;
    }
    if (fill && has_middle && fitAgreeing(column, row, &middle) && middle.support >= kFillSupport) {
        orient(column, row, &middle);
        middle.measured = false;
        if (middle.cosine < kLeastCosine) return std::nullopt;
        return middle;
    }
    return std::nullopt;
}

} // namespace nexomap
