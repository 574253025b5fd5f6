// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Panoramas without pictures: landmarks on walls, seen through doors.
#include "benchmarks/linking/MadeUpStorey.h"

#include "nexomap/src/pair/FaceFeatures.h"
#include "nexomap/src/pair/RangeReduction.h"
#include "nexomap/src/pair/Sphere.h"

#include <algorithm>
#include <cmath>

using namespace nexomap;

namespace {

constexpr double kRoom_m = 5.0, kHeight_m = 2.6, kDoor_m = 1.0, kDoorHeight_m = 2.1, kCamera_m = 1.5;
constexpr double kNoise_m = 0.006, kBearingNoise = 0.03 * kDegree, kWallsNoise = 0.2 * kDegree;
constexpr int kMostDoors = 4; // that a look goes through

std::array<float, 128> anyLook(std::mt19937& random)
{
    std::normal_distribution<float> normal;
    std::array<float, 128> look;
    for (float& value : look)
        value = std::pow(normal(random), 4.f); // few strong gradients, many weak ones
    return look;
}

/// The same thing from another place.
std::array<float, 128> seen(const std::array<float, 128>& look, std::mt19937& random)
{
    std::normal_distribution<float> normal;
    std::array<float, 128> other;
    for (std::size_t k = 0; k < look.size(); ++k)
        other[k] = look[k] * std::max(0.f, 1.f + 0.3f * normal(random)) + 0.05f * std::abs(normal(random));
    return other;
}

} // namespace

std::string MadeUpStorey::nameOf(int index)
{
    std::string name(14, 'A');
    for (int k = 13; index > 0; --k, index /= 26)
        name[std::size_t(k)] = char('A' + index % 26);
    return name;
}

MadeUpStorey::MadeUpStorey(int panoramas, int features, unsigned seed)
    : m_features(features)
    , m_seed(seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const int rooms = std::max(1, (2 * panoramas + 4) / 5);
    m_columns = std::max(1, int(std::ceil(std::sqrt(double(rooms)))));
    m_rooms.resize(std::size_t(rooms));
    for (int r = 0; r < rooms; ++r) {
        const Eigen::Vector3d corner(r % m_columns * kRoom_m, r / m_columns * kRoom_m, 0.0);
        for (int k = 0; k < features * 2 / 5; ++k) {
            Landmark landmark;
            const double along = 0.1 + (kRoom_m - 0.2) * unit(random),
                         up = 0.1 + (kHeight_m - 0.2) * unit(random);
            // A hand's breadth in front of the wall's middle plane, which is where the range map ends.
            constexpr double kIn = 0.002;
            const int wall = int(random() % 4);
            const Eigen::Vector3d inside(wall < 2    ? along
                                         : wall == 2 ? kIn
                                                     : kRoom_m - kIn,
                                         wall == 0   ? kIn
                                         : wall == 1 ? kRoom_m - kIn
                                                     : along,
                                         up);
            landmark.point = corner + inside;
            landmark.size_m = float(0.01 * std::pow(30.0, unit(random)));
            landmark.look = anyLook(random);
            if (up < kDoorHeight_m && std::abs(along - 0.5 * kRoom_m) < 0.5 * kDoor_m)
                continue; // in the door
            m_rooms[std::size_t(r)].push_back(landmark);
        }
    }
    for (int k = 0; k < 300; ++k)
        m_usual.push_back(anyLook(random));
    for (int n = 0; n < panoramas; ++n) {
        const int r = n * 2 / 5;
        RigidPose pose;
        pose.R = headingRotation(2.0 * kPi * unit(random));
        pose.t = {(r % m_columns + 0.16 + 0.68 * unit(random)) * kRoom_m,
                  (r / m_columns + 0.16 + 0.68 * unit(random)) * kRoom_m, kCamera_m + 0.05 * unit(random)};
        m_stations.push_back(pose);
    }
}

bool MadeUpStorey::visible(const Eigen::Vector3d& from, const Eigen::Vector3d& to) const
{
    for (int axis = 0; axis < 2; ++axis) {
        const double a = from[axis] / kRoom_m, b = to[axis] / kRoom_m;
        for (int wall = int(std::ceil(std::min(a, b))); wall <= std::floor(std::max(a, b)); ++wall) {
            const double share = (wall - a) / (b - a);
            if (!(share > 0.0) || !(share < 1.0)) continue;
            const Eigen::Vector3d at = from + share * (to - from);
            const double along = at[1 - axis] / kRoom_m;
            const double off = std::abs(along - std::floor(along) - 0.5) * kRoom_m;
            if (off > 0.5 * kDoor_m || at.z() > kDoorHeight_m) return false;
        }
    }
    return true;
}

RangeMap MadeUpStorey::ranges(const RigidPose& station, std::mt19937& random) const
{
    RangeMap map{cv::Mat1f(kRangeHeight, kRangeWidth), cv::Mat1b(kRangeHeight, kRangeWidth, std::uint8_t(0)),
                 0.001f, nullptr};
    const EquirectGrid grid{kRangeWidth, kRangeHeight};
    const int rows = (int(m_rooms.size()) + m_columns - 1) / m_columns;
    for (int x = 0; x < kRangeWidth; ++x) {
        const Eigen::Vector3d level = grid.direction(x + 0.5, kRangeHeight / 2);
        const Eigen::Vector3d ahead = station.R * Eigen::Vector3d(level.x(), level.y(), 0.0).normalized();
        // Walls on the way with whether a door is there, by distance over the floor.
        std::vector<std::pair<double, bool>> walls;
        for (int axis = 0; axis < 2; ++axis) {
            const int last = axis == 0 ? m_columns : rows;
            for (int wall = 0; wall <= last; ++wall) {
                const double distance = (wall * kRoom_m - station.t[axis]) / ahead[axis];
                if (!(distance > 0.0)) continue;
                const double along = (station.t[1 - axis] + distance * ahead[1 - axis]) / kRoom_m;
                const bool door = wall > 0 && wall < last &&
                                  std::abs(along - std::floor(along) - 0.5) * kRoom_m < 0.5 * kDoor_m;
                walls.emplace_back(distance, door);
            }
        }
        std::sort(walls.begin(), walls.end());
        const std::size_t solid = std::size_t(
            std::find_if(walls.begin(), walls.end(), [](const auto& wall) { return !wall.second; }) -
            walls.begin());
        walls.resize(std::min(walls.size(), std::min(solid, std::size_t(kMostDoors)) + 1));
        walls.back().second = false;
        for (int y = 0; y < kRangeHeight; ++y) {
            const double polar = kPi * (y + 0.5) / kRangeHeight;
            const double rise = std::cos(polar) / std::sin(polar);
            const double end = rise > 0.0 ? (kHeight_m - station.t.z()) / rise : -station.t.z() / rise;
            double distance = end;
            for (const auto& [wall, door] : walls)
                if (wall < distance && !(door && station.t.z() + wall * rise < kDoorHeight_m))
                    distance = wall;
            const double noise = kNoise_m * (double(random() & 0xffffu) / 65536.0 - 0.5) * 3.46;
            const long halves = std::lround(2000.0 * (distance / std::sin(polar) + noise));
            map.range_m(y, x) = float(std::clamp(halves, 0l, 60000l)) * 0.5f * 0.001f;
        }
    }
    for (int y = 0; y < kRangeHeight; ++y)
        for (int x = 0; x < kRangeWidth; ++x) {
            const float here = map.range_m(y, x), next = map.range_m(y, (x + 1) % kRangeWidth);
            if (std::abs(here - next) > 0.08f * here)
                map.edge(y, x) = map.edge(y, (x + 1) % kRangeWidth) = 255;
        }
    return map;
}

std::shared_ptr<const Panorama> MadeUpStorey::panorama(int index) const
{
    std::mt19937 random(m_seed * 7919u + unsigned(index));
    std::normal_distribution<double> normal;
    const RigidPose& station = m_stations[std::size_t(index)];
    const RigidPose pano_from_world = station.inverse();
    auto panorama = std::make_shared<Panorama>();
    panorama->id = nameOf(index);
    panorama->path = panorama->id;
    panorama->preview = cv::Mat3b(512, 1024, cv::Vec3b(90, std::uint8_t(index), 160));
    panorama->range = ranges(station, random);
    panorama->camera_height_m = station.t.z();
    const double walls =
        azimuthOf(pano_from_world.R * Eigen::Vector3d::UnitX()) + kWallsNoise * normal(random);
    panorama->walls_azimuth = walls - 0.5 * kPi * std::floor(walls / (0.5 * kPi));
    Features& features = panorama->features;
    const auto add = [&](const Eigen::Vector3d& point, double size_m, const std::array<float, 128>& look) {
        const double range = point.norm();
        const Eigen::Vector3d off(kBearingNoise * normal(random), kBearingNoise * normal(random),
                                  kBearingNoise * normal(random));
        std::array<std::uint8_t, 128> bytes;
        rootSift(look.data(), bytes.data());
        features.descriptors.insert(features.descriptors.end(), bytes.begin(), bytes.end());
        features.bearings.push_back((point / range + off).normalized().cast<float>());
        features.ranges_m.push_back(float(range + 0.5 * kNoise_m * normal(random)));
        features.scales.push_back(float(size_m / range));
        features.angles_rad.push_back(float(0.08 * normal(random)));
    };
    const int column = int(station.t.x() / kRoom_m), row = int(station.t.y() / kRoom_m);
    for (int r = 0; r < int(m_rooms.size()); ++r) {
        if (std::abs(r % m_columns - column) > 2 || std::abs(r / m_columns - row) > 2) continue;
        for (const Landmark& landmark : m_rooms[std::size_t(r)]) {
            const Eigen::Vector3d point = pano_from_world * landmark.point;
            if (landmark.size_m / point.norm() < 0.0015 || random() % 5 < 2)
                continue; // too small, or not found
            if (visible(station.t, landmark.point)) add(point, landmark.size_m, seen(landmark.look, random));
        }
    }
    // The rest finds no partner: clutter, and things that every room has.
    while (int(features.size()) < m_features) {
        const Eigen::Vector3d direction =
            directionFromAngles(2.0 * kPi * (double(random() & 0xffffu) / 65536.0),
                                kPi * (0.3 + 0.4 * (double(random() & 0xffffu) / 65536.0)));
        const double range = panorama->range.at(direction.cast<float>());
        const double size_m = 0.01 * std::pow(30.0, double(random() & 0xffffu) / 65536.0);
        const bool usual = random() % 4 == 0;
        if (range > 0.3)
            add(direction * range, size_m,
                usual ? seen(m_usual[random() % m_usual.size()], random) : anyLook(random));
    }
    return panorama;
}
