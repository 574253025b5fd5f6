// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/truth/CloudScore.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t kMostPoints = 1000000; ///< of the cloud are looked at, evenly spread over the file
constexpr std::size_t kPlaces = 300000;      ///< on the true surfaces
constexpr double kBelowCeiling_m = 0.05;
constexpr double kWallTop_m = 0.3;

/// The same place for the whole building: its ceiling, or nothing outdoors.
std::optional<double> ceilingOver(const TrueStorey& storey, const Eigen::Vector3f& point)
{
    constexpr double kDoorDepth_m = 0.1; // half of an inner wall: lintels belong to their rooms
    if (!storey.ceiling) return std::nullopt;
    const Eigen::Vector2d place = point.head<2>().cast<double>();
    return storey.roomAt(place, kDoorDepth_m) ? storey.ceiling : std::nullopt;
}

void scorePoints(const std::vector<Eigen::Vector3f>& cloud, const TrueSurfaces& surfaces, CloudScore* score)
{
    constexpr float kLimit_m = 0.5f;
    const TriangleTree tree(surfaces, [](TruePart) { return true; });
    const std::size_t stride = std::max<std::size_t>(1, cloud.size() / kMostPoints);
    std::vector<float> distances;
    for (std::size_t i = 0; i < cloud.size(); i += stride) {
        const TriangleTree::Nearest nearest = tree.nearest(cloud[i], kLimit_m);
        const bool exact = nearest.distance <= CloudScore::kExact_m;
        distances.push_back(nearest.distance);
        score->exact.count(exact);
        score->farOff.count(nearest.distance > CloudScore::kFarOff_m);
        if (nearest.triangle >= 0) {
            const TruePart part = surfaces.triangles[static_cast<std::size_t>(nearest.triangle)].part;
            score->exactByPart[static_cast<std::size_t>(part)].count(exact);
        }
    }
    if (distances.empty()) return;
    const auto percentile = [&](double share) {
        const auto at = distances.begin() +
                        static_cast<std::ptrdiff_t>(share * static_cast<double>(distances.size() - 1));
        std::nth_element(distances.begin(), at, distances.end());
        return static_cast<double>(*at);
    };
    score->median_m = percentile(0.5);
    score->percentile95_m = percentile(0.95);
}

/// Calls `take(place, triangle)` for places spread evenly over the area of the surfaces; within a triangle
/// they follow the R2 sequence (Roberts 2018, "The Unreasonable Effectiveness of Quasirandom Sequences").
template <class Take>
void forPlaces(const TrueSurfaces& surfaces, const std::vector<std::size_t>& triangles, std::size_t count,
               const Take& take)
{
    double area = 0.0;
    for (const std::size_t t : triangles)
        area += static_cast<double>(surfaces.areaNormal(t).norm());
    const double each = area / static_cast<double>(count);
    double due = 0.5 * each;
    double done = 0.0;
    unsigned number = 0;
    for (const std::size_t t : triangles) {
        done += static_cast<double>(surfaces.areaNormal(t).norm());
        for (; due < done; due += each, ++number) {
            float u = static_cast<float>(std::fmod(0.7548776662466927 * number, 1.0));
            float v = static_cast<float>(std::fmod(0.5698402909980532 * number, 1.0));
            if (u + v > 1) {
                u = 1 - u;
                v = 1 - v;
            }
            take(surfaces.at(t, 0) + u * (surfaces.at(t, 1) - surfaces.at(t, 0)) +
                     v * (surfaces.at(t, 2) - surfaces.at(t, 0)),
                 t);
        }
    }
}

bool isOutdoors(TruePart part)
{
    return part >= TruePart::Ground;
}

/// Panes give hardly a return and mirrors none of their own; leaves are full of holes.
bool givesReturns(TruePart part)
{
    return part != TruePart::Glass && part != TruePart::Mirror && part != TruePart::Plant;
}

void scorePlaces(const PointCells& cells, const TrueSurfaces& surfaces, const TrueStorey& storey,
                 const ScannerSight& sight, bool outdoors, CloudScore* score)
{
    std::vector<std::size_t> triangles;
    for (std::size_t t = 0; t < surfaces.triangles.size(); ++t) {
        const TruePart part = surfaces.triangles[t].part;
        if (givesReturns(part) && isOutdoors(part) == outdoors) triangles.push_back(t);
    }
    forPlaces(surfaces, triangles, kPlaces, [&](const Eigen::Vector3f& place, std::size_t t) {
        const Eigen::Vector3f normal = surfaces.areaNormal(t).normalized();
        const TruePart part = surfaces.triangles[t].part;
        const std::optional<double> ceiling = ceilingOver(storey, place);
        const double height = static_cast<double>(place.z());
        if (ceiling && height > *ceiling - kBelowCeiling_m) return;
        if (!sight.anySees(place, normal)) return;
        const bool covered = cells.hasPointNear(place);
        (outdoors ? score->coveredOutdoors : score->covered).count(covered);
        score->coveredByPart[static_cast<std::size_t>(part)].count(covered);
        if (!ceiling) return;
        if (part == TruePart::Lintel) score->lintels.count(covered);
        if (part == TruePart::Lamp) score->lamps.count(covered);
        const bool wall = part == TruePart::Lintel || part == TruePart::Wall;
        if (wall && height > *ceiling - kBelowCeiling_m - kWallTop_m) score->wallTops.count(covered);
    });
}

void countAbove(const std::vector<Eigen::Vector3f>& cloud, const TrueStorey& storey, CloudScore* score)
{
    for (const Eigen::Vector3f& point : cloud) {
        const std::optional<double> ceiling = ceilingOver(storey, point);
        if (!ceiling) continue;
        const double below = *ceiling - static_cast<double>(point.z());
        if (below < kBelowCeiling_m) ++score->above5cm;
        if (below < kBelowCeiling_m - 0.01) ++score->above4cm;
    }
}

} // namespace

CloudScore scoreCloud(const std::vector<Eigen::Vector3f>& cloud, const TrueSurfaces& surfaces,
                      const TrueStorey& storey, const ScannerSight& sight)
{
    CloudScore score;
    scorePoints(cloud, surfaces, &score);
    const PointCells cells(cloud, CloudScore::kCovered_m);
    scorePlaces(cells, surfaces, storey, sight, false, &score);
    scorePlaces(cells, surfaces, storey, sight, true, &score);
    countAbove(cloud, storey, &score);
    return score;
}
