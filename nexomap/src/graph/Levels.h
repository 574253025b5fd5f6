// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <Eigen/Core>

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

namespace nexomap {

/// A triangulated point by its height alone.
struct LevelPoint
{
    double height; ///< over whatever the user counts from
    double spread; ///< its deviation, relative to the height
};

// What heights need to say something of a length.
constexpr std::size_t kFewestLevelPoints = 12, kMostLevelPoints = 100;
constexpr double kCountingPoints = 40.0; ///< more points repeat what these say
constexpr double kUsualLengths = 0.5;    ///< deviation of the logarithms of a building's lengths

/// The height at which two rays meet over the middle of the two stations, by both stations' verticals, for a
/// distance t between them.
/// @param R, t  pose of station 1 in 0, as GraphEdge has it
/// @param tilt  by how much the verticals may be off, radians
/// @return nullopt where they meet behind a station, or at too narrow an angle
std::optional<LevelPoint> levelPoint(const Eigen::Vector3d& ray_0, const Eigen::Vector3d& ray_1,
                                     const Eigen::Matrix3d& R, const Eigen::Vector3d& t, double tilt);

/// Size of nearly all heights, at least 1e-9.
double nearlySizeOf(const std::vector<LevelPoint>& points);

/// Density of heights, in units in which nearly all lie within kSize of zero: Gaussian kernels, the wider the
/// less the height that is asked for is known.
class Levels
{
public:
    explicit Levels(const std::vector<LevelPoint>& points);

    /// What is left without some of the points.
    Levels without(const std::vector<LevelPoint>& points) const;
    double unit() const { return m_unit; }
    /// Per unit, at a height in units known with this deviation.
    double at(double height, double deviation) const;
    /// Logarithm of at(), a fifth of the points standing anywhere.
    double logLikelihood(double height, double deviation) const;

    static constexpr double kSize = 1.5;

private:
    static constexpr int kWidths = 8;
    static constexpr double kSpan = 4.0, kPerUnit = 100.0, kNarrowest = 0.01, kWider = 1.4;
    static constexpr int kBins = int(2 * kSpan * kPerUnit);
    using Bins = std::array<double, std::size_t(kBins)>;

    static double widthOf(int width);
    /// Adds points, or takes them away.
    void add(const std::vector<LevelPoint>& points, double weight);

    double m_unit, m_total = 0.0;
    std::array<Bins, std::size_t(kWidths)> m_sums{}; ///< of the kernels, for each width of them
};

} // namespace nexomap
