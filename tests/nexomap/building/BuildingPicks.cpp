// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/nexomap/building/BuildingPicks.h"

#include "companions/samplescene/Writer.h"
#include "tests/nexomap/MadeUpTour.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <stdexcept>

using namespace nexomap;

namespace {

constexpr int kStations = 4;
constexpr int kWidth = 2048;
constexpr double kApart_deg = 25.0;

samplescene::Vec3 vec(const Eigen::Vector3d& v)
{
    return {float(v.x()), float(v.y()), float(v.z())};
}

} // namespace

BuildingPicks::BuildingPicks()
{
    samplescene::Options options;
    options.count = kStations;
    options.lightSpacing_m = 1.0;
    m_scene = samplescene::makeScene(options);
}

const Panorama& BuildingPicks::panorama(int station) const
{
    std::unique_ptr<Panorama>& here = m_panoramas[station];
    if (!here) {
        const TemporaryFolder folder("picks in a building");
        const std::string path = (folder / "pano.pno").string();
        std::string error = samplescene::writePanorama(m_scene.stations[std::size_t(station)], station,
                                                       samplescene::render(m_scene, station, kWidth), path);
        EXPECT_EQ(error, "");
        here = loadPanorama(path, &error);
        if (!here) throw std::runtime_error(error);
    }
    return *here;
}

std::vector<std::pair<int, int>> BuildingPicks::neighbours() const
{
    std::vector<std::pair<int, int>> pairs;
    for (int a = 0; a < kStations; ++a)
        for (int b = a + 1; b < kStations; ++b) {
            const samplescene::Sight sight = samplescene::lineOfSight(m_scene, a, b);
            if (sight.eyeFree && sight.footFree && sight.distance < 6.0) pairs.push_back({a, b});
        }
    return pairs;
}

Pose BuildingPicks::poseOf(int station) const
{
    const samplescene::Station& s = m_scene.stations[std::size_t(station)];
    Pose pose;
    pose.R = Eigen::Map<const Eigen::Matrix<double, 3, 3, Eigen::RowMajor>>(s.rotation.data());
    pose.t = Eigen::Map<const Eigen::Vector3d>(s.position.data());
    return pose;
}

Pose BuildingPicks::truth(int station_0, int station_1) const
{
    return poseOf(station_0).inverse() * poseOf(station_1);
}

std::vector<PickedPair> BuildingPicks::picks(int station_0, int station_1, int count, double noise_deg,
                                             unsigned seed) const
{
    const samplescene::World& world = m_scene.worldOf(station_0);
    const Pose from = poseOf(station_0), to = poseOf(station_1);
    std::mt19937 random(seed);
    std::normal_distribution<double> normal(0.0, noise_deg * kDegree);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::vector<PickedPair> all;
    while (int(all.size()) < count) {
        const Eigen::Vector3d u =
            directionFromAngles(2 * kPi * unit(random), (0.25 + 0.5 * unit(random)) * kPi);
        const samplescene::Hit hit = world.trace(vec(from.t), vec(from.R * u), 1e-3f, 60.0f);
        if (hit.shape < 0) continue;
        const samplescene::Look look = world.materialAt(hit).look;
        if (look == samplescene::Look::Mirror || look == samplescene::Look::Glass) continue;
        const Eigen::Vector3d point(double(hit.point.x), double(hit.point.y), double(hit.point.z));
        const Eigen::Vector3d normal_there(double(hit.normal.x), double(hit.normal.y), double(hit.normal.z));
        // What is seen at a grazing angle nobody picks.
        if (normal_there.dot((to.t - point).normalized()) < 0.2 ||
            normal_there.dot((from.t - point).normalized()) < 0.2)
            continue;
        const Eigen::Vector3d start = point + 2e-3 * normal_there;
        if (world.bvh.blocked(vec(start), vec(to.t - start), 1e-4f, 1.0f, true)) continue;
        bool apart = true;
        for (const PickedPair& p : all)
            apart =
                apart && directionFromAngles(p.azimuth_0, p.polar_0).dot(u) < std::cos(kApart_deg * kDegree);
        if (!apart) continue;
        const Eigen::Vector3d v = to.inverse() * point;
        all.push_back({azimuthOf(u) + normal(random) / std::sin(polarOf(u)), polarOf(u) + normal(random),
                       azimuthOf(v) + normal(random) / std::sin(polarOf(v)), polarOf(v) + normal(random)});
    }
    return all;
}
