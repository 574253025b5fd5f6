// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Scene.h"
#include "nexomap/src/Geometry.h"
#include "nexomap/src/links/HandMadePose.h"
#include "nexomap/src/Panorama.h"

#include <map>
#include <memory>
#include <vector>

/// Two rooms of the made-up building with panoramas read back from files, and a person who picks points
/// there.
class BuildingPicks
{
public:
    BuildingPicks();

    /// Stations that see each other and each other's floor.
    std::vector<std::pair<int, int>> neighbours() const;
    /// With range; rendered and read back when first asked for.
    const nexomap::Panorama& panorama(int station) const;
    nexomap::Pose truth(int station_0, int station_1) const; ///< 0 from 1

    /// Points of surfaces that both stations see free, at least 25 degrees apart in the first, with normally
    /// distributed noise on each of the four angles (on the sphere).
    std::vector<nexomap::PickedPair> picks(int station_0, int station_1, int count, double noise_deg,
                                           unsigned seed) const;

private:
    nexomap::Pose poseOf(int station) const;

    samplescene::Scene m_scene;
    mutable std::map<int, std::unique_ptr<nexomap::Panorama>> m_panoramas;
};
