// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// From evidence to a probability.
#include "nexomap/src/pair/Reliability.h"

#include "nexomap/src/pair/Sphere.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace nexomap {
namespace {

constexpr int kFewestBearings = 12; // inliers
constexpr int kFewestPoints = 8;

double logistic(double z)
{
    return 1.0 / (1.0 + std::exp(-std::clamp(z, -30.0, 30.0)));
}

/// Cell of about `size` radians on the sphere.
std::pair<int, int> cellOf(const Eigen::Vector3d& bearing, double size)
{
    const int row = int(polarOf(bearing) / size);
    const double sine = std::max(0.1, std::sin((row + 0.5) * size));
    return {row, int((azimuthOf(bearing) + kPi) * sine / size)};
}

/// How many of the bearings stand farther than 25 degrees from the one with the most neighbours.
int countOutside(const std::vector<Eigen::Vector3d>& bearings)
{
    const double near = std::cos(25.0 * kDegree);
    std::size_t densest = 0;
    for (const Eigen::Vector3d& centre : bearings) {
        std::size_t inside = 0;
        for (const Eigen::Vector3d& bearing : bearings)
            inside += centre.dot(bearing) > near;
        densest = std::max(densest, inside);
    }
    return int(bearings.size() - densest);
}

} // namespace

void countPlaces(const std::vector<Correspondence>& matches, const std::vector<int>& inliers,
                 Evidence* evidence)
{
    std::set<std::pair<int, int>> places, cells_0, cells_1;
    std::vector<Eigen::Vector3d> bearings_0, bearings_1;
    for (const int i : inliers) {
        bearings_0.push_back(matches[i].bearing_0);
        bearings_1.push_back(matches[i].bearing_1);
        places.insert(cellOf(matches[i].bearing_0, 0.3 * kDegree));
        cells_0.insert(cellOf(matches[i].bearing_0, 30.0 * kDegree));
        cells_1.insert(cellOf(matches[i].bearing_1, 30.0 * kDegree));
    }
    evidence->inliers = int(places.size());
    evidence->cells = int(std::min(cells_0.size(), cells_1.size()));
    evidence->outside = std::min(countOutside(bearings_0), countOutside(bearings_1));
    evidence->inlier_share = matches.empty() ? 0.0 : double(inliers.size()) / double(matches.size());
}

/// How much likelier a right pose is than a wrong one to lay the walls onto each other as well as this, as a
/// logarithm. Right ones do within a degree in most buildings, within a few where walls stand askew or there
/// are stairs, anyhow where one picture's lines are not the walls'; wrong ones anyhow.
double wallsOdds(const Evidence& e)
{
    if (!e.skew) return 0.0;
    constexpr double kSquare = 0.8, kSpread_deg = 0.7, kAskew = 0.12, kAskew_deg = 8.0, kOther = 0.08,
                     kAnyhow_deg = 45.0;
    const double skew_deg = *e.skew / kDegree, off = skew_deg / kSpread_deg;
    const double square = 2.0 / (kSpread_deg * std::sqrt(2.0 * kPi)) * std::exp(-0.5 * off * off);
    const double askew = skew_deg < kAskew_deg ? 1.0 / kAskew_deg : 0.0;
    return std::log(kAnyhow_deg * (kSquare * square + kAskew * askew + kOther / kAnyhow_deg));
}

/// What range maps say where few upright planes are seen: free space, place by place.
double freeSpace(const Evidence& e)
{
    const double seen = e.ranges.agree + e.ranges.violation;
    const double clear = seen > 0.0 ? e.ranges.agree / seen : 0.0; // agreement where neither hides the other
    return std::min(50.0 * (clear - 0.95), 3.0) - (e.ranges.agree < 0.02 ? 8.0 : 0.0);
}

/// What should match and does not. Right poses are silent in a tenth of the places, in three fifths at most
/// where furniture was moved, and find a match for one in ten features and more of those that both must show.
/// A corridor laid onto itself the other way round is right in every wall and finds one in twenty.
double silenceDoubt(const SilentPlaces& silent, int guided)
{
    double doubt = 0.0;
    if (silent.places >= 8) doubt += 10.5 * std::max(0.0, silent.share - 0.3);
    if (silent.expected >= 400)
        doubt += 7.0 * std::max(0.0, std::log(0.09 * silent.expected / std::max(1, guided)));
    // Far off or beside something rich, one picture keeps features where the other keeps none. Where both
    // kept one, half of them match if the pose is right, a fifth if the place only resembles the other.
    const double unlike = 0.36 - double(silent.alike) / std::max(1, silent.comparable);
    return std::min(doubt, 50.0 * std::max(0.0, unlike) * silent.comparable / (silent.comparable + 40.0));
}

double metricReliability(const Evidence& e)
{
    // A right pose finds more matches than it was made from; those count half, less what chance finds.
    const double support = std::max(double(e.inliers), 0.5 * e.guided - 2.0 * e.chance);
    if (e.inliers < 5 || support < 7.0 || e.ranges.samples < 200) return 0.0;
    // Weights after benchmarks/linking/fit_reliability.py --ranges, wrong poses counted threefold. However
    // many matches agree, copies of a room or of a desk make as many: whole pieces of wall decide.
    double z = -2.0 + 0.34 * std::log(std::min(support, 60.0)) + 0.15 * std::min(e.cells, 8);
    z += e.walls.agree_m2 < 3.0 ? freeSpace(e) : -1.6 * std::log(0.05 + std::min(e.walls.moved_m2, 10.0));
    z -= 1.4 * std::min(1.0, e.second_share * e.inliers / support);
    z -= std::max(0.0, e.rms - 6.0);
    z -= std::max(0.0, e.lean / kDegree - 2.0);
    if (std::abs(e.floor_step_m) > 0.15) z -= 2.0; // another level: there are stairs, but few
    // Glass, mirrors and people give right poses up to 8 percent; desks turned round are no walls. The fewer
    // of the matches agree, the less is forgiven: plain rooms of one size fit each other but for a few
    // percent.
    const double forgiven = 0.03 + 0.055 * std::clamp(10.0 * (e.inlier_share - 0.05), 0.0, 1.0);
    z -= 80.0 * std::max(0.0, e.ranges.violation - forgiven);
    if (e.ranges.agree < 0.02) z -= 3.5; // what hardly overlaps checks hardly anything
    z -= silenceDoubt(e.silent, e.guided);
    return logistic(z);
}

double oneSidedReliability(const Evidence& e)
{
    const double support = std::max(double(e.inliers), 0.5 * e.guided - 2.0 * e.chance);
    if (e.inliers < kFewestPoints || support < 10.0) return 0.0;
    // Weights by benchmarks/linking/fit_reliability.py --one-sided; docs/LINKING.md has the curve. As without
    // ranges, the numbers of matches got none.
    constexpr double kConstant = -3.2511;
    // Two places that speak are added, so that one alone says little.
    const double silence = e.sight.silent * e.sight.places / (e.sight.places + 2.0);
    const std::pair<double, double> terms[] = {
        {0.3791, std::min(e.cells, 8)},                                  // occupied cells
        {0.1456, std::log1p(std::min(e.outside, 100))},                  // outside the densest 25 degrees
        {-10.9841, std::min(e.sight.crossed, 0.5)},                      // sight lines through surfaces
        {-19.9014, std::max(0.0, silence - 0.2)},                        // silent places beyond a fifth
        {-0.7540, std::max(0.0, std::min(e.rms, 4.0) - 1.5)},            // whitened residual beyond 1.5
        {-0.6857, std::log(std::clamp(e.position_sigma_m, 0.003, 0.3))}, // log of the position's deviation
    };
    double z = kConstant;
    for (const auto& [weight, value] : terms)
        z += weight * value;
    // Two cameras on two stands differ by a hand or two, not by more; the sets of the fit had one stand.
    if (std::abs(e.floor_step_m) > 0.6) z -= 3.0;
    z -= 0.3 * std::max(0.0, e.lean / kDegree - 3.0);
    return logistic(z);
}

double bearingReliability(const Evidence& e)
{
    if (e.inliers < kFewestBearings) return 0.0;
    // Cameras that lean against each other lean as much from the vertical: that much elevation is theirs.
    const double elevation_deg = std::max(0.0, (std::abs(e.elevation) - 0.5 * e.lean) / kDegree),
                 sigma_deg = e.direction_sigma / kDegree;
    struct Weights
    {
        double constant, inliers, share, second, sigma, walls;
    };
    // Weights by benchmarks/linking/fit_reliability.py from the evidence of made-up buildings, plain ones,
    // with people beside the camera and with rooms furnished alike among them; docs/LINKING.md has the curve.
    // Where a picture shows no walls (a garden, a cave), what else is known has to say more.
    constexpr Weights kWithWalls{-5.7462, 0.1837, 6.9516, -0.6695, -1.0951, 0.7572},
        kWithoutWalls{-5.7312, 0.5924, 7.4440, -0.2423, -1.2427, 0.0};
    const Weights& weights = e.skew ? kWithWalls : kWithoutWalls;
    double z = weights.constant;
    z += weights.inliers * std::log(std::min(e.inliers, 150));
    z += weights.share * std::min(e.inlier_share, 0.5);
    z += weights.second * e.second_share;
    z += weights.sigma * std::log(std::clamp(sigma_deg, 0.03, 3.0));
    z += weights.walls * wallsOdds(e);
    // Held in the fit: made-up buildings have no stairs, and cameras that lean more than they know little of.
    z -= 1.5 * std::clamp(elevation_deg - 1.5, 0.0, 3.0);
    z -= 0.3 * std::max(0.0, e.lean / kDegree - 3.0);
    return logistic(z);
}

double rotationReliability(const Evidence& e)
{
    if (e.inliers < 24) return 0.0;
    // Seen from one place everything matches, all around; one thing that was carried along fills a few cells.
    const double all_around = 1.5 * std::max(0, 10 - e.cells);
    return logistic(-all_around + 0.12 * (std::min(e.inliers, 80) - 36) + 0.4 * (std::min(e.cells, 10) - 5) +
                    8.0 * (std::min(e.inlier_share, 0.5) - 0.2));
}

} // namespace nexomap
