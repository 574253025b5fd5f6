// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/graph/GraphEdge.h"

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace nexomap {
namespace {
constexpr double kInflation2 = 1.5 * 1.5;
constexpr double kFloorAngle = 0.02 * kDegree;
constexpr double kFloorMetres = 0.002;
constexpr double kFloorDirection = 0.003;

int rootOf(std::vector<int>& parents, int node)
{
    while (parents[node] != node)
        node = parents[node] = parents[parents[node]];
    return node;
}
} // namespace

Pose measuredPose(const GraphEdge& edge)
{
    return {edge.pose->R_0_from_1, edge.pose->t_0_from_1};
}

Matrix6d graphInformation(const PairPose& pose)
{
    // Directions without information stay without: the sum of covariances is formed in the eigenbasis.
    const Eigen::SelfAdjointEigenSolver<Matrix6d> eigen(0.5 *
                                                        (pose.information + pose.information.transpose()));
    Vector6d floor2;
    floor2.head<3>().setConstant(kFloorAngle * kFloorAngle);
    floor2.tail<3>().setConstant(std::pow(pose.metric ? kFloorMetres : kFloorDirection, 2));
    Matrix6d information = Matrix6d::Zero();
    for (int k = 0; k < 6; ++k) {
        const double value = eigen.eigenvalues()[k];
        if (!(value > 1e-9)) continue;
        const Vector6d v = eigen.eigenvectors().col(k);
        const double variance = kInflation2 / value + v.cwiseAbs2().dot(floor2);
        information += v * v.transpose() / variance;
    }
    if (pose.rotation_only) {
        const Eigen::Matrix3d rotation = information.topLeftCorner<3, 3>();
        information.setZero();
        information.topLeftCorner<3, 3>() = rotation;
    }
    return information;
}

PairPose scaledPose(const PairPose& from, double length, double deviation)
{
    PairPose pose;
    pose.R_0_from_1 = from.R_0_from_1;
    pose.t_0_from_1 = from.t_0_from_1 * length;
    pose.metric = true;
    pose.reliability = from.reliability;
    Matrix6d S = Matrix6d::Identity();
    S.bottomRightCorner<3, 3>() /= length;
    const Eigen::Vector3d along = from.R_0_from_1.transpose() * from.t_0_from_1;
    pose.information = S * from.information * S;
    pose.information.bottomRightCorner<3, 3>() += along * along.transpose() / std::pow(deviation * length, 2);
    return pose;
}

Vector6d edgeError(const GraphEdge& edge, const Pose& pose_i, const Pose& pose_j)
{
    const PairPose& measured = *edge.pose;
    Vector6d error;
    error.head<3>() = logRotation(measured.R_0_from_1.transpose() * pose_i.R.transpose() * pose_j.R);
    Eigen::Vector3d t = pose_i.R.transpose() * (pose_j.t - pose_i.t);
    if (!measured.metric) {
        const double length = t.norm();
        if (length < 1e-9)
            t = measured.t_0_from_1;
        else
            t /= length;
    }
    error.tail<3>() = measured.R_0_from_1.transpose() * (t - measured.t_0_from_1);
    if (measured.rotation_only) error.tail<3>().setZero();
    return error;
}

double edgeChi2(const GraphEdge& edge, const Matrix6d& information, const Pose& pose_i, const Pose& pose_j)
{
    const Vector6d error = edgeError(edge, pose_i, pose_j);
    return error.dot(information * error);
}

std::vector<int> connectedComponents(int nodes, const std::vector<GraphEdge>& edges,
                                     const std::vector<char>& kept)
{
    std::vector<int> parents(nodes);
    std::iota(parents.begin(), parents.end(), 0);
    for (std::size_t e = 0; e < edges.size(); ++e) {
        if (!kept[e]) continue;
        const int a = rootOf(parents, edges[e].i), b = rootOf(parents, edges[e].j);
        parents[std::max(a, b)] = std::min(a, b);
    }
    std::vector<int> component(nodes, -1);
    int count = 0;
    for (int n = 0; n < nodes; ++n) {
        const int root = rootOf(parents, n);
        component[n] = root == n ? count++ : component[root];
    }
    return component;
}

std::vector<int> spanningForest(int nodes, const std::vector<GraphEdge>& edges, const std::vector<char>& kept)
{
    std::vector<int> order;
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (kept[e]) order.push_back(int(e));
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        const GraphEdge &x = edges[a], &y = edges[b];
        if (x.connector != y.connector) return y.connector;
        if (x.pose->rotation_only != y.pose->rotation_only) return y.pose->rotation_only;
        return x.pose->reliability > y.pose->reliability;
    });
    std::vector<int> parents(nodes);
    std::iota(parents.begin(), parents.end(), 0);
    std::vector<int> forest;
    for (const int e : order) {
        const int a = rootOf(parents, edges[e].i), b = rootOf(parents, edges[e].j);
        if (a == b) continue;
        parents[std::max(a, b)] = std::min(a, b);
        forest.push_back(e);
    }
    return forest;
}

std::vector<Pose> chainPoses(int nodes, const std::vector<GraphEdge>& edges, const std::vector<int>& forest,
                             const std::vector<double>& scales)
{
    std::vector<std::vector<int>> at(nodes);
    for (const int e : forest) {
        at[edges[e].i].push_back(e);
        at[edges[e].j].push_back(e);
    }
    std::vector<Pose> poses(nodes);
    std::vector<char> placed(nodes, 0);
    std::vector<int> open;
    for (int start = 0; start < nodes; ++start) {
        if (placed[start]) continue;
        placed[start] = 1;
        open.assign(1, start);
        while (!open.empty()) {
            const int n = open.back();
            open.pop_back();
            for (const int e : at[n]) {
                Pose step = measuredPose(edges[e]);
                if (!edges[e].pose->metric) step.t *= scales[e];
                const bool forward = edges[e].i == n;
                const int other = forward ? edges[e].j : edges[e].i;
                if (placed[other]) continue;
                poses[other] = poses[n] * (forward ? step : step.inverse());
                placed[other] = 1;
                open.push_back(other);
            }
        }
    }
    return poses;
}

} // namespace nexomap
