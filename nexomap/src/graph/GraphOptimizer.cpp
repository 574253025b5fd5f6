// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/graph/GraphOptimizer.h"

#include <Eigen/Sparse>
#include <Eigen/SparseCholesky>

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kInlierChi2 = 25.0; // 6 degrees of freedom, p about 3e-4
constexpr double kMostChi2 = 1e30;   // what is beyond counts as this: halving infinity has no end

/// Error of an edge and its derivatives by the right perturbations [rotation, world translation] of both
/// ends.
struct Linearised
{
    Vector6d error;
    Matrix6d J_i = Matrix6d::Zero(), J_j = Matrix6d::Zero();
};

Linearised linearise(const GraphEdge& edge, const Pose& pose_i, const Pose& pose_j)
{
    Linearised l;
    l.error = edgeError(edge, pose_i, pose_j);
    const PairPose& measured = *edge.pose;
    const Eigen::Matrix3d R = pose_i.R.transpose() * pose_j.R;
    const Eigen::Matrix3d Jr = inverseRightJacobian(l.error.head<3>());
    l.J_i.topLeftCorner<3, 3>() = -Jr * R.transpose();
    l.J_j.topLeftCorner<3, 3>() = Jr;
    if (measured.rotation_only) return l;
    const Eigen::Vector3d t = pose_i.R.transpose() * (pose_j.t - pose_i.t);
    Eigen::Matrix3d D = measured.R_0_from_1.transpose();
    if (!measured.metric) {
        const double length = std::max(t.norm(), 1e-3);
        const Eigen::Vector3d u = t / length;
        D = D * (Eigen::Matrix3d::Identity() - u * u.transpose()) / length;
    }
    l.J_i.bottomLeftCorner<3, 3>() = D * skew(t);
    l.J_i.bottomRightCorner<3, 3>() = -D * pose_i.R.transpose();
    l.J_j.bottomRightCorner<3, 3>() = D * pose_i.R.transpose();
    return l;
}

class Problem
{
public:
    Problem(const std::vector<GraphEdge>& edges, const std::vector<Matrix6d>& information,
            const std::vector<double>& weights, const std::vector<int>& component,
            const OptimizerOptions& options)
        : m_edges(edges)
        , m_information(information)
        , m_weights(weights)
        , m_options(options)
        , m_first(component.size(), 0)
    {
        for (std::size_t n = 0, seen = 0; n < component.size(); ++n)
            if (component[n] == int(seen)) m_first[n] = 1, ++seen;
    }

    double cost(const std::vector<Pose>& poses) const
    {
        double sum = 0.0;
        for (std::size_t e = 0; e < m_edges.size(); ++e) {
            if (m_weights[e] <= 0.0) continue;
            const Pose &a = poses[m_edges[e].i], &b = poses[m_edges[e].j];
            sum += m_weights[e] * edgeChi2(m_edges[e], m_information[e], a, b);
            if (!m_edges[e].pose->metric) sum += std::pow((b.t.z() - a.t.z()) / m_options.height_sigma_m, 2);
        }
        for (const Pose& pose : poses)
            sum += pose.R.col(2).head<2>().squaredNorm() / std::pow(m_options.tilt_sigma_rad, 2);
        return sum;
    }

    /// One damped step; false when the normal equations cannot be solved.
    bool step(std::vector<Pose>& poses, double damping) const
    {
        const int unknowns = 6 * int(poses.size());
        std::vector<Eigen::Triplet<double>> entries;
        Eigen::VectorXd gradient = Eigen::VectorXd::Zero(unknowns);
        const auto addBlock = [&](int row, int column, const Matrix6d& block) {
            for (int r = 0; r < 6; ++r)
                for (int c = 0; c < 6; ++c)
                    if (6 * row + r >= 6 * column + c)
                        entries.emplace_back(6 * row + r, 6 * column + c, block(r, c));
        };
        for (std::size_t e = 0; e < m_edges.size(); ++e) {
            if (m_weights[e] <= 0.0) continue;
            const int i = m_edges[e].i, j = m_edges[e].j;
            const Linearised l = linearise(m_edges[e], poses[i], poses[j]);
            const Matrix6d W = m_weights[e] * m_information[e];
            addBlock(i, i, l.J_i.transpose() * W * l.J_i);
            addBlock(j, j, l.J_j.transpose() * W * l.J_j);
            if (i > j)
                addBlock(i, j, l.J_i.transpose() * W * l.J_j);
            else
                addBlock(j, i, l.J_j.transpose() * W * l.J_i);
            gradient.segment<6>(6 * i) += l.J_i.transpose() * (W * l.error);
            gradient.segment<6>(6 * j) += l.J_j.transpose() * (W * l.error);
            if (m_edges[e].pose->metric) continue;
            const double w = 1.0 / std::pow(m_options.height_sigma_m, 2);
            const double dz = poses[j].t.z() - poses[i].t.z();
            entries.emplace_back(6 * i + 5, 6 * i + 5, w);
            entries.emplace_back(6 * j + 5, 6 * j + 5, w);
            entries.emplace_back(6 * std::max(i, j) + 5, 6 * std::min(i, j) + 5, -w);
            gradient[6 * i + 5] -= w * dz;
            gradient[6 * j + 5] += w * dz;
        }
        const double tilt_weight = 1.0 / std::pow(m_options.tilt_sigma_rad, 2);
        for (int n = 0; n < int(poses.size()); ++n) {
            const Eigen::Matrix<double, 2, 3> J = (-poses[n].R * skew(Eigen::Vector3d::UnitZ())).topRows<2>();
            Matrix6d block = Matrix6d::Zero();
            block.topLeftCorner<3, 3>() = tilt_weight * J.transpose() * J;
            block.diagonal().array() += 1e-6 + damping;
            // The gauge: heading and position of each component's first node.
            if (m_first[n]) block.diagonal().tail<4>().array() += 1e12;
            addBlock(n, n, block);
            gradient.segment<3>(6 * n) += tilt_weight * J.transpose() * poses[n].R.col(2).head<2>();
        }
        Eigen::SparseMatrix<double> normal(unknowns, unknowns);
        normal.setFromTriplets(entries.begin(), entries.end());
        const Eigen::SimplicialLDLT<Eigen::SparseMatrix<double>> solver(normal);
        if (solver.info() != Eigen::Success) return false;
        const Eigen::VectorXd delta = solver.solve(-gradient);
        if (!delta.allFinite()) return false;
        for (int n = 0; n < int(poses.size()); ++n) {
            poses[n].R = nearestRotation(poses[n].R * expRotation(delta.segment<3>(6 * n)));
            poses[n].t += delta.segment<3>(6 * n + 3);
        }
        return true;
    }

private:
    const std::vector<GraphEdge>& m_edges;
    const std::vector<Matrix6d>& m_information;
    const std::vector<double>& m_weights;
    const OptimizerOptions& m_options;
    std::vector<char> m_first;
};

} // namespace

void optimizePoses(const std::vector<GraphEdge>& edges, const std::vector<Matrix6d>& information,
                   const std::vector<double>& weights, const std::vector<int>& component,
                   const OptimizerOptions& options, std::vector<Pose>& poses)
{
    const Problem problem(edges, information, weights, component, options);
    double cost = problem.cost(poses), damping = 1e-6;
    for (int k = 0; k < options.iterations && damping < 1e12; ++k) {
        std::vector<Pose> next = poses;
        const bool solved = problem.step(next, damping);
        const double next_cost = solved ? problem.cost(next) : cost;
        if (!solved || !(next_cost <= cost)) {
            damping = std::max(damping, 1e-3) * 10.0;
            continue;
        }
        const bool settled = cost - next_cost <= 1e-12 * (1.0 + cost);
        poses.swap(next);
        cost = next_cost;
        damping = std::max(damping * 0.1, 1e-9);
        if (settled) break;
    }
}

std::vector<double> optimizeRobustly(const std::vector<GraphEdge>& edges,
                                     const std::vector<Matrix6d>& information, const std::vector<char>& kept,
                                     const std::vector<int>& component, const OptimizerOptions& options,
                                     std::vector<Pose>& poses)
{
    std::vector<double> weights(edges.size(), 0.0);
    double worst = 0.0;
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (kept[e]) weights[e] = 1.0;
    optimizePoses(edges, information, weights, component, options, poses);
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (kept[e])
            worst = std::max(worst, edgeChi2(edges[e], information[e], poses[edges[e].i], poses[edges[e].j]));
    if (worst <= kInlierChi2) return weights;
    OptimizerOptions few = options;
    few.iterations = 5;
    for (double mu = 2.0 * std::min(worst, kMostChi2) / kInlierChi2;; mu = std::max(1.0, 0.5 * mu)) {
        for (std::size_t e = 0; e < edges.size(); ++e) {
            if (!kept[e]) continue;
            const double chi2 = edgeChi2(edges[e], information[e], poses[edges[e].i], poses[edges[e].j]);
            weights[e] = std::pow(mu * kInlierChi2 / (mu * kInlierChi2 + chi2), 2);
        }
        optimizePoses(edges, information, weights, component, mu > 1.0 ? few : options, poses);
        if (mu <= 1.0) break;
    }
    for (std::size_t e = 0; e < edges.size(); ++e) {
        if (!kept[e]) continue;
        const double chi2 = edgeChi2(edges[e], information[e], poses[edges[e].i], poses[edges[e].j]);
        weights[e] = std::pow(kInlierChi2 / (kInlierChi2 + chi2), 2);
    }
    return weights;
}

double tiltSigma(const std::vector<Pose>& poses)
{
    std::vector<double> leans;
    for (const Pose& pose : poses) {
        leans.push_back(std::abs(pose.R(0, 2)));
        leans.push_back(std::abs(pose.R(1, 2)));
    }
    std::nth_element(leans.begin(), leans.begin() + leans.size() / 2, leans.end());
    return std::clamp(1.48 * leans[leans.size() / 2], 0.05 * kDegree, 3.0 * kDegree);
}

} // namespace nexomap
