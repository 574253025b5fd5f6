// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/graph/CyclePruning.h"

#include <Eigen/Dense>

#include <algorithm>
#include <array>
#include <map>

namespace nexomap {
namespace {

constexpr double kChi2Rotation = 16.266; // 3 degrees of freedom, p = 0.001
constexpr double kChi2Pose = 22.458;     // 6 degrees of freedom
constexpr std::size_t kMostCycles = 200000;

struct Step
{
    Pose pose;
    Matrix6d covariance = Matrix6d::Zero();
    bool metric = true;
};

/// A cut needs more than noise: what a cycle must miss by, whatever the edges claim.
Matrix6d slack()
{
    Matrix6d S = Matrix6d::Zero();
    S.diagonal().head<3>().setConstant(std::pow(0.1 * kDegree, 2));
    S.diagonal().tail<3>().setConstant(0.01 * 0.01);
    return S;
}

Step stepAlong(const GraphEdge& edge, bool forward)
{
    Step step;
    step.pose = measuredPose(edge);
    step.metric = edge.pose->metric && !edge.pose->rotation_only;
    const Matrix6d information = graphInformation(*edge.pose);
    step.covariance = (information + 1e-9 * Matrix6d::Identity()).inverse() + slack();
    if (!forward) {
        const Matrix6d A = adjoint(step.pose);
        step.covariance = A * step.covariance * A.transpose();
        step.pose = step.pose.inverse();
    }
    return step;
}

struct Cycle
{
    std::array<int, 4> edges;
    int length;
    bool bad;
};

class Cycles
{
public:
    Cycles(int nodes, const std::vector<GraphEdge>& edges, const std::vector<char>& kept)
        : m_edges(edges)
        , m_at(nodes)
    {
        for (std::size_t e = 0; e < edges.size(); ++e) {
            if (!kept[e] || edges[e].connector) continue;
            m_at[edges[e].i][edges[e].j] = int(e);
            m_at[edges[e].j][edges[e].i] = int(e);
        }
        for (const GraphEdge& edge : edges) {
            m_forward.push_back(stepAlong(edge, true));
            m_backward.push_back(stepAlong(edge, false));
        }
        triangles();
        squares();
    }
    std::vector<Cycle> all;

private:
    void triangles()
    {
        for (int a = 0; a < int(m_at.size()); ++a)
            for (const auto& [b, ab] : m_at[a])
                for (const auto& [c, bc] : m_at[b])
                    if (a < b && b < c && m_at[a].count(c))
                        add({a, b, c, -1}, {ab, bc, m_at[a].at(c), -1}, 3);
    }
    void squares()
    {
        for (int a = 0; a < int(m_at.size()); ++a)
            for (const auto& [b, ab] : m_at[a])
                for (const auto& [d, ad] : m_at[a])
                    if (a < b && b < d)
                        for (const auto& [c, bc] : m_at[b])
                            if (c > a && c != d && m_at[d].count(c))
                                add({a, b, c, d}, {ab, bc, m_at[d].at(c), ad}, 4);
    }
    void add(const std::array<int, 4>& nodes, const std::array<int, 4>& edges, int length)
    {
        if (all.size() >= kMostCycles) return;
        Step sum;
        for (int k = 0; k < length; ++k) {
            const bool forward = m_edges[edges[k]].i == nodes[k];
            const Step& step = forward ? m_forward[edges[k]] : m_backward[edges[k]];
            const Matrix6d A = adjoint(step.pose.inverse());
            sum.covariance = A * sum.covariance * A.transpose() + step.covariance;
            sum.pose = sum.pose * step.pose;
            sum.metric = sum.metric && step.metric;
        }
        const Eigen::Vector3d rotation = logRotation(sum.pose.R);
        bool bad = false;
        if (sum.metric) {
            Vector6d error;
            error << rotation, sum.pose.R.transpose() * sum.pose.t;
            bad = error.dot(sum.covariance.ldlt().solve(error)) > kChi2Pose;
        } else {
            const Eigen::Matrix3d covariance = sum.covariance.topLeftCorner<3, 3>();
            bad = rotation.dot(covariance.ldlt().solve(rotation)) > kChi2Rotation;
        }
        all.push_back({edges, length, bad});
    }

    const std::vector<GraphEdge>& m_edges;
    std::vector<std::map<int, int>> m_at; ///< node to (neighbour to edge), ordered for determinism
    std::vector<Step> m_forward, m_backward;
};

} // namespace

void pruneCycles(int nodes, const std::vector<GraphEdge>& edges, std::vector<char>& kept)
{
    std::vector<Cycle> cycles = Cycles(nodes, edges, kept).all;
    for (;;) {
        std::vector<int> bad(edges.size(), 0), all(edges.size(), 0);
        for (const Cycle& cycle : cycles)
            for (int k = 0; k < cycle.length; ++k) {
                ++all[cycle.edges[k]];
                bad[cycle.edges[k]] += cycle.bad;
            }
        int worst = -1;
        double worst_share = 0.5;
        for (std::size_t e = 0; e < edges.size(); ++e) {
            if (all[e] == 0) continue;
            const double share = double(bad[e]) / all[e];
            if (share < worst_share || share <= 0.5) continue;
            const bool weaker = worst < 0 || edges[e].pose->reliability < edges[worst].pose->reliability;
            if (share > worst_share || weaker) worst = int(e), worst_share = share;
        }
        if (worst < 0) return;
        kept[worst] = 0;
        cycles.erase(std::remove_if(cycles.begin(), cycles.end(),
                                    [&](const Cycle& cycle) {
                                        return std::find(cycle.edges.begin(),
                                                         cycle.edges.begin() + cycle.length,
                                                         worst) != cycle.edges.begin() + cycle.length;
                                    }),
                     cycles.end());
    }
}

} // namespace nexomap
