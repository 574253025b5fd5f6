// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// From matches of pairs to points that many panoramas see.
#include "nexomap/src/graph/FeatureTracks.h"

#include <Eigen/Dense>

#include <array>
#include <cstring>
#include <map>

namespace nexomap {

std::vector<FeatureTrack> featureTracks(const std::vector<GraphEdge>& edges, const std::vector<char>& kept)
{
    using Key = std::array<std::uint32_t, 4>;
    std::map<Key, int> numbers;
    std::vector<TrackView> views;
    std::vector<int> parent;
    std::vector<char> scaleless;
    const auto root = [&](int k) {
        while (parent[k] != k)
            k = parent[k] = parent[parent[k]];
        return k;
    };
    const auto number = [&](int node, const Eigen::Vector3f& bearing, float range) {
        Key key{std::uint32_t(node)};
        std::memcpy(key.data() + 1, bearing.data(), 3 * sizeof(float));
        const auto [place, fresh] = numbers.emplace(key, int(views.size()));
        if (fresh) {
            views.push_back({node, bearing.cast<double>().normalized(), range});
            parent.push_back(place->second);
            scaleless.push_back(0);
        }
        return place->second;
    };
    for (std::size_t e = 0; e < edges.size(); ++e) {
        if (!kept[e] || edges[e].pose->rotation_only) continue;
        for (const PairInlier& inlier : edges[e].pose->inliers) {
            const int a = root(number(edges[e].i, inlier.bearing_0, inlier.range_0_m));
            const int b = root(number(edges[e].j, inlier.bearing_1, inlier.range_1_m));
            const bool open = !edges[e].pose->metric || scaleless[a] || scaleless[b];
            parent[std::max(a, b)] = std::min(a, b);
            scaleless[std::min(a, b)] = open;
        }
    }
    std::vector<FeatureTrack> all(views.size());
    for (std::size_t k = 0; k < views.size(); ++k) {
        FeatureTrack& track = all[std::size_t(root(int(k)))];
        track.views.push_back(views[k]);
        track.scaleless = scaleless[root(int(k))];
    }
    std::vector<FeatureTrack> tracks;
    for (FeatureTrack& track : all) {
        std::map<int, int> seen;
        bool once = track.views.size() >= 2;
        for (const TrackView& view : track.views)
            once = once && ++seen[view.node] == 1;
        if (once) tracks.push_back(std::move(track));
    }
    return tracks;
}

std::optional<Eigen::Vector3d> triangulate(const FeatureTrack& track, const std::vector<Pose>& poses)
{
    Eigen::Matrix3d A = Eigen::Matrix3d::Zero();
    Eigen::Vector3d b = Eigen::Vector3d::Zero();
    for (const TrackView& view : track.views) {
        const Eigen::Vector3d u = poses[view.node].R * view.bearing;
        const Eigen::Matrix3d P = Eigen::Matrix3d::Identity() - u * u.transpose();
        A += P;
        b += P * poses[view.node].t;
    }
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> eigen(A);
    if (eigen.eigenvalues()[0] < 5e-4 * double(track.views.size())) return std::nullopt;
    const Eigen::Vector3d point = eigen.eigenvectors() * eigen.eigenvalues().cwiseInverse().asDiagonal() *
                                  eigen.eigenvectors().transpose() * b;
    for (const TrackView& view : track.views) {
        const Eigen::Vector3d ray = point - poses[view.node].t;
        const double cosine = ray.normalized().dot(poses[view.node].R * view.bearing);
        if (!(cosine > std::cos(2.0 * kDegree))) return std::nullopt;
    }
    return point;
}

} // namespace nexomap
