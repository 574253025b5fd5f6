// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What can be told false about a match before any pose is known.
#include "nexomap/src/pair/Correspondence.h"

#include "nexomap/src/pair/PlaceMatching.h"
#include "nexomap/src/pair/Sphere.h"

#include <algorithm>

namespace nexomap {
namespace {

constexpr double kMaxTurn = 30.0 * kDegree;
constexpr double kMaxSizeRatio = 1.6;
constexpr double kUprightSine = 0.57; // 35 degrees above and below the horizon

bool differentSize(const Features& f0, int i0, const Features& f1, int i1)
{
    const double size_0 = double(f0.scales[i0]) * f0.ranges_m[i0],
                 size_1 = double(f1.scales[i1]) * f1.ranges_m[i1];
    if (!(size_0 > 0.0) || !(size_1 > 0.0)) return false;
    return std::max(size_0 / size_1, size_1 / size_0) > kMaxSizeRatio;
}

bool finite(const Features& f, int i)
{
    return f.bearings[i].allFinite() && std::isfinite(f.ranges_m[i]) && std::isfinite(f.scales[i]) &&
           std::isfinite(f.angles_rad[i]) && std::abs(f.bearings[i].norm() - 1.f) < 1e-3f;
}

/// Whether the two say the same: one place, described with two orientations or at two sizes.
bool repeats(const Correspondence& a, const Correspondence& b)
{
    constexpr double kApart2 = kSamePlace * kSamePlace;
    return (a.bearing_0 - b.bearing_0).squaredNorm() < kApart2 &&
           (a.bearing_1 - b.bearing_1).squaredNorm() < kApart2;
}

} // namespace

bool turnedAlike(const Features& f0, int i0, const Features& f1, int i1)
{
    if (std::abs(f0.bearings[i0].z()) > kUprightSine || std::abs(f1.bearings[i1].z()) > kUprightSine)
        return true;
    const double turn = std::remainder(double(f0.angles_rad[i0]) - f1.angles_rad[i1], 2.0 * kPi);
    return std::abs(turn) <= kMaxTurn;
}

std::vector<Correspondence> plausibleMatches(const Features& f0, const Features& f1,
                                             const std::vector<DescriptorMatch>& matches)
{
    std::vector<Correspondence> kept;
    for (const DescriptorMatch& match : matches) {
        const int i0 = match.index_0, i1 = match.index_1;
        if (!finite(f0, i0) || !finite(f1, i1) || !turnedAlike(f0, i0, f1, i1) ||
            differentSize(f0, i0, f1, i1))
            continue;
        kept.push_back({f0.bearings[i0].cast<double>().normalized(),
                        f1.bearings[i1].cast<double>().normalized(), std::max(0.0, double(f0.ranges_m[i0])),
                        std::max(0.0, double(f1.ranges_m[i1])), match.distance2, i0, i1});
    }
    std::stable_sort(kept.begin(), kept.end(), [](const Correspondence& a, const Correspondence& b) {
        return a.distance2 < b.distance2; // the best first: draws prefer them
    });
    std::vector<Correspondence> once;
    for (const Correspondence& match : kept)
        if (std::none_of(once.begin(), once.end(),
                         [&](const Correspondence& other) { return repeats(match, other); }))
            once.push_back(match);
    return once;
}

} // namespace nexomap
