// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/CeilingMap.h"
#include "nexomap/src/merge/ExposureBalance.h"
#include "nexomap/src/merge/SeenSpace.h"
#include "nexomap/src/merge/SurfaceSampling.h"

#include <memory>
#include <string>
#include <unordered_map>

namespace nexomap {

constexpr double kFarthest_m = 60.0; // beyond it cells of the range map are wider than any surface is useful

/// A panorama of the group that is merged.
struct MergeStation
{
    std::string name, path;
    Pose pose;                                     ///< world_from_pano
    Eigen::Vector3d up = Eigen::Vector3d::UnitZ(); ///< the vertical in the world
    const Panorama* loaded =
        nullptr; ///< what memory holds of it, for when the file cannot be read; may be null
};

/// The ranges of a station in full resolution, or what memory holds of them.
/// @return empty with one line in *error when it has none
RangePicture rangesOf(const MergeStation& station, const FrontEnd& front_end, std::string* error);

/// A station's colours by direction, evened out by factors.
class StationColours
{
public:
    StationColours(const MergeStation& station, const FrontEnd& front_end);
    void balance(const Eigen::Vector3f& factors);
    /// @param direction  panorama frame, any length. @return red, green, blue
    std::array<std::uint8_t, 3> at(const Eigen::Vector3f& direction) const;

private:
    ColourPicture m_picture;
    std::array<std::array<std::uint8_t, 256>, 3> m_curve;
};

/// Where the surfaces of all stations are, in blocks of about a third of a metre.
class SurfaceVolume
{
public:
    static constexpr double kSide_m = 0.32;
    struct Block
    {
        Eigen::Vector3f low, high; ///< of the samples in it
        float area_m2 = 0.f;       ///< of all stations together
    };
    void add(const Eigen::Vector3f& world, float area_m2);
    /// In no particular order.
    const std::unordered_map<std::uint64_t, Block>& blocks() const { return m_blocks; }

private:
    std::unordered_map<std::uint64_t, Block> m_blocks;
};

/// What a first, coarse look at a station tells.
struct StationSurvey
{
    std::unique_ptr<SeenSpace> seen;
    Overhead overhead; ///< undersides above the station; empty outdoors
};

/// Looks at a station coarsely and adds what it finds to the volume and the balance.
/// @return nullopt with one line in *reason when it shows no surface: the volume and the balance stay as they
/// were
std::optional<StationSurvey> surveyStation(const MergeStation& station, const FrontEnd& front_end,
                                           bool indoor, SurfaceVolume* volume, ExposureBalance* balance,
                                           std::string* reason);

} // namespace nexomap
