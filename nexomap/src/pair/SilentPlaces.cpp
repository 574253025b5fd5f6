// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Verification of a pose by what should match and does not.
#include "nexomap/src/pair/SilentPlaces.h"

#include "nexomap/src/pair/BearingCells.h"
#include "nexomap/src/pair/Sphere.h"

#include <map>
#include <set>

namespace nexomap {
namespace {

constexpr double kPlace = 15.0 * kDegree;
constexpr int kFewest = 12;                  // features that make a place worth asking
constexpr double kSpeaks = 0.04;             // share of them that match where the pose is right
constexpr double kSameSide = 30.0 * kDegree; // between the two lines of sight
constexpr double kLikeDistance = 1.5;        // ratio of the two ranges
constexpr double kBeside = 0.35 * kDegree, kLikeSize = 1.5;

using Place = std::pair<int, int>;

Place placeOf(const Eigen::Vector3d& bearing)
{
    const int row = int(polarOf(bearing) / kPlace);
    const double sine = std::max(0.1, std::sin((row + 0.5) * kPlace));
    return {row, int((azimuthOf(bearing) + kPi) * sine / kPlace)};
}

/// Whether beside a direction there is a feature that could be this one: of its size, turned like it.
bool hasLike(const Features& from, int index, const Features& in, const BearingCells& cells,
             const Eigen::Vector3d& sight, double size)
{
    bool found = false;
    cells.near(sight, kBeside, [&](int k) {
        const double ratio = in.scales[std::size_t(k)] / size;
        found = found || ((in.bearings[std::size_t(k)] - sight.cast<float>()).norm() < kBeside &&
                          ratio < kLikeSize && kLikeSize * ratio > 1.0 && turnedAlike(from, index, in, k));
    });
    return found;
}

/// Features of one panorama by place that the other should show, too.
std::map<Place, int> expectedIn(const Panorama& from, const Panorama& other, const RigidPose& other_from,
                                const std::set<int>& matched, SilentPlaces* counts)
{
    std::map<Place, int> expected;
    const Features& f = from.features;
    const BearingCells cells(other.features.bearings);
    for (std::size_t i = 0; i < f.size(); ++i) {
        const double range = f.ranges_m[i];
        if (!(range > 0.3)) continue;
        const Eigen::Vector3d bearing = f.bearings[i].cast<double>();
        const Eigen::Vector3d point = other_from * (bearing * range);
        const double there = point.norm();
        if (there < 0.3 || std::max(range, there) > kLikeDistance * std::min(range, there)) continue;
        const Eigen::Vector3d sight = point / there;
        if (sight.dot(other_from.R * bearing) < std::cos(kSameSide)) continue;
        const double measured = other.range.at(sight.cast<float>());
        if (!(measured > 0.0) || std::abs(measured - there) > 0.05 + 0.015 * there) continue;
        ++expected[placeOf(bearing)];
        if (!hasLike(f, int(i), other.features, cells, sight, f.scales[i] * range / there)) continue;
        ++counts->comparable;
        counts->alike += int(matched.count(int(i)));
    }
    return expected;
}

} // namespace

SilentPlaces silentPlaces(const Panorama& panorama_0, const Panorama& panorama_1, const RigidPose& pose,
                          const std::vector<Correspondence>& matches)
{
    std::map<Place, int> matched_0, matched_1;
    std::set<int> features_0, features_1;
    for (const Correspondence& match : matches) {
        ++matched_0[placeOf(match.bearing_0)];
        ++matched_1[placeOf(match.bearing_1)];
        features_0.insert(match.index_0);
        features_1.insert(match.index_1);
    }
    SilentPlaces result;
    int silent = 0;
    const auto ask = [&](const std::map<Place, int>& expected, const std::map<Place, int>& matched) {
        for (const auto& [place, count] : expected) {
            result.expected += count;
            if (count < kFewest) continue;
            ++result.places;
            const auto found = matched.find(place);
            silent += found == matched.end() || found->second < kSpeaks * count;
        }
    };
    ask(expectedIn(panorama_0, panorama_1, pose.inverse(), features_0, &result), matched_0);
    ask(expectedIn(panorama_1, panorama_0, pose, features_1, &result), matched_1);
    if (result.places > 0) result.share = double(silent) / result.places;
    return result;
}

} // namespace nexomap
