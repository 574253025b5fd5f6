// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/model/LinkChoice.h"

#include "nexomap/src/graph/GraphEdge.h"
#include "nexomap/src/links/SightLine.h"
#include "nexomap/src/model/PoseSupport.h"
#include "nexomap/src/model/Relocation.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kSameWay = 20.0 * kDegree;
constexpr double kPoseAngleSigma = 0.5 * kDegree;
constexpr double kPoseSigma_m = 0.05;

bool sightLine(const Model& model, const Workplace& workplace, int a, int b)
{
    const Node &x = model.nodes[a], &y = model.nodes[b];
    return seeEachOther(x.source->look(workplace.front_end), x.pose, y.source->look(workplace.front_end),
                        y.pose, x.up);
}

double distance(const Model& model, int a, int b)
{
    return (model.nodes[a].pose.t - model.nodes[b].pose.t).norm();
}

std::vector<Eigen::Vector3d> stationsOf(const Model& model)
{
    std::vector<Eigen::Vector3d> stations;
    for (const Node& node : model.nodes)
        stations.push_back(node.pose.t);
    return stations;
}

Edge edgeByPose(const Model& model, const PoseSupport& support, int a, int b)
{
    Edge edge;
    edge.node_0 = a;
    edge.node_1 = b;
    edge.origin = Origin::ByPose;
    edge.link = true;
    PairPose pose;
    const Pose step = model.nodes[a].pose.inverse() * model.nodes[b].pose;
    pose.R_0_from_1 = step.R;
    pose.t_0_from_1 = step.t;
    pose.metric = true;
    pose.information.setZero();
    pose.information.diagonal().head<3>().setConstant(1.0 / (kPoseAngleSigma * kPoseAngleSigma));
    pose.information.diagonal().tail<3>().setConstant(1.0 / (kPoseSigma_m * kPoseSigma_m));
    pose.reliability = edge.reliability = 0.95 * support.between(a, b);
    edge.pose = std::make_shared<const PairPose>(std::move(pose));
    edge.values = valuesByPoses(model, a, b);
    return edge;
}

std::vector<int> components(const Model& model, bool links_only)
{
    std::vector<GraphEdge> graph;
    for (const Edge& edge : model.edges)
        if (edge.link || !links_only) graph.push_back({edge.node_0, edge.node_1, edge.pose.get(), false});
    return connectedComponents(int(model.nodes.size()), graph, std::vector<char>(graph.size(), 1));
}

/// Makes the links of each pose component one piece.
void bridgeParts(Model& model, const Workplace& workplace)
{
    const std::vector<int> whole = components(model, false);
    std::vector<NodePair> pairs;
    for (int a = 0; a < int(model.nodes.size()); ++a)
        for (int b = a + 1; b < int(model.nodes.size()); ++b)
            if (whole[a] == whole[b]) pairs.emplace_back(a, b);
    std::stable_sort(pairs.begin(), pairs.end(), [&](const NodePair& p, const NodePair& q) {
        return distance(model, p.first, p.second) < distance(model, q.first, q.second);
    });
    const PoseSupport support(model);
    std::vector<int> part = components(model, true);
    for (const auto& [a, b] : pairs) {
        if (part[a] == part[b] || !sightLine(model, workplace, a, b)) continue;
        if (Edge* edge = model.edgeBetween(a, b))
            edge->link = true;
        else
            model.edges.push_back(edgeByPose(model, support, a, b));
        part = components(model, true);
    }
    std::vector<Edge*> hidden;
    for (Edge& edge : model.edges)
        if (!edge.link) hidden.push_back(&edge);
    std::stable_sort(hidden.begin(), hidden.end(),
                     [](const Edge* p, const Edge* q) { return p->reliability > q->reliability; });
    for (Edge* edge : hidden) {
        if (part[edge->node_0] == part[edge->node_1]) continue;
        edge->link = true;
        part = components(model, true);
    }
}

} // namespace

bool isNeedless(const std::vector<Eigen::Vector3d>& stations, const LinkedPairs& linked, int a, int b)
{
    const auto at = [&](int k) { return stations[std::size_t(k)]; };
    const double length = (at(a) - at(b)).norm();
    if (length <= kNeighbours_m) return false;
    const Eigen::Vector3d way = at(b) - at(a);
    for (const int k : linked.of(a)) {
        if (!linked.has(b, k)) continue;
        const Eigen::Vector3d half = at(k) - at(a);
        if (std::max(half.norm(), (at(b) - at(k)).norm()) >= length) continue;
        if (std::atan2(way.cross(half).norm(), way.dot(half)) < kSameWay) return true;
    }
    return false;
}

void chooseLinks(Model& model, const Workplace& workplace)
{
    std::vector<Edge*> by_length;
    for (Edge& edge : model.edges)
        if (!edge.link) by_length.push_back(&edge);
    std::stable_sort(by_length.begin(), by_length.end(), [&](const Edge* p, const Edge* q) {
        return distance(model, p->node_0, p->node_1) < distance(model, q->node_0, q->node_1);
    });
    LinkedPairs linked(model);
    const std::vector<Eigen::Vector3d> stations = stationsOf(model);
    for (Edge* edge : by_length) {
        const bool ranged = model.nodes[edge->node_0].source->look(workplace.front_end).metric() &&
                            model.nodes[edge->node_1].source->look(workplace.front_end).metric();
        edge->link = !ranged || (sightLine(model, workplace, edge->node_0, edge->node_1) &&
                                 !isNeedless(stations, linked, edge->node_0, edge->node_1));
        if (edge->link) linked.add(edge->node_0, edge->node_1);
    }
    bridgeParts(model, workplace);
    for (Edge& edge : model.edges)
        if (edge.link) edge.values = valuesByPoses(model, edge.node_0, edge.node_1);
}

void addLinksByPose(Model& model, const Workplace& workplace, double farthest_m)
{
    const std::vector<int> group = components(model, true);
    LinkedPairs linked(model);
    const std::vector<Eigen::Vector3d> stations = stationsOf(model);
    std::vector<NodePair> pairs;
    for (int a = 0; a < int(model.nodes.size()); ++a)
        for (int b = a + 1; b < int(model.nodes.size()); ++b) {
            if (group[a] == group[b] && !linked.has(a, b) && distance(model, a, b) <= farthest_m)
                pairs.emplace_back(a, b);
        }
    std::stable_sort(pairs.begin(), pairs.end(), [&](const NodePair& p, const NodePair& q) {
        return distance(model, p.first, p.second) < distance(model, q.first, q.second);
    });
    const PoseSupport support(model);
    for (const auto& [a, b] : pairs) {
        if (isNeedless(stations, linked, a, b) || !sightLine(model, workplace, a, b)) continue;
        // A pair that was matched but not shown keeps its measurement: only pairs without one are made here.
        if (model.edgeBetween(a, b)) continue;
        model.edges.push_back(edgeByPose(model, support, a, b));
        linked.add(a, b);
    }
}

} // namespace nexomap
