// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/links/OneSidedScale.h"

#include "nexomap/src/graph/ScaleRecovery.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr std::size_t kFewest = 3;
constexpr double kMostSpread = 0.3;  // of the logarithm
constexpr double kLeastSigma = 0.02; // of the length, as a share

double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + std::ptrdiff_t(values.size() / 2), values.end());
    return values[values.size() / 2];
}

} // namespace

bool giveScaleByRanges(const Panorama& panorama_0, const Panorama& panorama_1, PairPose* pose)
{
    if (pose->metric || pose->rotation_only) return false;
    std::vector<double> logs;
    for (const PairInlier& inlier : pose->inliers) {
        const Eigen::Vector3d u_0 = inlier.bearing_0.cast<double>(), u_1 = inlier.bearing_1.cast<double>();
        const Eigen::Vector2d depths = rayDepths(u_0, u_1, pose->R_0_from_1, pose->t_0_from_1);
        if (!(depths.minCoeff() > 0.0)) continue;
        const double range_0 = panorama_0.range.at(inlier.bearing_0),
                     range_1 = panorama_1.range.at(inlier.bearing_1);
        if (range_0 > 0.0) logs.push_back(std::log(range_0 / depths[0]));
        if (range_1 > 0.0) logs.push_back(std::log(range_1 / depths[1]));
    }
    if (logs.size() < kFewest) return false;
    const double middle = median(logs);
    std::vector<double> deviations;
    for (const double value : logs)
        deviations.push_back(std::abs(value - middle));
    const double spread = 1.48 * median(deviations);
    if (spread > kMostSpread) return false;
    const double scale = std::exp(middle);
    const Eigen::Vector3d along = pose->R_0_from_1.transpose() * pose->t_0_from_1;
    Matrix6d S = Matrix6d::Identity();
    S.bottomRightCorner<3, 3>() /= scale;
    pose->information = S * pose->information * S;
    const double sigma = scale * std::max(kLeastSigma, spread / std::sqrt(double(logs.size())));
    pose->information.bottomRightCorner<3, 3>() += along * along.transpose() / (sigma * sigma);
    pose->t_0_from_1 *= scale;
    pose->metric = true;
    return true;
}

} // namespace nexomap
