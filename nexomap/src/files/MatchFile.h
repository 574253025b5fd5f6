// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/files/WorkingFolder.h"
#include "nexomap/src/Geometry.h"
#include "nexomap/src/PairPose.h"

#include <string>
#include <vector>

namespace nexomap {

/// A measured relative pose between two panoramas named by identity.
struct StoredPose
{
    std::string name_0, name_1;
    int mode = 0; ///< 0 matched, 1 by hand, 2 from the poses
    PairPose pose;
};

/// Where a panorama stood when the file was written, exactly: tour files round and keep no lean.
struct StoredStation
{
    Pose world_from_pano;
    Eigen::Vector3d up = Eigen::Vector3d::UnitZ();
    double height_m = 0.0; ///< above the floor; 0: unknown
};

/// Content of a link's first match file.
struct MatchRecord
{
    StoredPose link; ///< without its inliers, which stand in the second file; with its length ties
    std::uint32_t inliers = 0;
    StoredStation station_0, station_1;
    /// Measurements that the poses rest on although no link shows them, at either station: hidden by walls or
    /// made by hand. They travel with the links that the tour file keeps.
    std::vector<StoredPose> companions;
};

/// Both files: magic, version, payload length, CRC-32 of the payload, payload; all little-endian.
/// Decoders throw Failure(NEXOMAP_BAD_FILE) on anything that is not whole and sound.
Bytes encodeMatchRecord(const MatchRecord& record);
MatchRecord decodeMatchRecord(const Bytes& bytes);
Bytes encodeInliers(const std::string& name_0, const std::string& name_1,
                    const std::vector<PairInlier>& inliers);
std::vector<PairInlier> decodeInliers(const Bytes& bytes, const std::string& name_0,
                                      const std::string& name_1);

} // namespace nexomap
