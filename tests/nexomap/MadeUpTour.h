// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/FrontEnd.h"
#include "nexomap/src/Geometry.h"

#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <vector>

/// A tour whose truth is known: panoramas in a made-up hall, with range pictures ray-cast from its walls, and
/// a front end that hands out relative poses with noise. No file is read.
struct MadeUpTour
{
    struct Station
    {
        std::string name;
        nexomap::Pose pose; ///< world_from_pano
    };

    std::vector<Station> stations;
    double half_width_m = 20.0, half_depth_m = 20.0; ///< of the hall, around the origin
    double camera_height_m = 1.6, ceiling_m = 2.8;   ///< above the floor; the floor lies at -camera_height_m
    /// Walls across the hall: x, and the door's y range.
    struct Wall
    {
        double x, door_from, door_to;
    };
    std::vector<Wall> walls;
    bool lidar = true;
    double reach_m = 7.0; ///< pairs nearer than this match
    double rotation_sigma = 0.03 * nexomap::kDegree, translation_sigma = 0.003;
    unsigned seed = 1;
    std::map<std::pair<std::string, std::string>, nexomap::PairPose> overrides; ///< what to hand out instead
    std::size_t inliers = 60;

    /// Names follow the alphabet: AAAAAAAAAAAAAA, AAAAAAAAAAAAAB, ...
    void add(double x, double y, double heading, double z = 0.0, double lean_x = 0.0, double lean_y = 0.0);
    nexomap::FrontEnd frontEnd() const;
    nexomap::Panorama panorama(int station) const;
    nexomap::PairPose pairPose(int a, int b) const;
    double rayRange(const nexomap::Pose& pose, const Eigen::Vector3d& direction) const;
    static std::string nameOf(int index);
    /// Path that the front end takes for a station.
    static std::string pathOf(int index) { return "tour/" + nameOf(index) + ".pno"; }
};

/// A front end in which the odd stations have no ranges, and pairs with one of them no scale of their own.
nexomap::FrontEnd everySecondRanged(const MadeUpTour& tour);

/// A folder of its own for one test, removed with everything in it.
class TemporaryFolder
{
public:
    explicit TemporaryFolder(const std::string& name = "nexomap test");
    ~TemporaryFolder();
    std::string path() const { return m_path.string(); }
    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }
    std::vector<std::string> names() const; ///< sorted

private:
    std::filesystem::path m_path;
};
