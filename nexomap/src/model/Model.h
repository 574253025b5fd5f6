// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/files/MatchFile.h"
#include "nexomap/src/files/WorkingFolder.h"
#include "nexomap/src/links/HandMadePose.h"
#include "nexomap/src/links/LinkValues.h"
#include "nexomap/src/links/PickResiduals.h"
#include "nexomap/src/model/PanoramaSource.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace nexomap {

/// How a relative pose came to be. Stored in files: never renumber.
enum class Origin
{
    Matched = 0,
    ByHand = 1,
    ByPose = 2
};

struct Node
{
    std::string name; ///< identity text, 14 characters
    std::string path;
    std::shared_ptr<PanoramaSource> source;
    std::shared_ptr<const Features> outline;       ///< for the first look; null while it was not needed
    Pose pose;                                     ///< world_from_pano
    Eigen::Vector3d up = Eigen::Vector3d::UnitZ(); ///< the vertical in the world frame
    double height_m = 0.0;                         ///< above the floor; 0: unknown
    Eigen::Vector2d vertex = Eigen::Vector2d::Zero();
    int plan_x = -1, plan_y = -1; ///< pixel; -1: no plan
    std::string plan_name;
};

/// A relative pose between two nodes. Those that are links are the matches that the library reports; the
/// others only hold the poses together.
struct Edge
{
    int node_0 = 0, node_1 = 0;
    Origin origin = Origin::Matched;
    bool link = false;
    std::shared_ptr<const PairPose> pose;
    LinkValues values;
    double reliability = 0.0;
    std::shared_ptr<const std::vector<PickResidual>> picks; ///< by hand, until the tour is closed; else null
};

/// A match made by hand that waits for its analysis; the picks as the two names were announced.
struct Announcement
{
    int node_0 = 0, node_1 = 0;
    std::vector<PickedPair> picks;
};

/// What one panorama was compared with among those before it, by their indices. Empty rows: with none at
/// first sight; with all in full.
struct Comparisons
{
    std::vector<std::uint16_t> likeness;
    std::vector<char> in_full;
};

/// The poses of one group as they were last solved, with what they followed from.
struct SettledGroup
{
    struct Measurement
    {
        int node_0 = 0, node_1 = 0;
        std::shared_ptr<const PairPose> pose;
        bool connector = false, held = false;
    };
    std::vector<int> nodes;
    std::vector<Measurement> measurements;
    std::vector<Pose> poses;         ///< per node, in the group's own frame
    std::vector<Eigen::Vector3d> up; ///< per node
};

/// Unordered pair of nodes, the smaller index first.
using NodePair = std::pair<int, int>;
NodePair pairOf(int a, int b);

/// The whole linking state, as a value: a call works on a copy, and the copy takes the state's place when the
/// call has succeeded. What is large is shared and never changed.
struct Model
{
    std::vector<Node> nodes;
    std::vector<Edge> edges;                    ///< matches in the order in which they are reported
    bool adding = false;                        ///< between the first added node and the end of adding
    std::map<NodePair, Announcement> announced; ///< by hand, not yet analysed
    std::map<NodePair, std::shared_ptr<const StoredPose>> companions; ///< read from match files, to come
    std::vector<std::string> pictures;                                ///< pairs drawn while adding
    std::vector<Comparisons> comparisons;                             ///< per node; may be shorter than nodes
    std::vector<std::shared_ptr<const SettledGroup>> settled;         ///< by the last relocation

    /// @throws Failure(NEXOMAP_UNKNOWN_NAME)
    int nodeNamed(const std::string& name) const;
    int findNode(const std::string& name) const; ///< -1: none
    std::vector<std::string> names() const;      ///< of the nodes
    Edge* edgeBetween(int a, int b);
    const Edge* edgeBetween(int a, int b) const;
    std::vector<const Edge*> links() const;
    /// Connected components of the links: node indices, the largest first, ties by first node.
    std::vector<std::vector<int>> groups() const;
};

/// Smaller name, "_", larger name.
std::string matchKey(const std::string& name_a, const std::string& name_b);
std::string matchKey(const Model& model, const Edge& edge);

/// What calls work with besides the state.
struct Workplace
{
    const WorkingFolder& folder;
    const FrontEnd& front_end;
};

} // namespace nexomap
