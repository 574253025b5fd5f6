// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/GraphEdge.h"

#include <optional>

namespace nexomap {

/// One panorama's view of a feature.
struct TrackView
{
    int node = 0;
    Eigen::Vector3d bearing; ///< unit vector, panorama frame
    double range_m = 0.0;    ///< 0: none
};

/// A feature that several panoramas see, one view a panorama.
struct FeatureTrack
{
    std::vector<TrackView> views;
    bool scaleless = false; ///< an edge without scale matched it
};

/// Joins the inliers of the kept edges into tracks; tracks that would see one panorama twice are left out.
std::vector<FeatureTrack> featureTracks(const std::vector<GraphEdge>& edges, const std::vector<char>& kept);

/// The point nearest to all rays of a track; nullopt when it lies behind a station or too far to tell.
std::optional<Eigen::Vector3d> triangulate(const FeatureTrack& track, const std::vector<Pose>& poses);

} // namespace nexomap
