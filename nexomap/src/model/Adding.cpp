// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/model/Adding.h"

#include "nexomap/src/files/MatchPicture.h"
#include "nexomap/src/graph/GraphEdge.h"
#include "nexomap/src/model/Growth.h"
#include "nexomap/src/model/LengthTransfer.h"
#include "nexomap/src/model/LinkChoice.h"
#include "nexomap/src/model/MatchFiles.h"
#include "nexomap/src/model/Names.h"
#include "nexomap/src/model/PairMatching.h"
#include "nexomap/src/model/ParallelFor.h"
#include "nexomap/src/model/Relocation.h"

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <iterator>

namespace nexomap {
namespace {

constexpr double kWorthAPicture = 0.2;
constexpr std::size_t kMostAligned = 300; // pairs; each takes a third of a second

/// Edges of the new node to earlier ones, in their order.
std::vector<Edge> matchWithEarlier(const Model& model, const Workplace& workplace, const Panorama& panorama,
                                   const std::vector<int>& partners)
{
    std::vector<const Panorama*> earlier;
    for (const int n : partners)
        earlier.push_back(&model.nodes[std::size_t(n)].source->get(workplace.front_end));
    std::vector<std::optional<PairPose>> poses(partners.size());
    parallelFor(int(partners.size()), [&](int k) {
        poses[std::size_t(k)] = workplace.front_end.match(*earlier[std::size_t(k)], panorama);
    });
    std::vector<Edge> edges;
    for (std::size_t k = 0; k < partners.size(); ++k)
        if (poses[k])
            edges.push_back(measuredEdge(partners[k], int(model.nodes.size()), std::move(*poses[k])));
    return edges;
}

/// Pairs that no chain of edges joins and that both carry range, those taken one after the other first.
std::vector<NodePair> pairsApart(const Model& model, const Workplace& workplace)
{
    std::vector<GraphEdge> graph;
    for (const Edge& edge : model.edges)
        graph.push_back({edge.node_0, edge.node_1, edge.pose.get(), false});
    const std::vector<int> part =
        connectedComponents(int(model.nodes.size()), graph, std::vector<char>(graph.size(), 1));
    std::vector<NodePair> pairs;
    for (int a = 0; a < int(model.nodes.size()); ++a)
        for (int b = a + 1; b < int(model.nodes.size()); ++b)
            if (part[a] != part[b] && model.nodes[a].source->look(workplace.front_end).metric() &&
                model.nodes[b].source->look(workplace.front_end).metric())
                pairs.emplace_back(a, b);
    std::stable_sort(pairs.begin(), pairs.end(), [](const NodePair& p, const NodePair& q) {
        return p.second - p.first < q.second - q.first;
    });
    if (pairs.size() > kMostAligned) pairs.resize(kMostAligned);
    return pairs;
}

/// Whether pictures find partners in this tour: more than half of the panoramas have one.
bool picturesSpeak(const Model& model)
{
    std::vector<char> matched(model.nodes.size(), 0);
    for (const Edge& edge : model.edges)
        matched[edge.node_0] = matched[edge.node_1] = 1;
    return 2 * std::count(matched.begin(), matched.end(), char(1)) > std::ptrdiff_t(matched.size());
}

/// Edges by the shape of the rooms where the pictures left the tour in parts. Only where pictures hardly
/// match at all: where they do, a room that looks like none of the others is another room, however like its
/// walls.
void joinByShape(Model& model, const Workplace& workplace)
{
    if (!workplace.front_end.align || picturesSpeak(model)) return;
    const std::vector<NodePair> pairs = pairsApart(model, workplace);
    if (pairs.empty()) return;
    for (Edge& edge : comparePairs(model, workplace, pairs, workplace.front_end.align))
        model.edges.push_back(std::move(edge));
    solveAfterAdding(model);
}

/// Solves the poses; in a large tour then compares what they say shares a view, and solves again.
void solveAndCompleteComparisons(Model& model, const Workplace& workplace)
{
    constexpr int kRounds = 2; // the second for what the first has joined
    const auto compare = [&](const std::vector<NodePair>& pairs) {
        return comparePairs(model, workplace, pairs, workplace.front_end.match);
    };
    for (Edge& edge : compare(pairsMissedByOrder(model, workplace)))
        model.edges.push_back(std::move(edge));
    std::vector<Edge> measured = model.edges;
    solveAfterAdding(model);
    for (int round = 0; round < kRounds; ++round) {
        std::vector<Edge> found = compare(pairsByPoses(model, workplace));
        if (found.empty()) return;
        std::move(found.begin(), found.end(), std::back_inserter(measured));
        // What was not believed before may be confirmed now.
        model.edges = measured;
        solveAfterAdding(model);
    }
}

const char* originText(Origin origin)
{
    switch (origin) {
    case Origin::ByHand:
        return "by hand";
    case Origin::ByPose:
        return "by position";
    case Origin::Matched:
        break;
    }
    return "matched";
}

} // namespace

void addNode(Model& model, const Workplace& workplace, const std::string& path)
{
    std::string error;
    // The name is looked at first: features take a second, a double takes none.
    const std::optional<std::string> name = workplace.front_end.identify(path, &error);
    if (!name) throw Failure(NEXOMAP_BAD_FILE, path + ": " + error);
    if (!isName(*name)) throw Failure(NEXOMAP_BAD_FILE, path + ": its identity cannot name a file");
    if (model.findNode(*name) >= 0) throw Failure(NEXOMAP_DUPLICATE, *name + " was added before");
    std::shared_ptr<const Panorama> panorama = workplace.front_end.load(path, &error);
    if (!panorama) throw Failure(NEXOMAP_BAD_FILE, path + ": " + error);

    Node node;
    const std::vector<int> partners = partnersOf(model, workplace, *panorama, &node.outline);
    std::vector<Edge> edges = matchWithEarlier(model, workplace, *panorama, partners);
    node.name = *name;
    node.path = path;
    node.height_m = panorama->camera_height_m;
    node.source = std::make_shared<PanoramaSource>(std::move(panorama));
    model.nodes.push_back(std::move(node));
    model.adding = true;
    const Edge* best = nullptr;
    for (const Edge& edge : edges) {
        if (edge.reliability < kWorthAPicture) continue;
        if (!best || edge.pose->inliers.size() > best->pose->inliers.size()) best = &edge;
    }
    if (best) {
        drawMatchPicture(model, workplace, *best);
        model.pictures.push_back(matchKey(model, *best));
    }
    model.edges.insert(model.edges.end(), edges.begin(), edges.end());
    restPanoramas(model);
}

void finishAdding(Model& model, const Workplace& workplace)
{
    if (!model.adding) return;
    model.adding = false;
    solveAndCompleteComparisons(model, workplace);
    joinByShape(model, workplace);
    if (transferLengths(model, workplace)) solveAfterAdding(model);
    chooseLinks(model, workplace);
    relocate(model);
    // A room without texture matches badly, but whoever stands beside another sees it all the same.
    addLinksByPose(model, workplace, kNeighbours_m);
    writeMatchFiles(model, workplace.folder);
    for (const std::string& key : model.pictures) {
        const bool kept = std::any_of(model.edges.begin(), model.edges.end(), [&](const Edge& edge) {
            return edge.link && matchKey(model, edge) == key;
        });
        if (!kept) workplace.folder.remove(key + ".png");
    }
    model.pictures.clear();
    restPanoramas(model);
}

void drawMatchPicture(const Model& model, const Workplace& workplace, const Edge& edge)
{
    const Node &node_0 = model.nodes[edge.node_0], &node_1 = model.nodes[edge.node_1];
    MatchCaption caption;
    caption.name_0 = node_0.name;
    caption.name_1 = node_1.name;
    caption.spacing_m = edge.values.spacing;
    caption.scale_known = edge.pose->metric;
    caption.reliability = edge.reliability;
    caption.origin = originText(edge.origin);
    for (std::size_t k = 0; edge.picks && k < edge.picks->size(); ++k) {
        const PickResidual& pick = (*edge.picks)[k];
        if (pick.left_out)
            caption.left_out.push_back({directionFromAngles(pick.pick.azimuth_0, pick.pick.polar_0),
                                        directionFromAngles(pick.pick.azimuth_1, pick.pick.polar_1),
                                        int(k) + 1, pick.degrees, pick.metres});
    }
    const cv::Mat3b picture = drawMatch(node_0.source->look(workplace.front_end),
                                        node_1.source->look(workplace.front_end), *edge.pose, caption);
    Bytes png;
    cv::imencode(".png", picture, png, {cv::IMWRITE_PNG_COMPRESSION, 2});
    const std::string name = matchKey(model, edge) + ".png";
    workplace.folder.write(name, png);
    workplace.folder.makeNewest(name);
}

} // namespace nexomap
