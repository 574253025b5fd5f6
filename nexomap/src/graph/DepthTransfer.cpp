// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Carrying depths from one pair of panoramas to the next.
#include "nexomap/src/graph/DepthTransfer.h"

#include "nexomap/src/graph/ScaleRecovery.h"
#include "nexomap/src/pair/DescriptorMatcher.h"
#include "nexomap/src/pair/Sphere.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <numeric>

namespace nexomap {
namespace {

constexpr double kOffArc = 0.15 * kDegree;
constexpr double kBearingSigma = 0.1 * kDegree;
constexpr double kVaguest = 0.15;      // relative error of a depth that may vote
constexpr double kNearBaseline = 0.14; // sine of 8 degrees: all arcs meet where the baseline points
constexpr double kGuidedRatio = 0.92;
constexpr double kSizeRatio = 1.6;
constexpr double kAlikeSlack = 1.3;
constexpr double kUprightSine = 0.57; // 35 degrees above and below the horizon
constexpr double kMaxTurn = 30.0 * kDegree;
constexpr double kMostRatio = 2.3; // links that meet differ in length by less than ten times

/// Finds the features of one panorama at a bearing.
class BearingIndex
{
public:
    explicit BearingIndex(const Features& features)
        : m_features(features)
        , m_order(features.size())
    {
        std::iota(m_order.begin(), m_order.end(), 0);
        std::stable_sort(m_order.begin(), m_order.end(), [&](int a, int b) { return x(a) < x(b); });
    }

    std::vector<int> at(const Eigen::Vector3f& bearing) const
    {
        constexpr float kSame = 2e-6f; // bearings are made unit vectors anew on the way
        std::vector<int> found;
        auto k = std::lower_bound(m_order.begin(), m_order.end(), bearing.x() - kSame,
                                  [&](int i, float value) { return x(i) < value; });
        for (; k != m_order.end() && x(*k) <= bearing.x() + kSame; ++k)
            if ((m_features.bearings[std::size_t(*k)] - bearing).norm() < 2.f * kSame) found.push_back(*k);
        std::sort(found.begin(), found.end());
        return found;
    }

private:
    float x(int i) const { return m_features.bearings[std::size_t(i)].x(); }
    const Features& m_features;
    std::vector<int> m_order;
};

double sineBetween(const Eigen::Vector3d& a, const Eigen::Vector3d& b)
{
    return a.cross(b).norm();
}

/// Angle of a plane with this normal about an axis within it, from the vertical.
double planeAngle(const Eigen::Vector3d& normal, const Eigen::Vector3d& axis)
{
    return std::atan2(normal.dot(Eigen::Vector3d::UnitZ().cross(axis)), normal.z());
}

bool turned(const Features& f0, const std::vector<int>& all_0, const Features& f1, int i1)
{
    if (std::abs(f1.bearings[std::size_t(i1)].z()) > kUprightSine) return false;
    for (const int i0 : all_0) {
        if (std::abs(f0.bearings[std::size_t(i0)].z()) > kUprightSine) return false;
        const double turn = std::remainder(
            double(f0.angles_rad[std::size_t(i0)]) - f1.angles_rad[std::size_t(i1)], 2.0 * kPi);
        if (std::abs(turn) < kMaxTurn) return false;
    }
    return true;
}

/// The search for one feature along its arc.
class ArcSearch
{
public:
    ArcSearch(const PairEnd& known, const PairEnd& other, double turn)
        : m_known(known)
        , m_other(other)
        , m_far_from_here(other.here_from_far.inverse())
        , m_limit(int(kAlikeSlack * std::max(known.alike_distance2, other.alike_distance2)))
    {
        m_epipole = m_far_from_here.t.normalized();
        m_turn = Eigen::AngleAxisd(turn, m_epipole).toRotationMatrix();
    }

    bool find(const PairEnd::Seen& seen, TransferVote* vote) const
    {
        // In the far panorama's frame the point runs from u, for a baseline of no length, to the epipole.
        const Eigen::Vector3d u =
            m_turn * (m_far_from_here.R * seen.inlier.bearing_0.cast<double>().normalized());
        const Eigen::Vector3d normal = u.cross(m_epipole);
        if (normal.norm() < kNearBaseline) return false;
        const Eigen::Vector3d n = normal.normalized();
        const Features& far = *m_other.far;
        int best = INT_MAX, second = INT_MAX, chosen = -1;
        for (int c = 0; c < int(far.size()); ++c) {
            const Eigen::Vector3d bearing = far.bearings[std::size_t(c)].cast<double>();
            if (std::abs(bearing.dot(n)) > kOffArc || m_other.far_taken[std::size_t(c)]) continue;
            TransferVote candidate;
            if (!place(seen, u, n, c, &candidate)) continue;
            const int d2 = nearest(seen, c);
            const bool same =
                chosen >= 0 &&
                (far.bearings[std::size_t(c)] - far.bearings[std::size_t(chosen)]).squaredNorm() < 1e-7f;
            if (d2 < best) {
                if (!same) second = best;
                best = d2;
                chosen = c;
                *vote = candidate;
            } else if (!same) {
                second = std::min(second, d2);
            }
        }
        if (chosen < 0 || best > m_limit) return false;
        if (second < INT_MAX && best > kGuidedRatio * kGuidedRatio * double(second)) return false;
        vote->plane = planeAngle(n, m_epipole);
        vote->fresh = true;
        vote->inlier.bearing_0 = seen.inlier.bearing_0;
        vote->inlier.bearing_1 = far.bearings[std::size_t(chosen)].cast<double>().normalized().cast<float>();
        return true;
    }

private:
    /// Where on its arc a candidate lies, and which ratio that means.
    bool place(const PairEnd::Seen& seen, const Eigen::Vector3d& u, const Eigen::Vector3d& n, int c,
               TransferVote* vote) const
    {
        const Features& far = *m_other.far;
        const Eigen::Vector3d bearing = far.bearings[std::size_t(c)].cast<double>();
        const Eigen::Vector3d q = (bearing - bearing.dot(n) * n).normalized();
        if (u.cross(q).dot(n) <= 0.0 || q.cross(m_epipole).dot(n) <= kNearBaseline) return false;
        const Eigen::Vector2d depths = rayDepths(u, q, Eigen::Matrix3d::Identity(), -m_epipole);
        if (depths[0] <= 0.0) return false;
        const double sigma = kBearingSigma / std::max(1e-6, sineBetween(u, q));
        const double ratio = seen.depth / depths[0];
        vote->log_ratio = std::log(ratio);
        vote->sigma = std::hypot(sigma, seen.sigma);
        if (vote->sigma > kVaguest || std::abs(vote->log_ratio) > kMostRatio) return false;
        const double size = double(m_known.here->scales[std::size_t(seen.here.front())]) * seen.depth,
                     size_there = double(far.scales[std::size_t(c)]) * depths[1] * ratio;
        return size < kSizeRatio * size_there && size_there < kSizeRatio * size &&
               !turned(*m_known.here, seen.here, far, c);
    }
    /// To the feature as either of its two panoramas shows it.
    int nearest(const PairEnd::Seen& seen, int c) const
    {
        int least = INT_MAX;
        for (const int i : seen.here)
            least = std::min(least, descriptorDistance2(*m_known.here, i, *m_other.far, c));
        for (const int i : seen.far)
            least = std::min(least, descriptorDistance2(*m_known.far, i, *m_other.far, c));
        return least;
    }

    const PairEnd &m_known, &m_other;
    RigidPose m_far_from_here;
    int m_limit;
    Eigen::Vector3d m_epipole;
    Eigen::Matrix3d m_turn;
};

} // namespace

PairEnd pairEnd(const Features& here, const Features& far, const PairPose& pose, bool at_0)
{
    PairEnd end;
    end.here = &here;
    end.far = &far;
    end.here_from_far = {pose.R_0_from_1, pose.t_0_from_1};
    if (!at_0) end.here_from_far = end.here_from_far.inverse();
    end.far_taken.assign(far.size(), 0);
    const BearingIndex index_here(here), index_far(far);
    std::vector<int> distances;
    for (PairInlier inlier : pose.inliers) {
        if (!at_0) {
            std::swap(inlier.bearing_0, inlier.bearing_1);
            std::swap(inlier.range_0_m, inlier.range_1_m);
        }
        PairEnd::Seen seen;
        seen.inlier = inlier;
        seen.here = index_here.at(inlier.bearing_0);
        seen.far = index_far.at(inlier.bearing_1);
        if (seen.here.empty() || seen.far.empty()) continue;
        for (const int f : seen.far)
            end.far_taken[std::size_t(f)] = 1;
        const Eigen::Vector3d u = inlier.bearing_0.cast<double>().normalized(),
                              v = inlier.bearing_1.cast<double>().normalized();
        seen.depth = rayDepths(u, v, end.here_from_far.R, end.here_from_far.t)[0];
        seen.sigma = kBearingSigma / std::max(1e-6, sineBetween(u, end.here_from_far.R * v));
        int least = INT_MAX;
        for (const int a : seen.here)
            for (const int b : seen.far)
                least = std::min(least, descriptorDistance2(here, a, far, b));
        distances.push_back(least);
        end.seen.push_back(std::move(seen));
    }
    if (distances.empty()) return end;
    const auto nth = distances.begin() + std::ptrdiff_t(distances.size() * 9 / 10);
    std::nth_element(distances.begin(), nth, distances.end());
    end.alike_distance2 = *nth;
    return end;
}

std::vector<TransferVote> transferVotes(const PairEnd& known, const PairEnd& other, double turn)
{
    const ArcSearch search(known, other, turn);
    const Eigen::Vector3d axis = -other.here_from_far.t.normalized();
    std::vector<TransferVote> votes;
    for (const PairEnd::Seen& seen : known.seen) {
        if (seen.depth <= 0.0 || seen.sigma > kVaguest) continue;
        const auto both = std::find_if(other.seen.begin(), other.seen.end(), [&](const PairEnd::Seen& o) {
            return o.inlier.bearing_0 == seen.inlier.bearing_0;
        });
        TransferVote vote;
        if (both == other.seen.end()) {
            if (search.find(seen, &vote)) votes.push_back(vote);
        } else if (turn == 0.0 && both->depth > 0.0) {
            vote.log_ratio = std::log(seen.depth / both->depth);
            vote.sigma = std::hypot(seen.sigma, both->sigma);
            vote.plane = planeAngle(seen.inlier.bearing_0.cast<double>().cross(axis), axis);
            vote.inlier = both->inlier;
            if (vote.sigma <= kVaguest) votes.push_back(vote);
        }
    }
    return votes;
}

} // namespace nexomap
