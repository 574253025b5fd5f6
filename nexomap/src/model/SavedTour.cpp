// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/model/SavedTour.h"

#include "nexomap/src/model/MatchFiles.h"
#include "nexomap/src/model/Names.h"
#include "nexomap/src/model/Relocation.h"

#include <cmath>

namespace nexomap {
namespace {

// Tour files keep seven digits behind the point.
constexpr double kRounding = 1e-5;
// What a link's numbers are worth as a measurement: lean across the link is not among them.
constexpr double kAngleSigma = 0.3 * kDegree;
constexpr double kSigma_m = 0.02;

std::shared_ptr<const PairPose> poseByNumbers(const SavedMatch& saved)
{
    auto pose = std::make_shared<PairPose>();
    const Pose relative = relativePose(saved.values);
    pose->R_0_from_1 = relative.R;
    pose->t_0_from_1 = relative.t;
    pose->metric = true;
    pose->reliability = saved.reliability;
    pose->information.setZero();
    pose->information.diagonal().head<3>().setConstant(1.0 / (kAngleSigma * kAngleSigma));
    pose->information.diagonal().tail<3>().setConstant(1.0 / (kSigma_m * kSigma_m));
    return pose;
}

/// Takes the exact station from a match file when the tour file's, which is rounded and level, is the same.
void restoreStation(Node& node, const StoredStation& station)
{
    const Pose& exact = station.world_from_pano;
    const bool same = (exact.t - node.pose.t).norm() < kRounding &&
                      std::abs(wrapAngle(headingOf(exact.R) - headingOf(node.pose.R))) < kRounding;
    if (!same) return;
    if ((node.vertex - exact.t.head<2>()).norm() < kRounding) node.vertex = exact.t.head<2>();
    node.pose = exact;
    node.up = station.up;
    node.height_m = station.height_m;
}

/// Hidden measurements join the graph; those by hand wait for, or mend, the link that the tour file holds.
void takeCompanions(Model& model, const MatchRecord& record)
{
    for (const StoredPose& companion : record.companions) {
        const int a = model.findNode(companion.name_0), b = model.findNode(companion.name_1);
        if (a < 0 || b < 0 || a == b) continue;
        auto stored = std::make_shared<const StoredPose>(companion);
        auto pose = std::make_shared<const PairPose>(companion.pose);
        Edge* edge = model.edgeBetween(a, b);
        if (companion.mode == int(Origin::ByHand)) {
            model.companions[pairOf(a, b)] = stored;
            if (edge && edge->origin == Origin::ByHand && edge->node_0 == a) edge->pose = pose;
        } else if (companion.mode == int(Origin::Matched) && !edge) {
            Edge hidden;
            hidden.node_0 = a;
            hidden.node_1 = b;
            hidden.pose = pose;
            hidden.reliability = companion.pose.reliability;
            model.edges.push_back(hidden);
        }
    }
}

} // namespace

void loadNode(Model& model, const Workplace& workplace, const SavedNode& saved)
{
    std::string error;
    const std::optional<std::string> name = workplace.front_end.identify(saved.path, &error);
    if (!name) throw Failure(NEXOMAP_BAD_FILE, saved.path + ": " + error);
    if (!isName(*name)) throw Failure(NEXOMAP_BAD_FILE, saved.path + ": its identity cannot name a file");
    if (model.findNode(*name) >= 0) throw Failure(NEXOMAP_DUPLICATE, *name + " was added before");
    Node node;
    node.name = *name;
    node.path = saved.path;
    node.source = std::make_shared<PanoramaSource>(saved.path, *name);
    node.pose = {rotationAboutZ(saved.direction), saved.position};
    node.vertex = saved.vertex;
    node.plan_x = saved.plan_x;
    node.plan_y = saved.plan_y;
    node.plan_name = saved.plan_name;
    model.nodes.push_back(std::move(node));
}

void loadMatch(Model& model, const Workplace& workplace, const SavedMatch& saved)
{
    const int a = model.nodeNamed(saved.name_0), b = model.nodeNamed(saved.name_1);
    if (a == b) throw Failure(NEXOMAP_BAD_ARGUMENT, "a panorama cannot be matched with itself");
    if (const Edge* earlier = model.edgeBetween(a, b)) {
        if (earlier->link)
            throw Failure(NEXOMAP_DUPLICATE, saved.name_0 + " and " + saved.name_1 + " are matched");
        model.edges.erase(model.edges.begin() + (earlier - model.edges.data()));
    }
    Edge edge;
    edge.node_0 = a;
    edge.node_1 = b;
    edge.origin = Origin(saved.mode);
    edge.link = true;
    edge.values = saved.values;
    edge.reliability = saved.reliability;
    const std::string key = matchKey(saved.name_0, saved.name_1);
    if (edge.origin == Origin::Matched && workplace.folder.has(poseFileName(key))) {
        MatchRecord record = decodeMatchRecord(readFile(workplace.folder.pathOf(poseFileName(key))));
        StoredPose& link = record.link;
        if (matchKey(link.name_0, link.name_1) != key)
            throw Failure(NEXOMAP_BAD_FILE, key + ": of another pair");
        if (workplace.folder.has(inlierFileName(key)))
            link.pose.inliers = decodeInliers(readFile(workplace.folder.pathOf(inlierFileName(key))),
                                              link.name_0, link.name_1);
        edge.node_0 = model.nodeNamed(link.name_0);
        edge.node_1 = model.nodeNamed(link.name_1);
        if (edge.node_0 != a)
            throw Failure(NEXOMAP_BAD_FILE, key + ": its panoramas stand the other way round");
        edge.reliability = link.pose.reliability;
        edge.pose = std::make_shared<const PairPose>(std::move(link.pose));
        model.edges.push_back(edge);
        restoreStation(model.nodes[a], record.station_0);
        restoreStation(model.nodes[b], record.station_1);
        takeCompanions(model, record);
    } else {
        const auto companion = model.companions.find(pairOf(a, b));
        const bool known = companion != model.companions.end() && edge.origin == Origin::ByHand &&
                           companion->second->name_0 == saved.name_0;
        edge.pose = known ? std::make_shared<const PairPose>(companion->second->pose) : poseByNumbers(saved);
        model.edges.push_back(edge);
    }
}

} // namespace nexomap
