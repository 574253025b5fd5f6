// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/model/Model.h"

namespace nexomap {

/// Reads a panorama, matches it with every earlier one and draws the best new match.
void addNode(Model& model, const Workplace& workplace, const std::string& path);

/// Solves the poses, chooses the links, writes the match files.
void finishAdding(Model& model, const Workplace& workplace);

/// Draws the match of two linked panoramas into KEY.png and makes it the newest picture.
void drawMatchPicture(const Model& model, const Workplace& workplace, const Edge& edge);

} // namespace nexomap
