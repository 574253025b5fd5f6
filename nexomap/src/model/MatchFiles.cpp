// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/model/MatchFiles.h"

namespace nexomap {
namespace {

StoredPose stored(const Model& model, const Edge& edge)
{
    StoredPose stored;
    stored.name_0 = model.nodes[edge.node_0].name;
    stored.name_1 = model.nodes[edge.node_1].name;
    stored.mode = int(edge.origin);
    stored.pose = *edge.pose;
    stored.pose.inliers.clear();
    stored.pose.reliability = edge.reliability;
    return stored;
}

bool touches(const Edge& edge, const Edge& other)
{
    return edge.node_0 == other.node_0 || edge.node_0 == other.node_1 || edge.node_1 == other.node_0 ||
           edge.node_1 == other.node_1;
}

bool holds(const WorkingFolder& folder, const std::string& name, const Bytes& bytes)
{
    if (!folder.has(name)) return false;
    try {
        return readFile(folder.pathOf(name)) == bytes;
    } catch (const Failure&) {
        return false;
    }
}

} // namespace

std::string poseFileName(const std::string& key)
{
    return key + "_0.dat";
}

std::string inlierFileName(const std::string& key)
{
    return key + "_1.dat";
}

void writeMatchFiles(const Model& model, const WorkingFolder& folder)
{
    std::vector<std::pair<std::string, Bytes>> files;
    const auto add = [&](const std::string& name, Bytes bytes) {
        if (!holds(folder, name, bytes)) files.emplace_back(name, std::move(bytes));
    };
    const auto station = [](const Node& node) { return StoredStation{node.pose, node.up, node.height_m}; };
    for (const Edge& edge : model.edges) {
        if (!edge.link || edge.origin != Origin::Matched) continue;
        MatchRecord record;
        record.link = stored(model, edge);
        record.inliers = std::uint32_t(edge.pose->inliers.size());
        record.station_0 = station(model.nodes[edge.node_0]);
        record.station_1 = station(model.nodes[edge.node_1]);
        for (const Edge& other : model.edges) {
            const bool carried =
                other.origin == Origin::ByHand || (!other.link && other.origin == Origin::Matched);
            if (carried && touches(edge, other)) record.companions.push_back(stored(model, other));
        }
        const std::string key = matchKey(model, edge);
        add(poseFileName(key), encodeMatchRecord(record));
        add(inlierFileName(key), encodeInliers(record.link.name_0, record.link.name_1, edge.pose->inliers));
    }
    folder.writeAll(files);
}

void removeMatchFiles(const std::string& key, const WorkingFolder& folder)
{
    folder.remove(poseFileName(key));
    folder.remove(inlierFileName(key));
    folder.remove(key + ".png");
}

} // namespace nexomap
