// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/model/Model.h"

namespace nexomap {

/// Looks for features that tie lengths which nothing shared tells: of edges without scale that meet at a
/// panorama, but stand in different sets by their shared features, the features of one are looked for along
/// their arcs in the far panorama of the other. What agrees on one ratio of lengths, and clearly more than
/// chance does, joins the other edge's inliers, so that it is kept, and relocated, like any other match.
/// The result is the same on any number of threads.
/// @return whether any edge has gained inliers; its pose is the same otherwise
bool transferLengths(Model& model, const Workplace& workplace);

} // namespace nexomap
