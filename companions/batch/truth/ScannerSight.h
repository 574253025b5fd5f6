// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Which places of the true surfaces a scanner has measured, as far as geometry says.

#pragma once

#include "companions/batch/PoseFile.h"
#include "companions/batch/truth/TriangleTree.h"

#include <vector>

struct ScannerLimits
{
    double farthest_m = 40.0;
    double blindCone_deg = 20.0;                      ///< half angle about the lower pole
    double step_rad = 2 * 3.141592653589793 / 4096.0; ///< between two columns of the range picture
    double widestStep_m = 0.03;                       ///< between two returns on the surface; a coarser look
                                                      ///< cannot promise a point within that distance
    double leastCosine = 0.1;                         ///< of the incidence
};

/// The limits that a truth.json names.
ScannerLimits readScannerLimits(const QString& truthPath);

class ScannerSight
{
public:
    /// Glass lets the beam through.
    /// @param surfaces  must outlive this
    ScannerSight(const TrueSurfaces& surfaces, std::vector<Pose> stations, const ScannerLimits& limits);

    /// Whether a station sees the place: nothing between, neither too far nor too grazing nor below the
    /// scanner.
    /// @param place   true world, metres
    /// @param normal  unit vector out of the solid
    bool anySees(const Eigen::Vector3f& place, const Eigen::Vector3f& normal) const;

private:
    bool sees(const Pose& station, const Eigen::Vector3f& place, const Eigen::Vector3f& normal) const;

    TriangleTree m_opaque;
    std::vector<Pose> m_stations;
    ScannerLimits m_limits;
};
