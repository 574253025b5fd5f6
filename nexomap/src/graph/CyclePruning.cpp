// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/graph/CyclePruning.h"

#include "nexomap/src/graph/ScaleRecovery.h"

#include <Eigen/Dense>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace nexomap {
namespace {

constexpr double kChi2Rotation = 16.266; // 3 degrees of freedom, p = 0.001
constexpr double kChi2Pose = 22.458;     // 6 degrees of freedom
constexpr std::size_t kMostCycles = 200000;
constexpr std::size_t kMostMeasured = 5000; // triangles whose sides' lengths are looked up
constexpr double kCertain = 0.7; // of edges below, a quarter to a half were wrong in the sets measured
constexpr double kDirectionSlack = 2.0 * kDegree;
constexpr double kFlat = 12.0 * kDegree; // triangles flatter than this say nothing of lengths
constexpr double kRatioSlack = 0.4;      // of the logarithm of a ratio of lengths

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

/// A step of unknown length at the length that its cycle gives it; the length itself stays open.
Step stepOfLength(const GraphEdge& edge, bool forward, double length_m)
{
    PairPose pose;
    pose.R_0_from_1 = edge.pose->R_0_from_1;
    pose.t_0_from_1 = edge.pose->t_0_from_1 * length_m;
    pose.metric = true;
    Matrix6d S = Matrix6d::Identity();
    S.bottomRightCorner<3, 3>() /= length_m;
    const Eigen::Vector3d along = edge.pose->R_0_from_1.transpose() * edge.pose->t_0_from_1;
    pose.information = S * edge.pose->information * S;
    pose.information.bottomRightCorner<3, 3>() += along * along.transpose() / (length_m * length_m);
    return stepAlong({edge.i, edge.j, &pose, false}, forward);
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
        bool bad = !sum.metric && length == 3 && !sidesClose(nodes, edges);
        bool measured = sum.metric;
        if (const int open = onlyScaleless(edges, length); open >= 0) {
            measured = true;
            sum = closedBy(nodes, edges, length, open);
        }
        if (measured) {
            Vector6d error;
            error << rotation, sum.pose.R.transpose() * sum.pose.t;
            bad = error.dot(sum.covariance.ldlt().solve(error)) > kChi2Pose;
        } else {
            const Eigen::Matrix3d covariance = sum.covariance.topLeftCorner<3, 3>();
            bad = bad || rotation.dot(covariance.ldlt().solve(rotation)) > kChi2Rotation;
        }
        // A square without scale that turns rightly says nothing: rooms built in parallel pass.
        if (bad || measured || length == 3) all.push_back({edges, length, bad});
    }

    /// The one edge of a cycle that lacks nothing but its length, where the others have theirs; -1: none.
    int onlyScaleless(const std::array<int, 4>& edges, int length) const
    {
        int open = -1;
        for (int k = 0; k < length; ++k) {
            const PairPose& pose = *m_edges[edges[k]].pose;
            if (pose.rotation_only || (!pose.metric && open >= 0)) return -1;
            if (!pose.metric) open = k;
        }
        return open;
    }

    /// Once around, the open edge as long as closes the cycle best.
    Step closedBy(const std::array<int, 4>& nodes, const std::array<int, 4>& edges, int length,
                  int open) const
    {
        constexpr double kShortest_m = 0.1;
        const auto around = [&](double length_m) {
            Step sum;
            for (int k = 0; k < length; ++k) {
                const bool forward = m_edges[edges[k]].i == nodes[k];
                const Step step = k == open ? stepOfLength(m_edges[edges[k]], forward, length_m)
                                  : forward ? m_forward[edges[k]]
                                            : m_backward[edges[k]];
                const Matrix6d A = adjoint(step.pose.inverse());
                sum.covariance = A * sum.covariance * A.transpose() + step.covariance;
                sum.pose = sum.pose * step.pose;
            }
            return sum;
        };
        // The place that one comes back to moves along a line with the open length.
        const Eigen::Vector3d one = around(1.0).pose.t, two = around(2.0).pose.t;
        const double back = 1.0 - (two - one).dot(one) / (two - one).squaredNorm();
        return around(std::max(kShortest_m, back));
    }

    /// Whether three sides of unknown length can make a triangle.
    bool sidesClose(const std::array<int, 4>& nodes, const std::array<int, 4>& edges)
    {
        std::array<Step, 3> step;
        for (int k = 0; k < 3; ++k) {
            if (m_edges[edges[k]].pose->rotation_only) return true;
            step[k] = m_edges[edges[k]].i == nodes[k] ? m_forward[edges[k]] : m_backward[edges[k]];
        }
        // In the first node's frame: from it to the second, on to the third, and back.
        const Eigen::Vector3d u = step[0].pose.t.normalized(),
                              v = (step[0].pose.R * step[1].pose.t).normalized(),
                              w = (step[0].pose.R * (step[1].pose.R * step[2].pose.t)).normalized();
        if (!u.allFinite() || !v.allFinite() || !w.allFinite()) return true;
        const auto angle = [](const Eigen::Vector3d& a, const Eigen::Vector3d& b) {
            return std::atan2(a.cross(b).norm(), a.dot(b));
        };
        // The outer angles of a plane triangle make a full turn; less is missing when the sides do not close.
        const double at_1 = angle(u, v), at_2 = angle(v, w), at_0 = angle(w, u);
        if (2.0 * kPi - at_0 - at_1 - at_2 > kDirectionSlack + 3.0 * directionSigma(edges)) return false;
        if (std::min({kPi - at_0, kPi - at_1, kPi - at_2}) < kFlat || ++m_measured > kMostMeasured)
            return true;
        // Law of sines: a side is as long as the sine of the angle across.
        const std::array<double, 3> side{std::log(std::sin(at_2)), std::log(std::sin(at_0)),
                                         std::log(std::sin(at_1))};
        for (int k = 0; k < 3; ++k) {
            const int next = (k + 1) % 3;
            double spread = 0.0;
            const auto ratio = logLengthRatio(m_edges[edges[k]], m_edges[edges[next]], nodes[next], &spread);
            if (ratio && std::abs(*ratio - side[k] + side[next]) > kRatioSlack + 2.0 * spread) return false;
        }
        return true;
    }
    /// Of the three directions together, radians.
    double directionSigma(const std::array<int, 4>& edges) const
    {
        double variance = 0.0;
        for (int k = 0; k < 3; ++k) {
            const PairPose& pose = *m_edges[edges[k]].pose;
            const Matrix6d covariance =
                (graphInformation(pose) + 1e-2 * Matrix6d::Identity()).inverse(); // the length stays open
            const Eigen::Vector3d along = (pose.R_0_from_1.transpose() * pose.t_0_from_1).normalized();
            const Eigen::Matrix3d across = Eigen::Matrix3d::Identity() - along * along.transpose();
            variance += (across * covariance.bottomRightCorner<3, 3>() * across).trace() /
                        std::max(1e-6, pose.t_0_from_1.squaredNorm());
        }
        return std::sqrt(variance);
    }

    std::size_t m_measured = 0;
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
        double worst_gain = 0.0;
        for (std::size_t e = 0; e < edges.size(); ++e) {
            if (2 * bad[e] <= all[e]) continue;
            const double odds = edges[e].pose->reliability / std::max(1e-4, 1.0 - edges[e].pose->reliability);
            const double gain = bad[e] / std::clamp(std::log(odds), 0.2, 7.0);
            if (gain > worst_gain) worst = int(e), worst_gain = gain;
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

namespace {

/// Whether a pose has its length from the range map of one panorama alone.
bool oneSided(const PairPose& pose)
{
    if (!pose.metric || pose.inliers.empty()) return false;
    const auto without = [&](float PairInlier::*range) {
        return std::all_of(pose.inliers.begin(), pose.inliers.end(),
                           [&](const PairInlier& inlier) { return !(inlier.*range > 0.f); });
    };
    return without(&PairInlier::range_0_m) != without(&PairInlier::range_1_m);
}

} // namespace

void dropUnconfirmed(int nodes, const std::vector<GraphEdge>& edges, std::vector<char>& kept)
{
    std::vector<char> confirmed(edges.size(), 0);
    for (const Cycle& cycle : Cycles(nodes, edges, kept).all) {
        if (cycle.bad) continue;
        // Two doubtful edges from one station to two that know each other agree when both lead to a room's
        // twin: one doubtful edge a cycle.
        int doubtful = -1, count = 0;
        for (int k = 0; k < cycle.length; ++k)
            if (edges[cycle.edges[k]].pose->reliability < kCertain) doubtful = cycle.edges[k], ++count;
        if (count == 1) confirmed[doubtful] = 1;
    }
    for (std::size_t e = 0; e < edges.size(); ++e) {
        const PairPose& pose = *edges[e].pose;
        const bool bound = !pose.metric || oneSided(pose);
        if (!edges[e].connector && bound && !pose.rotation_only && !confirmed[e] &&
            pose.reliability < kCertain)
            kept[e] = 0;
    }
}

} // namespace nexomap
