// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Poses of a tour in which only some panoramas carry range: bearings and measured relative poses together.
#include "nexomap/src/graph/JointRefinement.h"

#include "nexomap/src/graph/AdjustmentResiduals.h"
#include "nexomap/src/graph/LevelledLengths.h"

#include <ceres/ceres.h>
#include <Eigen/Dense>

#include <algorithm>

namespace nexomap {
namespace {

constexpr double kPoseCauchy = 5.0; // whitened, of six residuals together: wrong edges were cut before

/// A measured relative pose against two panoramas, whitened.
struct RelativePoseResidual
{
    Eigen::Quaterniond rotation; ///< 0 from 1
    Eigen::Vector3d translation;
    Matrix6d white; ///< whitens [rotation, translation]: its square is the information

    template <class T>
    bool operator()(const T* q_i, const T* t_i, const T* q_j, const T* t_j, T* residual) const
    {
        using Vector3 = Eigen::Matrix<T, 3, 1>;
        const Eigen::Map<const Eigen::Quaternion<T>> i(q_i), j(q_j);
        const Eigen::Map<const Vector3> from(t_i), to(t_j);
        const Eigen::Quaternion<T> measured = rotation.cast<T>();
        Eigen::Quaternion<T> turn = measured.conjugate() * (i.conjugate() * j);
        if (turn.w() < T(0)) turn.coeffs() = -turn.coeffs();
        const Vector3 shift = i.conjugate() * (to - from) - translation.cast<T>();
        Eigen::Matrix<T, 6, 1> error;
        error << T(2) * turn.vec(), measured.conjugate() * shift;
        Eigen::Map<Eigen::Matrix<T, 6, 1>>(residual, 6) = white.cast<T>() * error;
        return true;
    }
};

/// W with W' W = information; directions without information stay without.
Matrix6d whitening(const Matrix6d& information)
{
    const Eigen::SelfAdjointEigenSolver<Matrix6d> eigen(information);
    return eigen.eigenvalues().cwiseMax(0.0).cwiseSqrt().asDiagonal() * eigen.eigenvectors().transpose();
}

/// The tracks that tell most, for a bounded time: those that the most panoramas see, until each panorama has
/// enough.
std::vector<FeatureTrack> chosenTracks(std::vector<FeatureTrack> tracks, std::size_t nodes)
{
    constexpr int kEnough = 80;
    tracks.erase(std::remove_if(tracks.begin(), tracks.end(),
                                [](const FeatureTrack& track) { return !track.scaleless; }),
                 tracks.end());
    std::stable_sort(tracks.begin(), tracks.end(), [](const FeatureTrack& a, const FeatureTrack& b) {
        return a.views.size() > b.views.size();
    });
    std::vector<int> seen(nodes, 0);
    std::vector<FeatureTrack> chosen;
    for (FeatureTrack& track : tracks) {
        const bool wanted = std::any_of(track.views.begin(), track.views.end(),
                                        [&](const TrackView& view) { return seen[view.node] < kEnough; });
        if (!wanted) continue;
        for (const TrackView& view : track.views)
            ++seen[view.node];
        chosen.push_back(std::move(track));
    }
    return chosen;
}

/// The problem's unknowns, and what it says of them.
class Refinement
{
public:
    explicit Refinement(const std::vector<Pose>& poses)
        : m_used(poses.size(), 0)
    {
        for (const Pose& pose : poses)
            m_stations.push_back({Eigen::Quaterniond(pose.R), pose.t});
    }

    void addPose(const GraphEdge& edge, const Matrix6d& information)
    {
        auto* residual = new RelativePoseResidual{Eigen::Quaterniond(edge.pose->R_0_from_1),
                                                  edge.pose->t_0_from_1, whitening(information)};
        m_problem.AddResidualBlock(
            new ceres::AutoDiffCostFunction<RelativePoseResidual, 6, 4, 3, 4, 3>(residual),
            new ceres::CauchyLoss(kPoseCauchy), rotation(edge.i), centre(edge.i), rotation(edge.j),
            centre(edge.j));
    }
    void addLength(const GraphEdge& edge)
    {
        const double length = (m_stations[edge.j].centre - m_stations[edge.i].centre).norm();
        if (length < 1e-6) return;
        m_problem.AddResidualBlock(new ceres::AutoDiffCostFunction<LengthResidual, 1, 3, 3>(
                                       new LengthResidual{length, kVagueLength}),
                                   nullptr, centre(edge.i), centre(edge.j));
    }
    void addTrack(const FeatureTrack& track, Eigen::Vector3d& point)
    {
        for (const TrackView& view : track.views)
            addView(view, rotation(view.node), centre(view.node), point.data(), m_problem);
    }

    /// Tilt priors and the gauge, then the solution. False: nothing changed.
    bool solve(const std::vector<int>& component, double tilt_sigma_rad, std::vector<Eigen::Vector3d>& points,
               std::vector<Pose>& poses)
    {
        std::vector<char> held(component.size(), 0);
        for (std::size_t n = 0; n < m_used.size(); ++n) {
            if (!m_used[n]) continue;
            m_problem.SetManifold(rotation(int(n)), new ceres::EigenQuaternionManifold);
            m_problem.AddResidualBlock(
                new ceres::AutoDiffCostFunction<TiltResidual, 2, 4>(new TiltResidual{tilt_sigma_rad}),
                nullptr, rotation(int(n)));
            if (held[component[n]]) continue;
            held[component[n]] = 1;
            m_problem.SetParameterBlockConstant(centre(int(n)));
        }
        if (!solveAdjustment(m_problem, points, 30)) return false;
        for (std::size_t n = 0; n < m_used.size(); ++n)
            if (m_used[n])
                poses[n] = {m_stations[n].rotation.normalized().toRotationMatrix(), m_stations[n].centre};
        return true;
    }

private:
    double* rotation(int node)
    {
        m_used[node] = 1;
        return m_stations[node].rotation.coeffs().data();
    }
    double* centre(int node) { return m_stations[node].centre.data(); }

    std::vector<StationUnknowns> m_stations;
    std::vector<char> m_used;
    ceres::Problem m_problem;
};

} // namespace

std::vector<char> mixedComponents(const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                                  const std::vector<int>& component)
{
    std::vector<char> with(component.size(), 0), without(component.size(), 0), mixed(component.size(), 0);
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (kept[e]) (edges[e].pose->metric ? with : without)[component[edges[e].i]] = 1;
    for (std::size_t c = 0; c < mixed.size(); ++c)
        mixed[c] = with[c] && without[c];
    return mixed;
}

void refineJointly(const std::vector<GraphEdge>& edges, const std::vector<Matrix6d>& information,
                   const std::vector<char>& kept, const std::vector<int>& component, double tilt_sigma_rad,
                   std::vector<Pose>& poses)
{
    const std::vector<char> mixed = mixedComponents(edges, kept, component);
    std::vector<char> chosen = kept;
    for (std::size_t e = 0; e < edges.size(); ++e)
        chosen[e] = kept[e] && mixed[component[edges[e].i]];

    Refinement refinement(poses);
    bool any = false;
    for (std::size_t e = 0; e < edges.size(); ++e) {
        if (!chosen[e]) continue;
        any = true;
        if (edges[e].pose->metric || edges[e].pose->rotation_only)
            refinement.addPose(edges[e], information[e]);
        else
            refinement.addLength(edges[e]);
    }
    if (!any) return;
    std::vector<FeatureTrack> tracks;
    std::vector<Eigen::Vector3d> points;
    for (FeatureTrack& track : chosenTracks(featureTracks(edges, chosen), poses.size())) {
        if (const auto point = triangulate(track, poses)) {
            tracks.push_back(std::move(track));
            points.push_back(*point);
        }
    }
    for (std::size_t k = 0; k < tracks.size(); ++k)
        refinement.addTrack(tracks[k], points[k]);
    refinement.solve(component, tilt_sigma_rad, points, poses);
}

} // namespace nexomap
