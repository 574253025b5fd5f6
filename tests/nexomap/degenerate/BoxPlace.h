// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/nexomap/pair/MadeUpRoom.h"

/// Rooms, corridors and stairs put together out of painted boxes, with mirrors and panes among them: the
/// places in which linking goes wrong, cheap to take pictures of.
struct BoxPlace
{
    enum class Kind
    {
        Painted,
        Mirror, ///< the picture and the range are those of what it reflects
        Glass   ///< seen through; one return in eight comes from the pane itself
    };
    /// How the paint repeats; geometry is up to who places the boxes.
    enum class Fold
    {
        None,
        MirrorX, ///< what is painted at x is painted at -x, mirrored
        HalfTurn ///< what is painted at (x, y) is painted at (-x, -y)
    };
    struct Solid
    {
        Eigen::Vector3d low, high;
        std::uint32_t key = 0;                            ///< of its paint
        Eigen::Vector3d origin = Eigen::Vector3d::Zero(); ///< where its paint's coordinates start
        Kind kind = Kind::Painted;
        Fold fold = Fold::None;
    };
    std::vector<Solid> solids;
    double blankness = 0.0; ///< of all paint; 1: white
    double noise_m = 0.006; ///< of the ranges, standard deviation along the ray
    Fold fold = Fold::None; ///< for solids added from here on
    Eigen::Vector3d origin = Eigen::Vector3d::Zero();

    Solid& box(const Eigen::Vector3d& low, const Eigen::Vector3d& high, std::uint32_t key,
               Kind kind = Kind::Painted);
    /// Floor, ceiling and four walls around the air between two corners; keys key to key + 5.
    void room(const Eigen::Vector3d& low, const Eigen::Vector3d& high, std::uint32_t key);

    MadeUpRoom::Shot shoot(const nexomap::RigidPose& world_from_pano, int width = 1024) const;
};

/// As if taken with so many stops more light.
void expose(MadeUpRoom::Shot& shot, double stops);
/// Lamps instead of the sun: light falls off to one side, colours turn warm, the sensor is noisy.
void turnToNight(MadeUpRoom::Shot& shot);
void takeColourAway(MadeUpRoom::Shot& shot);
