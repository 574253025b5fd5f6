// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/RigidPose.h"
#include "nexomap/src/PairPose.h"
#include "nexomap/src/Panorama.h"

namespace nexomap {

/// A pose without scale as one of its two panoramas sees it, with its inliers' features looked up.
struct PairEnd
{
    const Features* here = nullptr; ///< not owned
    const Features* far = nullptr;  ///< not owned
    RigidPose here_from_far;        ///< translation of length 1
    struct Seen
    {
        PairInlier inlier;               ///< bearing 0 here, bearing 1 in the far panorama
        std::vector<int> here, far;      ///< features at the two bearings, one for each orientation
        double depth = 0.0, sigma = 0.0; ///< from here in units of the baseline (0: none), its relative error
    };
    std::vector<Seen> seen;
    std::vector<char> far_taken; ///< per feature of the far panorama: an inlier has it
    int alike_distance2 = 0;     ///< descriptor distance that nine in ten inliers stay below
};

/// @param at_0  whether `here` is the pose's panorama 0
PairEnd pairEnd(const Features& here, const Features& far, const PairPose& pose, bool at_0);

/// One feature's opinion on how long one baseline is beside another that starts at the same panorama.
struct TransferVote
{
    double log_ratio = 0.0; ///< log(length of `other` / length of `known`)
    double sigma = 0.0;     ///< of log_ratio
    double plane = 0.0;     ///< angle of the feature's epipolar plane about the other baseline, radians
    bool fresh = false;     ///< found by the search, not an inlier of both before
    /// As an inlier of `other`, bearing 0 here.
    PairInlier inlier{Eigen::Vector3f::Zero(), Eigen::Vector3f::Zero()};
};

/// Features whose depth one pair tells, looked for in a third panorama along the arcs on which they lie for
/// any length of the other baseline: guided matching (Hartley and Zisserman 2004, chapter 11), in which each
/// match found tells the ratio of the two lengths.
/// @param turn  radians by which the arcs are turned about the other baseline; anything but 0 shows what
///              chance finds
std::vector<TransferVote> transferVotes(const PairEnd& known, const PairEnd& other, double turn);

} // namespace nexomap
