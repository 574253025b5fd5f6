// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/RigidPose.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

/// What structure from motion by COLMAP makes of panoramas that are cut into views.
struct ColmapResult
{
    struct Step
    {
        std::string name;
        double wall_s = 0.0, user_s = 0.0;
    };
    std::vector<Step> steps;                           ///< features, matching, mapping
    int views = 0, views_placed = 0;                   ///< of all panoramas; in the largest model
    int models = 0;                                    ///< pieces that it left
    std::map<int, nexomap::RigidPose> world_from_pano; ///< by index in `files`; the model with most panoramas

    double wall_s() const;
    double user_s() const;
};

struct ColmapOptions
{
    int view_px = 1024; ///< of each of the six views of 90 degrees, whose intrinsics are told
    int threads = 2;
    std::string work; ///< an empty folder for views and models
};

/// Whether the program `colmap` can be started.
bool hasColmap();

/// A panorama is placed when at least one of its views is; its rotation is the one in the middle of what its
/// views say, its place their median. Cutting the views counts into no time.
/// @return nullopt with a line on standard error
std::optional<ColmapResult> placeWithColmap(const std::vector<std::string>& files,
                                            const ColmapOptions& options);
