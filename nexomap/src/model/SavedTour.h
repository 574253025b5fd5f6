// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/model/Model.h"

namespace nexomap {

/// What a tour file keeps of a panorama.
struct SavedNode
{
    std::string path;
    Eigen::Vector3d position = Eigen::Vector3d::Zero();
    Eigen::Vector2d vertex = Eigen::Vector2d::Zero();
    double direction = 0.0; ///< heading, radians
    int plan_x = -1, plan_y = -1;
    std::string plan_name;
};

/// What a tour file keeps of a link.
struct SavedMatch
{
    std::string name_0, name_1;
    LinkValues values;
    int mode = 0;
    double reliability = 0.0;
};

/// Restores a panorama, level at its heading; its lean comes with the match files.
void loadNode(Model& model, const Workplace& workplace, const SavedNode& saved);

/// Restores a link: by its match files where they lie in the working folder, so that relocating gives what it
/// gave before the tour was saved; otherwise by its numbers.
void loadMatch(Model& model, const Workplace& workplace, const SavedMatch& saved);

} // namespace nexomap
