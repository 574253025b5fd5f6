// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/StationSurvey.h"
#include "nexomap/src/model/Model.h"

#include <functional>
#include <vector>

/// A world of upright and level rectangles, scanned from stations: what a merge of them should give is known.
struct RayScene
{
    /// Part of the plane where one coordinate (0: x, 1: y, 2: z) has a value.
    struct Side
    {
        int axis;
        double at;
        Eigen::Vector2d low, high; ///< of the next coordinate and the one after it, x following z
    };

    std::vector<Side> sides;
    std::vector<Eigen::Vector3d> stations; ///< level, at heading 0
    /// What a station sees besides: metres along a direction, 0: nothing. May be null.
    std::function<double(int station, const Eigen::Vector3d& direction)> extra;
    std::vector<double> exposures; ///< of each station's picture; none: 1

    /// The six inner sides of a box.
    void addRoom(const Eigen::Vector3d& low, const Eigen::Vector3d& high);
    double range(int station, const Eigen::Vector3d& direction) const;
    std::vector<nexomap::MergeStation> mergeStations() const;
    /// What the library keeps of the stations once it has linked each to the one before it.
    /// @param apart  this station is linked to none; -1: all are linked
    nexomap::Model linkedModel(int apart = -1) const;
    /// Range pictures of 1024 x 512 pixels and evenly coloured pictures.
    nexomap::FrontEnd frontEnd() const;
    static constexpr int kRed = 120, kGreen = 100, kBlue = 80; ///< at exposure 1
};
