// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Brings estimated poses into the frame of the true ones, and says how far each is off.

#pragma once

#include "companions/batch/PoseFile.h"

#include <Eigen/Geometry>

#include <vector>

/// One panorama's deviation after alignment.
struct PoseError
{
    double rotation_deg = 0.0; ///< angle of the rotation between the estimated and the true orientation
    double heading_deg = 0.0;  ///< between the horizontal directions of azimuth 0
    double position_m = 0.0;
};

enum class Scale
{
    Known,  ///< a rigid motion
    Unknown ///< a similarity
};

/// Orientations are aligned by the rotation nearest to all (geodesic L1 mean, Weiszfeld's iteration: Hartley,
/// Aftab and Trumpf, "L1 rotation averaging using the Weiszfeld algorithm", 2011), so that one wrong panorama
/// does not turn the others; positions by least squares (Umeyama 1991), or, where the positions do not
/// determine a rotation (fewer than three, or all on a line), by the orientations' rotation.
/// @param estimated, truth  the same panoramas in the same order, at least one
std::vector<PoseError> alignedErrors(const std::vector<Pose>& estimated, const std::vector<Pose>& truth,
                                     Scale scale);

/// The rigid motion that carries the estimated poses to the true ones by least squares: of the positions and
/// of the tips of each panorama's axes, 2 m long, so that orientations count as surroundings that far away
/// do.
/// @param estimated, truth  as above
Eigen::Isometry3d rigidAlignment(const std::vector<Pose>& estimated, const std::vector<Pose>& truth);

/// Middle value, the mean of the two middle ones for an even count; 0 for none.
double median(std::vector<double> values);
