// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/ScaleRecovery.h"

#include <cmath>
#include <deque>
#include <random>
#include <vector>

/// Stations and points between them; edges are exact but for their length.
struct Scene
{
    std::vector<Eigen::Vector3d> stations;
    std::deque<nexomap::PairPose> poses;
    std::vector<nexomap::GraphEdge> edges;
    std::mt19937 random{3};

    void link(int i, int j, const std::vector<Eigen::Vector3d>& points)
    {
        nexomap::PairPose pose;
        pose.t_0_from_1 = (stations[std::size_t(j)] - stations[std::size_t(i)]).normalized();
        pose.reliability = 0.9;
        for (const Eigen::Vector3d& point : points)
            pose.inliers.push_back({(point - stations[std::size_t(i)]).normalized().cast<float>(),
                                    (point - stations[std::size_t(j)]).normalized().cast<float>()});
        poses.push_back(pose);
        edges.push_back({i, j, &poses.back(), false});
    }
    std::vector<Eigen::Vector3d> box(int count, const Eigen::Vector3d& from, const Eigen::Vector3d& to)
    {
        std::uniform_real_distribution<double> unit(0.0, 1.0);
        std::vector<Eigen::Vector3d> points;
        for (int k = 0; k < count; ++k) {
            const Eigen::Array3d share(unit(random), unit(random), unit(random));
            points.push_back(from + (share * (to - from).array()).matrix());
        }
        return points;
    }
    /// As box(), but only at a few heights, a centimetre to and fro.
    std::vector<Eigen::Vector3d> shelves(int count, const Eigen::Vector2d& from, const Eigen::Vector2d& to)
    {
        constexpr double kHeights[] = {1.75, 2.05, 2.13, 2.6};
        std::vector<Eigen::Vector3d> points = box(count, {from.x(), from.y(), -0.01}, {to.x(), to.y(), 0.01});
        for (Eigen::Vector3d& point : points)
            point.z() += kHeights[random() % 4];
        return points;
    }
    double length(std::size_t e) const
    {
        return (stations[std::size_t(edges[e].j)] - stations[std::size_t(edges[e].i)]).norm();
    }
    /// Found length of edge b over that of edge a, over the true one.
    double error(std::size_t a, std::size_t b) const
    {
        const std::vector<double> scales =
            nexomap::recoverScales(int(stations.size()), edges, std::vector<char>(edges.size(), 1));
        return scales[b] / scales[a] * length(a) / length(b);
    }
};
