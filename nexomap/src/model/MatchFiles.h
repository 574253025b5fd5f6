// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/model/Model.h"

namespace nexomap {

std::string poseFileName(const std::string& key);   ///< KEY_0.dat
std::string inlierFileName(const std::string& key); ///< KEY_1.dat

/// Writes both files of every matched link; those that already hold the same are left alone.
void writeMatchFiles(const Model& model, const WorkingFolder& folder);

/// Removes the files of a match that is no more.
void removeMatchFiles(const std::string& key, const WorkingFolder& folder);

} // namespace nexomap
