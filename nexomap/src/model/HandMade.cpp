// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/model/HandMade.h"

#include "nexomap/src/links/HandMadeBearings.h"
#include "nexomap/src/links/OneSidedScale.h"
#include "nexomap/src/links/SightLine.h"
#include "nexomap/src/model/Adding.h"

#include <algorithm>

namespace nexomap {
namespace {

NodePair namedPair(const Model& model, const std::string& name_0, const std::string& name_1)
{
    const int a = model.nodeNamed(name_0), b = model.nodeNamed(name_1);
    if (a == b) throw Failure(NEXOMAP_BAD_ARGUMENT, "a panorama cannot be matched with itself");
    return {a, b};
}

std::map<NodePair, Announcement>::iterator announced(Model& model, const std::string& name_0,
                                                     const std::string& name_1)
{
    const NodePair pair = namedPair(model, name_0, name_1);
    const auto place = model.announced.find(pairOf(pair.first, pair.second));
    if (place == model.announced.end())
        throw Failure(NEXOMAP_UNKNOWN_NAME, "no match of " + name_0 + " and " + name_1 + " was announced");
    return place;
}

} // namespace

void announceMatch(Model& model, const std::string& name_0, const std::string& name_1)
{
    const NodePair pair = namedPair(model, name_0, name_1);
    const Edge* edge = model.edgeBetween(pair.first, pair.second);
    if (edge && edge->link) throw Failure(NEXOMAP_DUPLICATE, name_0 + " and " + name_1 + " are matched");
    model.announced[pairOf(pair.first, pair.second)] = {pair.first, pair.second, {}};
}

void addPick(Model& model, const std::string& name_0, const std::string& name_1, const PickedPair& pick)
{
    Announcement& announcement = announced(model, name_0, name_1)->second;
    const bool same_order = model.nodes[announcement.node_0].name == name_0;
    announcement.picks.push_back(
        same_order ? pick : PickedPair{pick.azimuth_1, pick.polar_1, pick.azimuth_0, pick.polar_0});
}

void analyseMatch(Model& model, const Workplace& workplace, const std::string& name_0,
                  const std::string& name_1)
{
    const auto place = announced(model, name_0, name_1);
    const Announcement announcement = place->second;
    const Node &node_0 = model.nodes[announcement.node_0], &node_1 = model.nodes[announcement.node_1];
    const Panorama& panorama_0 = node_0.source->get(workplace.front_end);
    const Panorama& panorama_1 = node_1.source->get(workplace.front_end);
    const bool ranged = panorama_0.metric() && panorama_1.metric();
    std::optional<PairPose> pose = ranged ? poseFromPicks(panorama_0, panorama_1, announcement.picks)
                                          : poseFromBearingPicks(announcement.picks);
    if (!pose) throw Failure(NEXOMAP_CANNOT_SOLVE, "the pairs do not determine where the panoramas stand");
    if (!ranged) giveScaleByRanges(panorama_0, panorama_1, &*pose);

    Edge edge;
    edge.node_0 = announcement.node_0;
    edge.node_1 = announcement.node_1;
    edge.origin = Origin::ByHand;
    edge.link = true;
    edge.reliability = pose->reliability;
    edge.values = linkValues({}, {pose->R_0_from_1, pose->t_0_from_1}, heightOf(&panorama_0),
                             heightOf(&panorama_1), Eigen::Vector3d::UnitZ());
    const std::vector<PickResidual> picks = pickResiduals(panorama_0, panorama_1, announcement.picks, *pose);
    const bool all_fit =
        std::none_of(picks.begin(), picks.end(), [](const PickResidual& pick) { return pick.left_out; });
    edge.picks = std::make_shared<const std::vector<PickResidual>>(picks);
    edge.pose = std::make_shared<const PairPose>(std::move(*pose));
    model.nodes[edge.node_0].height_m = panorama_0.camera_height_m;
    model.nodes[edge.node_1].height_m = panorama_1.camera_height_m;
    model.announced.erase(place);
    // A measurement that was hidden until now gives way to what the person saw.
    const NodePair pair = pairOf(edge.node_0, edge.node_1);
    model.edges.erase(std::remove_if(model.edges.begin(), model.edges.end(),
                                     [&](const Edge& e) { return pairOf(e.node_0, e.node_1) == pair; }),
                      model.edges.end());
    model.edges.push_back(std::move(edge));
    // The newest picture is what the program shows next: the person sees which pair was wrong.
    if (!all_fit) drawMatchPicture(model, workplace, model.edges.back());
}

std::string deleteMatch(Model& model, const std::string& name_0, const std::string& name_1)
{
    const NodePair named = namedPair(model, name_0, name_1);
    const NodePair pair = pairOf(named.first, named.second);
    const Edge* edge = model.edgeBetween(pair.first, pair.second);
    const bool was_announced = model.announced.erase(pair) > 0;
    if (!edge || !edge->link) {
        if (was_announced) return {};
        throw Failure(NEXOMAP_UNKNOWN_NAME, name_0 + " and " + name_1 + " are not matched");
    }
    const std::string key = matchKey(name_0, name_1);
    model.edges.erase(model.edges.begin() + (edge - model.edges.data()));
    model.companions.erase(pair);
    return key;
}

} // namespace nexomap
