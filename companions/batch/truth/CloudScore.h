// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What a merged cloud is worth beside the true surfaces.

#pragma once

#include "companions/batch/truth/FloorPlanFile.h"
#include "companions/batch/truth/MergedCloud.h"
#include "companions/batch/truth/ScannerSight.h"

#include <array>

/// Part of a whole.
struct Share
{
    long long part = 0, whole = 0;

    void count(bool taken)
    {
        ++whole;
        part += taken ? 1 : 0;
    }
    double percent() const
    {
        return whole ? 100.0 * static_cast<double>(part) / static_cast<double>(whole) : 100.0;
    }
};

struct CloudScore
{
    Share exact;           ///< points within `kExact_m` of a true surface, of those looked at
    double median_m = 0.0; ///< of their distances
    double percentile95_m = 0.0;
    std::array<Share, kTrueParts> exactByPart; ///< by the part that is nearest
    Share farOff;                              ///< points beyond `kFarOff_m`

    Share covered; ///< seen surface within `kCovered_m` of a point; indoors without the ceiling, and what
                   ///< stands outdoors apart
    Share coveredOutdoors;
    std::array<Share, kTrueParts> coveredByPart;
    Share lintels, wallTops, lamps; ///< the same, of those up to 5 cm below the ceiling; tops: 30 cm of wall

    long long above5cm = 0, above4cm = 0; ///< points in rooms above 5 (4) cm below the ceiling

    static constexpr float kExact_m = 0.015f, kFarOff_m = 0.05f, kCovered_m = 0.03f;
};

/// @param cloud  in the frame of the truth
CloudScore scoreCloud(const std::vector<Eigen::Vector3f>& cloud, const TrueSurfaces& surfaces,
                      const TrueStorey& storey, const ScannerSight& sight);
