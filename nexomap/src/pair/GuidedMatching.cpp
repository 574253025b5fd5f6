// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Matching again, with a pose in hand.
#include "nexomap/src/pair/GuidedMatching.h"

#include "nexomap/src/pair/BearingCells.h"
#include "nexomap/src/pair/PlaceMatching.h"
#include "nexomap/src/pair/Sphere.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kGuidedRatio = 0.9;

/// The best and second-best partner of each feature, on both sides.
class BestPartners
{
public:
    BestPartners(const Features& f0, const Features& f1, int max_distance2)
        : m_f0(f0)
        , m_f1(f1)
        , m_max(max_distance2)
        , m_0(f0.size())
        , m_1(f1.size())
    {}

    void offer(int i0, int i1)
    {
        const int distance2 = descriptorDistance2(m_f0, i0, m_f1, i1);
        m_0[std::size_t(i0)].add(i1, distance2, m_f1.bearings);
        m_1[std::size_t(i1)].add(i0, distance2, m_f0.bearings);
    }

    std::vector<Correspondence> matches() const
    {
        std::vector<DescriptorMatch> found;
        for (std::size_t i = 0; i < m_0.size(); ++i) {
            const Best& best = m_0[i];
            if (best.partner < 0 || best.distance2 > m_max) continue;
            const Best& back = m_1[std::size_t(best.partner)];
            if (back.partner != int(i) || !best.distinct() || !back.distinct()) continue;
            found.push_back({int(i), best.partner, best.distance2, best.second2});
        }
        return plausibleMatches(m_f0, m_f1, found);
    }

private:
    struct Best
    {
        int partner = -1, distance2 = INT_MAX, second2 = INT_MAX;

        void add(int candidate, int candidate2, const std::vector<Eigen::Vector3f>& bearings)
        {
            const auto same = [&](int a, int b) {
                return samePlace(bearings[std::size_t(a)], bearings[std::size_t(b)]);
            };
            if (candidate2 < distance2) {
                if (partner >= 0 && !same(partner, candidate)) second2 = distance2;
                distance2 = candidate2;
                partner = candidate;
            } else if (candidate2 < second2 && !same(partner, candidate)) {
                second2 = candidate2;
            }
        }
        bool distinct() const
        {
            return second2 == INT_MAX || distance2 < kGuidedRatio * kGuidedRatio * double(second2);
        }
    };

    const Features &m_f0, &m_f1;
    int m_max;
    std::vector<Best> m_0, m_1;
};

/// @param cells  of the bearings of f0
std::vector<Correspondence> guidedIn(const BearingCells& cells, const Features& f0, const Features& f1,
                                     const RigidPose& pose, int max_distance2)
{
    constexpr double kReach = 0.6 * kDegree;
    BestPartners partners(f0, f1, max_distance2);
    for (std::size_t i = 0; i < f1.size(); ++i) {
        if (!(f1.ranges_m[i] > 0.f)) continue;
        const Eigen::Vector3d point = pose * (f1.bearings[i].cast<double>() * double(f1.ranges_m[i]));
        const double range = point.norm();
        if (range < 0.2) continue;
        const Eigen::Vector3d direction = point / range;
        const double tolerance = 0.05 + 0.015 * std::max(range, double(f1.ranges_m[i]));
        cells.near(direction, kReach, [&](int candidate) {
            const Eigen::Vector3d bearing = f0.bearings[std::size_t(candidate)].cast<double>();
            const double range_0 = f0.ranges_m[std::size_t(candidate)];
            const bool near = range_0 > 0.0 ? (bearing * range_0 - point).norm() < tolerance
                                            : (bearing - direction).norm() < kReach;
            if (near && turnedAlike(f0, candidate, f1, int(i))) partners.offer(candidate, int(i));
        });
    }
    return partners.matches();
}

} // namespace

std::vector<Correspondence> guidedByRange(const Features& f0, const Features& f1, const RigidPose& pose,
                                          int max_distance2)
{
    return guidedIn(BearingCells(f0.bearings), f0, f1, pose, max_distance2);
}

double matchesByChance(const Features& f0, const Features& f1, const RigidPose& pose, int alike)
{
    const BearingCells cells(f0.bearings);
    double sum = 0.0;
    for (const double angle : {0.4, 2.0, 3.6, 5.2}) {
        RigidPose decoy = pose;
        decoy.t += Eigen::Vector3d(0.8 * std::cos(angle), 0.8 * std::sin(angle), 0.0);
        sum += double(guidedIn(cells, f0, f1, decoy, alike).size());
    }
    return sum / 4.0;
}

} // namespace nexomap
