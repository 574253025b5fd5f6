// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/links/HandMadePose.h"

#include "nexomap/src/Geometry.h"
#include "nexomap/src/pair/MetricRefinement.h"
#include "nexomap/src/pair/RangeAgreement.h"

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kPickSigma = 0.3 * kDegree; // a careless click
constexpr double kRangeSigma_m = 0.015;
constexpr double kTiltSigma = 0.5 * 1.4142 * kDegree; // of two panoramas against each other
constexpr double kSmallestExtent_m = 0.1;
constexpr double kSmallestAngle = 5.0 * kDegree;
constexpr double kWrongPair = 16.3;     // chi squared of 3 degrees of freedom, p = 0.001
constexpr double kPairsDisagree = 16.8; // of 6, p = 0.01
constexpr int kSurfaceSamples = 4000;

/// A point that a pick may mean, and how uncertain it is: the pick slides along the surface.
struct SurfacePoint
{
    Eigen::Vector3d point;
    Eigen::Matrix3d noise;
};

struct Points
{
    Eigen::Vector3d p_0, p_1;
    Eigen::Matrix3d S_0, S_1;
};

struct Cell
{
    Eigen::Vector3d direction;
    double range_m;
};

/// Cells of the map with a return within about 0.6 degrees.
std::vector<Cell> cellsAbout(const RangeMap& map, const Eigen::Vector3d& direction)
{
    const int width = map.range_m.cols, height = map.range_m.rows;
    const EquirectGrid grid{width, height};
    const Eigen::Vector2d centre = grid.pixel(direction);
    const int radius = std::max(2, int(std::ceil(0.6 * kDegree / (kPi / height))));
    std::vector<Cell> cells;
    for (int y = int(centre.y()) - radius; y <= int(centre.y()) + radius; ++y)
        for (int x = int(centre.x()) - radius; x <= int(centre.x()) + radius; ++x) {
            if (y < 0 || y >= height) continue;
            const double range = map.range_m(y, (x % width + width) % width);
            if (range > 0.0) cells.push_back({grid.direction(x + 0.5, y + 0.5), range});
        }
    return cells;
}

/// The plane n with n . point = 1 through the cells, by the inverse ranges, in which it is linear; false when
/// the surface is no plane there.
bool planeThrough(const std::vector<Cell>& cells, Eigen::Vector3d* n)
{
    Eigen::Matrix3d N = Eigen::Matrix3d::Zero();
    Eigen::Vector3d g = Eigen::Vector3d::Zero();
    for (const Cell& cell : cells) {
        N += cell.range_m * cell.range_m * cell.direction * cell.direction.transpose();
        g += cell.range_m * cell.direction;
    }
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> eigen(N);
    if (eigen.eigenvalues()[0] < 1e-9 * eigen.eigenvalues()[2]) return false;
    *n = N.ldlt().solve(g);
    double miss2 = 0.0;
    for (const Cell& cell : cells)
        miss2 += std::pow(n->dot(cell.direction) * cell.range_m - 1.0, 2);
    return std::sqrt(miss2 / double(cells.size())) < 0.01;
}

SurfacePoint isotropicPoint(const Eigen::Vector3d& direction, double range)
{
    const Eigen::Matrix3d along = direction * direction.transpose();
    return {range * direction,
            kRangeSigma_m * kRangeSigma_m * along +
                range * range * kPickSigma * kPickSigma * (Eigen::Matrix3d::Identity() - along)};
}

/// Points that a pick may mean: the one of the surface there, or one on each side of a depth edge.
std::vector<SurfacePoint> pointsAt(const RangeMap& map, const Eigen::Vector3d& direction)
{
    const std::vector<Cell> cells = cellsAbout(map, direction);
    if (cells.size() < 5) return {};
    Eigen::Vector3d n;
    if (planeThrough(cells, &n) && n.dot(direction) > 0.05 * n.norm()) {
        const double range = 1.0 / n.dot(direction);
        const Eigen::Vector3d side = direction.unitOrthogonal(), over = direction.cross(side);
        SurfacePoint found{range * direction,
                           kRangeSigma_m * kRangeSigma_m * direction * direction.transpose()};
        for (const Eigen::Vector3d& turn : {side, over}) {
            const Eigen::Vector3d slide = range * turn - direction * (range * range * n.dot(turn));
            found.noise += kPickSigma * kPickSigma * slide * slide.transpose();
        }
        return {found};
    }
    std::vector<double> values;
    for (const Cell& cell : cells)
        values.push_back(cell.range_m);
    std::sort(values.begin(), values.end());
    const double middle = values[values.size() / 2];
    std::size_t gap = 1;
    for (std::size_t k = 1; k < values.size(); ++k)
        if (values[k] - values[k - 1] > values[gap] - values[gap - 1]) gap = k;
    if (values[gap] - values[gap - 1] < 0.05 * middle) return {isotropicPoint(direction, middle)};
    return {isotropicPoint(direction, values[gap / 2]),
            isotropicPoint(direction, values[gap + (values.size() - gap) / 2])};
}

/// Umeyama's rotation and translation for p_0 = R * p_1 + t.
Pose absoluteOrientation(const std::vector<Points>& pairs)
{
    Eigen::Vector3d mean_0 = Eigen::Vector3d::Zero(), mean_1 = Eigen::Vector3d::Zero();
    for (const Points& pair : pairs)
        mean_0 += pair.p_0, mean_1 += pair.p_1;
    mean_0 /= double(pairs.size());
    mean_1 /= double(pairs.size());
    Eigen::Matrix3d S = Eigen::Matrix3d::Zero();
    for (const Points& pair : pairs)
        S += (pair.p_0 - mean_0) * (pair.p_1 - mean_1).transpose();
    Pose pose;
    pose.R = nearestRotation(S);
    pose.t = mean_0 - pose.R * mean_1;
    return pose;
}

/// Second-largest extent of a point set, metres: near zero when they lie on one line.
double secondExtent(const std::vector<Points>& pairs)
{
    double smaller = 1e9;
    for (int side = 0; side < 2; ++side) {
        Eigen::Vector3d mean = Eigen::Vector3d::Zero();
        for (const Points& pair : pairs)
            mean += side ? pair.p_1 : pair.p_0;
        mean /= double(pairs.size());
        Eigen::Matrix3d S = Eigen::Matrix3d::Zero();
        for (const Points& pair : pairs) {
            const Eigen::Vector3d d = (side ? pair.p_1 : pair.p_0) - mean;
            S += d * d.transpose();
        }
        const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> eigen(S);
        smaller = std::min(smaller, std::sqrt(std::max(0.0, eigen.eigenvalues()[1])));
    }
    return smaller;
}

bool allInOneDirection(const std::vector<PickedPair>& picks)
{
    for (const PickedPair& a : picks)
        for (const PickedPair& b : picks) {
            const auto apart = [](double az_a, double p_a, double az_b, double p_b) {
                const Eigen::Vector3d u = directionFromAngles(az_a, p_a), v = directionFromAngles(az_b, p_b);
                return std::atan2(u.cross(v).norm(), u.dot(v));
            };
            if (apart(a.azimuth_0, a.polar_0, b.azimuth_0, b.polar_0) > kSmallestAngle &&
                apart(a.azimuth_1, a.polar_1, b.azimuth_1, b.polar_1) > kSmallestAngle)
                return false;
        }
    return true;
}

double squaredMiss(const Points& pair, const Pose& pose)
{
    const Eigen::Vector3d miss = pair.p_0 - pose * pair.p_1;
    const Eigen::Matrix3d S = pair.S_0 + pose.R * pair.S_1 * pose.R.transpose();
    return miss.dot(S.ldlt().solve(miss));
}

/// What the surfaces say of the pose by themselves: nothing along a bare corridor.
struct SurfaceFit
{
    Pose pose;
    Matrix6d information = Matrix6d::Zero();
};

/// Gauss-Newton on all pairs (Cauchy), the surfaces' fit and the upright prior; returns the information at
/// the end, the prior left out.
Matrix6d refine(const std::vector<Points>& pairs, const SurfaceFit& surfaces, Pose& pose)
{
    Matrix6d N = Matrix6d::Zero();
    for (int round = 0; round < 15; ++round) {
        Vector6d g = Vector6d::Zero();
        const Pose away = surfaces.pose.inverse() * pose;
        Vector6d miss_of_surfaces;
        miss_of_surfaces << logRotation(away.R), away.R.transpose() * away.t;
        N = surfaces.information;
        g = surfaces.information * miss_of_surfaces;
        for (const Points& pair : pairs) {
            Eigen::Matrix<double, 3, 6> J;
            J << pose.R * skew(pair.p_1), -pose.R;
            const Eigen::Vector3d miss = pair.p_0 - pose * pair.p_1;
            const Eigen::Matrix3d S = pair.S_0 + pose.R * pair.S_1 * pose.R.transpose();
            const Eigen::Matrix3d W = S.inverse() / (1.0 + miss.dot(S.ldlt().solve(miss)) / 9.0);
            N += J.transpose() * W * J;
            g += J.transpose() * W * miss;
        }
        const Matrix6d measured = N;
        const Eigen::Matrix<double, 2, 3> T = (-pose.R * skew(Eigen::Vector3d::UnitZ())).topRows<2>();
        const double w = 1.0 / (kTiltSigma * kTiltSigma);
        N.topLeftCorner<3, 3>() += w * T.transpose() * T;
        g.head<3>() += w * T.transpose() * pose.R.col(2).head<2>();
        const Vector6d step = -N.ldlt().solve(g);
        pose.t += pose.R * step.tail<3>();
        pose.R = nearestRotation(pose.R * expRotation(step.head<3>()));
        N = measured;
        if (step.norm() < 1e-10) break;
    }
    return N;
}

double squaredMisses(const std::vector<Points>& pairs, const Pose& pose)
{
    double sum = 0.0;
    for (const Points& pair : pairs)
        sum += std::min(squaredMiss(pair, pose), kWrongPair);
    return sum;
}

/// Lays the two range pictures onto each other from where the pairs put them (point to plane, Chen and
/// Medioni 1992). Kept only when the pairs do not contradict the result and the surfaces agree better than
/// before.
void alignSurfaces(const Panorama& panorama_0, const Panorama& panorama_1, const std::vector<Points>& pairs,
                   Pose* pose, Matrix6d* information)
{
    const std::vector<SurfaceSample> samples_0 = sampleSurfaces(panorama_0.range, kSurfaceSamples);
    const std::vector<SurfaceSample> samples_1 = sampleSurfaces(panorama_1.range, kSurfaceSamples);
    Pose aligned = *pose;
    Matrix6d known = *information;
    for (int round = 0; round < 2; ++round) {
        const RefinedPose fit = refineMetricPose({}, {}, {aligned.R, aligned.t}, &panorama_0.range,
                                                 &panorama_1.range, &samples_0, &samples_1);
        if (fit.surface_pairs == 0) return;
        known = refine(pairs, {{fit.pose.R, fit.pose.t}, fit.information}, aligned);
    }
    const RangeAgreement before = checkRanges(panorama_0.range, panorama_1.range, {pose->R, pose->t});
    const RangeAgreement after = checkRanges(panorama_0.range, panorama_1.range, {aligned.R, aligned.t});
    const bool contradicted = squaredMisses(pairs, aligned) > squaredMisses(pairs, *pose) + kPairsDisagree;
    if (contradicted || after.agree < before.agree || after.violation > before.violation + 0.01) return;
    *pose = aligned;
    *information = known;
}

} // namespace

std::optional<PairPose> poseFromPicks(const Panorama& panorama_0, const Panorama& panorama_1,
                                      const std::vector<PickedPair>& picks)
{
    if (picks.size() < 3 || allInOneDirection(picks) || !panorama_0.metric() || !panorama_1.metric())
        return std::nullopt;
    // Each pick gives one pair of points, or up to four where it lies on a depth edge.
    std::vector<std::vector<Points>> choices;
    for (const PickedPair& pick : picks) {
        const Eigen::Vector3d u_0 = directionFromAngles(pick.azimuth_0, pick.polar_0);
        const Eigen::Vector3d u_1 = directionFromAngles(pick.azimuth_1, pick.polar_1);
        std::vector<Points> here;
        for (const SurfacePoint& x : pointsAt(panorama_0.range, u_0))
            for (const SurfacePoint& y : pointsAt(panorama_1.range, u_1))
                here.push_back({x.point, y.point, x.noise, y.noise});
        if (here.empty()) continue;
        choices.push_back(here);
    }
    if (choices.size() < 3) return std::nullopt;

    double best_cost = 1e300;
    std::vector<Points> best;
    const auto tryTriple = [&](const std::vector<Points>& triple) {
        if (secondExtent(triple) < 0.5 * kSmallestExtent_m) return;
        const Pose pose = absoluteOrientation(triple);
        double cost = (1.0 - pose.R(2, 2)) * 2.0 / (kTiltSigma * kTiltSigma);
        std::vector<Points> chosen;
        for (const std::vector<Points>& here : choices) {
            const Points* nearest = &here.front();
            for (const Points& points : here)
                if (squaredMiss(points, pose) < squaredMiss(*nearest, pose)) nearest = &points;
            cost += std::min(squaredMiss(*nearest, pose), 30.0);
            chosen.push_back(*nearest);
        }
        if (cost < best_cost) best_cost = cost, best = chosen;
    };
    const std::size_t most = std::min<std::size_t>(choices.size(), 14); // 364 triples are plenty
    for (std::size_t a = 0; a < most; ++a)
        for (std::size_t b = a + 1; b < most; ++b)
            for (std::size_t c = b + 1; c < most; ++c)
                for (const Points& x : choices[a])
                    for (const Points& y : choices[b])
                        for (const Points& z : choices[c])
                            tryTriple({x, y, z});
    if (best.empty() || secondExtent(best) < kSmallestExtent_m) return std::nullopt;

    Pose pose = absoluteOrientation(best);
    Matrix6d information = refine(best, {}, pose);
    alignSurfaces(panorama_0, panorama_1, best, &pose, &information);
    int fitting = 0;
    for (const Points& points : best)
        fitting += squaredMiss(points, pose) < kWrongPair;
    if (fitting < 3) return std::nullopt;
    PairPose result;
    result.R_0_from_1 = pose.R;
    result.t_0_from_1 = pose.t;
    result.metric = true;
    result.information = information;
    result.matches = int(picks.size());
    // Three pairs that fit leave three equations over; each further one makes chance less likely.
    const double fit = double(fitting) / double(picks.size());
    result.reliability = std::clamp(fit * (1.0 - std::pow(0.35, fitting - 1)), 0.05, 0.99);
    for (std::size_t k = 0; k < best.size(); ++k) {
        if (squaredMiss(best[k], pose) >= kWrongPair) continue;
        result.inliers.push_back({best[k].p_0.normalized().cast<float>(),
                                  best[k].p_1.normalized().cast<float>(), float(best[k].p_0.norm()),
                                  float(best[k].p_1.norm())});
    }
    return result;
}

} // namespace nexomap
