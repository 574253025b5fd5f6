// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/RigidPose.h"
#include "nexomap/src/Panorama.h"

#include <optional>

/// A folder of panorama files whose poses are known: what samplescene writes.
struct TruthSet
{
    struct Pair
    {
        int index_0 = 0, index_1 = 0;
        double covisible = 0.0; ///< share of what one sees that the other sees too, mean of both
        bool sees = false;      ///< a free line between the two
    };
    std::vector<std::shared_ptr<const nexomap::Panorama>> panoramas;
    std::vector<nexomap::RigidPose> world_from_pano;
    std::vector<Pair> pairs;
    double load_seconds = 0.0;

    nexomap::RigidPose relative(const Pair& pair) const; ///< of index_1 in index_0
};

struct TruthSetOptions
{
    bool pictures_alone = false; ///< leave the ranges out
    std::string cache;           ///< folder that keeps what was read of each panorama; empty: none
};

/// @return nullopt with a line on standard error
std::optional<TruthSet> readTruthSet(const std::string& folder, const TruthSetOptions& options = {});

/// The folders named on the command line, with --cache DIR and --pictures-alone taken into `options`. Ends
/// the program with the usage text when that is asked for, no folder is named or another option is.
std::vector<std::string> readArguments(int argc, char** argv, const char* usage, TruthSetOptions* options);
