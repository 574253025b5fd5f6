// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/graph/BearingAdjustment.h"

#include "nexomap/src/graph/AdjustmentResiduals.h"

#include <ceres/ceres.h>
#include <Eigen/Dense>

#include <map>

namespace nexomap {

void adjustBearings(const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                    const std::vector<int>& component, double tilt_sigma_rad,
                    const std::vector<double>& length_deviations, std::vector<Pose>& poses)
{
    std::vector<char> scaleless(component.size(), 0);
    std::vector<char> chosen = kept;
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (kept[e] && !edges[e].pose->metric) scaleless[component[edges[e].i]] = 1;
    for (std::size_t e = 0; e < edges.size(); ++e)
        chosen[e] = kept[e] && scaleless[component[edges[e].i]];

    const int nodes = int(poses.size());
    std::vector<StationUnknowns> stations;
    for (const Pose& pose : poses)
        stations.push_back({Eigen::Quaterniond(pose.R), pose.t});
    std::vector<FeatureTrack> tracks;
    std::vector<Eigen::Vector3d> points;
    std::vector<char> used(nodes, 0);
    for (FeatureTrack& track : featureTracks(edges, chosen)) {
        const auto point = triangulate(track, poses);
        if (!point) continue;
        for (const TrackView& view : track.views)
            used[view.node] = 1;
        tracks.push_back(std::move(track));
        points.push_back(*point);
    }
    if (tracks.empty()) return;

    ceres::Problem problem;
    for (std::size_t k = 0; k < tracks.size(); ++k)
        for (const TrackView& view : tracks[k].views)
            addView(view, stations[view.node].rotation.coeffs().data(), stations[view.node].centre.data(),
                    points[k].data(), problem);
    std::map<int, int> members; // of each component the first
    for (int n = 0; n < nodes; ++n) {
        if (!used[n]) continue;
        members.emplace(component[n], n);
        problem.SetManifold(stations[n].rotation.coeffs().data(), new ceres::EigenQuaternionManifold);
        // The prior counts like a few features only, so that it settles the vertical without bending the
        // poses.
        problem.AddResidualBlock(
            new ceres::AutoDiffCostFunction<TiltResidual, 2, 4>(new TiltResidual{tilt_sigma_rad}), nullptr,
            stations[n].rotation.coeffs().data());
    }
    for (std::size_t e = 0; e < edges.size(); ++e) {
        const int i = edges[e].i, j = edges[e].j;
        const double length = (stations[i].centre - stations[j].centre).norm();
        if (!chosen[e] || !used[i] || !used[j] || length < 1e-6) continue;
        problem.AddResidualBlock(new ceres::AutoDiffCostFunction<LengthResidual, 1, 3, 3>(
                                     new LengthResidual{length, length_deviations[e]}),
                                 nullptr, stations[i].centre.data(), stations[j].centre.data());
    }
    for (const auto& [group, first] : members)
        problem.SetParameterBlockConstant(stations[first].centre.data());
    if (!solveAdjustment(problem, points, 50)) return;
    for (int n = 0; n < nodes; ++n) {
        if (!used[n]) continue;
        poses[n].R = stations[n].rotation.normalized().toRotationMatrix();
        poses[n].t = stations[n].centre;
    }
}

} // namespace nexomap
