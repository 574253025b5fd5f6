// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// How a scanner leaned, told by what stands upright and what lies level around it.
#include "nexomap/src/pair/Vertical.h"

#include "nexomap/src/pair/Sphere.h"
#include "nexomap/src/pair/SurfaceSamples.h"

#include <Eigen/Dense>

#include <cmath>

namespace nexomap {
namespace {

constexpr int kSamples = 3000;
constexpr double kMostLean = 12.0 * kDegree;
constexpr double kSigma = 1.5 * kDegree; // of a normal, Cauchy
constexpr int kFewest = 200;             // samples that follow the vertical
constexpr int kRounds = 10;
constexpr double kUpright = 1.5 * kDegree; // three times what the estimate errs by

} // namespace

Eigen::Vector3d verticalOf(const RangeMap& map)
{
    const Eigen::Vector3d z = Eigen::Vector3d::UnitZ();
    if (map.range_m.empty()) return z;
    const auto samples = sampleSurfaces(map, kSamples);
    Eigen::Vector3d up = z;
    for (int round = 0; round < kRounds; ++round) {
        // The first rounds look farther, for what leans.
        const double gate = std::sin(round < 3 ? 20.0 * kDegree : 6.0 * kDegree);
        const double sigma = round < 3 ? 3.0 * kSigma : kSigma;
        const Eigen::Vector3d east = up.unitOrthogonal(), north = up.cross(east);
        Eigen::Matrix2d matrix = 1e-6 * Eigen::Matrix2d::Identity();
        Eigen::Vector2d right = Eigen::Vector2d::Zero();
        int used = 0;
        for (const SurfaceSample& sample : samples) {
            const Eigen::Vector2d across(sample.normal.dot(east), sample.normal.dot(north));
            const double along = sample.normal.dot(up);
            if (std::abs(along) < gate) { // a wall: along becomes along + across * step
                const double weight = 1.0 / (1.0 + along * along / (sigma * sigma));
                matrix += weight * across * across.transpose();
                right -= weight * along * across;
                ++used;
            } else if (across.norm() < gate) { // a floor or ceiling: up moves onto its normal
                const double weight = 1.0 / (1.0 + across.squaredNorm() / (sigma * sigma));
                matrix += weight * Eigen::Matrix2d::Identity();
                right += weight * across * (along > 0.0 ? 1.0 : -1.0);
                ++used;
            }
        }
        if (used < kFewest) return z;
        const Eigen::Vector2d step = matrix.ldlt().solve(right);
        if (!step.allFinite() || step.norm() > kMostLean) return z;
        up = (up + step.x() * east + step.y() * north).normalized();
    }
    return std::acos(std::min(1.0, up.z())) < kMostLean ? up : z;
}

Eigen::Vector3d uprightOf(const RangeMap& map)
{
    const Eigen::Vector3d up = verticalOf(map);
    return up.z() > std::cos(kUpright) ? Eigen::Vector3d(Eigen::Vector3d::UnitZ()) : up;
}

Eigen::Matrix3d levelling(const Eigen::Vector3d& vertical)
{
    return Eigen::Quaterniond::FromTwoVectors(vertical, Eigen::Vector3d::UnitZ()).toRotationMatrix();
}

} // namespace nexomap
