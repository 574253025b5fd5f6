// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/Alignment.h"

#include <Eigen/Dense>
#include <Eigen/Geometry>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kDegrees = 180.0 / 3.141592653589793;
using Points = Eigen::Matrix3Xd;

double angleOf(const Eigen::Matrix3d& rotation)
{
    return std::abs(Eigen::AngleAxisd(rotation).angle());
}

/// The rotation that brings the estimated orientations nearest to the true ones.
Eigen::Matrix3d orientationGauge(const std::vector<Pose>& estimated, const std::vector<Pose>& truth)
{
    std::vector<Eigen::Matrix3d> candidates;
    for (std::size_t i = 0; i < truth.size(); ++i)
        candidates.push_back(truth[i].rotation * estimated[i].rotation.transpose());

    const auto cost = [&](const Eigen::Matrix3d& gauge) {
        double sum = 0.0;
        for (const Eigen::Matrix3d& candidate : candidates)
            sum += angleOf(candidate * gauge.transpose());
        return sum;
    };
    Eigen::Matrix3d gauge = candidates.front();
    for (const Eigen::Matrix3d& candidate : candidates)
        if (cost(candidate) < cost(gauge)) gauge = candidate;

    for (int iteration = 0; iteration < 50; ++iteration) {
        Eigen::Vector3d step = Eigen::Vector3d::Zero();
        double weights = 0.0;
        for (const Eigen::Matrix3d& candidate : candidates) {
            const Eigen::AngleAxisd difference(candidate * gauge.transpose());
            const double weight = 1.0 / std::max(std::abs(difference.angle()), 1e-9);
            step += weight * difference.angle() * difference.axis();
            weights += weight;
        }
        step /= weights;
        if (step.norm() < 1e-12) break;
        gauge = Eigen::AngleAxisd(step.norm(), step.normalized()) * gauge;
    }
    return gauge;
}

Points positionsOf(const std::vector<Pose>& poses)
{
    Points points(3, static_cast<Eigen::Index>(poses.size()));
    for (std::size_t i = 0; i < poses.size(); ++i)
        points.col(static_cast<Eigen::Index>(i)) = poses[i].position;
    return points;
}

/// Second largest spread of the points over the largest: near 0 for points on a line.
double flatness(const Points& points)
{
    const Points centred = points.colwise() - points.rowwise().mean();
    const Eigen::Vector3d spread =
        Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d>(centred * centred.transpose()).eigenvalues();
    return spread[2] > 0.0 ? std::sqrt(std::max(spread[1], 0.0) / spread[2]) : 0.0;
}

Points alignedPositions(const Points& from, const Points& to, const Eigen::Matrix3d& gauge, Scale scale)
{
    constexpr double kOnALine = 0.02;
    if (from.cols() >= 3 && flatness(to) > kOnALine && flatness(from) > kOnALine) {
        const Eigen::Matrix4d motion = Eigen::umeyama(from, to, scale == Scale::Unknown);
        return (motion.topLeftCorner<3, 3>() * from).colwise() + motion.topRightCorner<3, 1>();
    }
    const Points turned = gauge * (from.colwise() - from.rowwise().mean());
    const Points centred = to.colwise() - to.rowwise().mean();
    double factor = 1.0;
    if (scale == Scale::Unknown && turned.squaredNorm() > 0.0)
        factor = turned.cwiseProduct(centred).sum() / turned.squaredNorm();
    return (factor * turned).colwise() + to.rowwise().mean();
}

double headingOf(const Eigen::Matrix3d& rotation)
{
    return std::atan2(rotation(1, 0), rotation(0, 0));
}

} // namespace

std::vector<PoseError> alignedErrors(const std::vector<Pose>& estimated, const std::vector<Pose>& truth,
                                     Scale scale)
{
    const Eigen::Matrix3d gauge = orientationGauge(estimated, truth);
    const Points to = positionsOf(truth);
    const Points aligned = alignedPositions(positionsOf(estimated), to, gauge, scale);

    std::vector<PoseError> errors;
    for (std::size_t i = 0; i < truth.size(); ++i) {
        const Eigen::Matrix3d turned = gauge * estimated[i].rotation;
        const double heading = headingOf(turned) - headingOf(truth[i].rotation);
        PoseError error;
        error.rotation_deg = angleOf(turned * truth[i].rotation.transpose()) * kDegrees;
        error.heading_deg = std::abs(std::remainder(heading, 2 * 3.141592653589793)) * kDegrees;
        const auto column = static_cast<Eigen::Index>(i);
        error.position_m = (aligned.col(column) - to.col(column)).norm();
        errors.push_back(error);
    }
    return errors;
}

Eigen::Isometry3d rigidAlignment(const std::vector<Pose>& estimated, const std::vector<Pose>& truth)
{
    constexpr double kAxis_m = 2.0;
    const auto tipsOf = [](const std::vector<Pose>& poses) {
        Points tips(3, static_cast<Eigen::Index>(6 * poses.size()));
        Eigen::Index column = 0;
        for (const Pose& pose : poses)
            for (int axis = 0; axis < 3; ++axis)
                for (const double side : {-kAxis_m, kAxis_m})
                    tips.col(column++) = pose.position + side * pose.rotation.col(axis);
        return tips;
    };
    return Eigen::Isometry3d(Eigen::umeyama(tipsOf(estimated), tipsOf(truth), false));
}

double median(std::vector<double> values)
{
    if (values.empty()) return 0.0;
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : 0.5 * (values[middle - 1] + values[middle]);
}
