// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/FloorHole.h"

#include "nexomap/src/pair/Sphere.h"

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr float kWidest_m = 1.4f, kRim_m = 0.15f;
constexpr float kAgrees_m = 0.02f;
constexpr std::size_t kFewest = 5;

float acrossOf(const Eigen::Vector3f& point)
{
    return std::hypot(point.x(), point.y());
}

} // namespace

bool FloorHole::isRim(const Eigen::Vector3f& point, const Eigen::Vector3f& normal) const
{
    return normal.dot(m_up) > 0.95f && point.z() < -0.5f && acrossOf(point) < kWidest_m + kRim_m;
}

int FloorHole::sectorOf(const Eigen::Vector3f& point) const
{
    const float turn = std::atan2(point.y(), point.x()) / float(2.0 * kPi) + 0.5f;
    return std::clamp(int(turn * kSectors), 0, kSectors - 1);
}

void FloorHole::add(const Patch& rim)
{
    m_rim[std::size_t(sectorOf(rim.point))].push_back(rim);
}

std::array<FloorHole::Sector, FloorHole::kSectors> FloorHole::summed(Eigen::Vector3f* plane) const
{
    std::array<Sector, kSectors> sectors;
    std::vector<float> heights;
    for (std::size_t k = 0; k < sectors.size(); ++k) {
        if (m_rim[k].size() < kFewest) continue;
        Sector& sector = sectors[k];
        std::vector<float> distances;
        for (const Patch& patch : m_rim[k])
            distances.push_back(acrossOf(patch.point));
        std::nth_element(distances.begin(), distances.begin() + kFewest - 1, distances.end());
        sector.distance = distances[kFewest - 1];
        if (sector.distance > kWidest_m) continue;
        float count = 0.f;
        for (const Patch& patch : m_rim[k])
            if (acrossOf(patch.point) < sector.distance + kRim_m) {
                sector.height += patch.point.z();
                sector.colour += patch.colour;
                count += 1.f;
            }
        sector.height /= count;
        sector.colour /= count;
        sector.agrees = true;
        heights.push_back(sector.height);
    }
    *plane = Eigen::Vector3f::Zero();
    if (heights.empty()) return sectors;
    std::nth_element(heights.begin(), heights.begin() + std::ptrdiff_t(heights.size() / 2), heights.end());
    const float middle = heights[heights.size() / 2];
    // The plane height = a + b x + c y through the rims near the median height, then whoever lies on it.
    Eigen::Matrix3f normal = Eigen::Matrix3f::Identity() * 1e-3f;
    Eigen::Vector3f right(1e-3f * middle, 0.f, 0.f);
    const auto place = [&](std::size_t k, float distance) {
        const float angle = (float(k) + 0.5f) / kSectors * float(2.0 * kPi) - float(kPi);
        return Eigen::Vector3f(1.f, distance * std::cos(angle), distance * std::sin(angle));
    };
    for (std::size_t k = 0; k < sectors.size(); ++k) {
        if (!sectors[k].agrees || std::abs(sectors[k].height - middle) > 2.f * kAgrees_m) continue;
        const Eigen::Vector3f row = place(k, sectors[k].distance);
        normal += row * row.transpose();
        right += row * sectors[k].height;
    }
    *plane = normal.ldlt().solve(right);
    for (std::size_t k = 0; k < sectors.size(); ++k) {
        Sector& sector = sectors[k];
        sector.agrees =
            sector.agrees && std::abs(plane->dot(place(k, sector.distance)) - sector.height) < kAgrees_m;
    }
    return sectors;
}

std::vector<FloorHole::Patch> FloorHole::fill(float cell_m) const
{
    Eigen::Vector3f plane;
    const std::array<Sector, kSectors> sectors = summed(&plane);
    std::vector<Patch> patches;
    const int reach = int(kWidest_m / cell_m);
    for (int j = -reach; j <= reach; ++j)
        for (int i = -reach; i <= reach; ++i) {
            Patch patch;
            patch.point = {float(i) * cell_m, float(j) * cell_m, 0.f};
            const int number = sectorOf(patch.point);
            const Sector& here = sectors[std::size_t(number)];
            const Sector& there = sectors[std::size_t((number + kSectors / 2) % kSectors)];
            const float distance = acrossOf(patch.point);
            if (!here.agrees || !there.agrees || distance >= here.distance) continue;
            patch.point.z() = plane.dot(Eigen::Vector3f(1.f, patch.point.x(), patch.point.y()));
            const float share = (here.distance - distance) / (here.distance + there.distance);
            patch.colour = (1.f - share) * here.colour + share * there.colour;
            patches.push_back(patch);
        }
    return patches;
}

} // namespace nexomap
