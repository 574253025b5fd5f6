// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/RigidPose.h"
#include "nexomap/src/PairPose.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

using Pair = std::pair<int, int>; ///< panorama indices, the smaller first

/// A folder that samplescene wrote, linked by the library, beside what is true.
struct LinkedSet
{
    struct Sight
    {
        double covisible = 0.0; ///< share of what one sees that the other sees too, mean of both
        double distance_m = 0.0;
        bool sees = false; ///< a free line between the two
    };
    struct Link
    {
        int mode = 0;
        double reliability = 0.0;
    };
    std::string name;
    bool ranged = false;                          ///< linked with its ranges
    std::vector<nexomap::RigidPose> truth, found; ///< world_from_pano, by index
    std::vector<int> group;                       ///< by index
    std::map<Pair, Sight> sights;                 ///< every pair
    std::map<Pair, nexomap::PairPose> measured;   ///< accepted pair by pair, before the graph
    std::map<Pair, Link> links;
    std::map<Pair, bool> open; ///< of the ranged pairs in one group: whether the library finds a free line
    double add_seconds = 0.0, finish_seconds = 0.0;

    /// Pose of the second panorama in the first.
    static nexomap::RigidPose relative(const std::vector<nexomap::RigidPose>& stations, const Pair& pair)
    {
        const nexomap::RigidPose from_world = stations[std::size_t(pair.first)].inverse();
        const nexomap::RigidPose& second = stations[std::size_t(pair.second)];
        return {from_world.R * second.R, from_world * second.t};
    }
};

struct LinkSetOptions
{
    bool pictures_alone = false; ///< leave the ranges out
    bool half_ranged = false;    ///< leave them out of every second panorama
    std::string cache;           ///< folder that keeps what was read of each panorama; empty: none
    std::string work;            ///< the library's working folder
};

/// Links a folder through the library's C functions.
/// @return nullopt with a line on standard error
std::optional<LinkedSet> linkSet(const std::string& folder, const LinkSetOptions& options);
