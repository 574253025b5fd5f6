// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A place that is described several times is no rival of itself.
#include "nexomap/src/pair/PlaceMatching.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <numeric>

namespace nexomap {
namespace {

int distance2(const std::uint8_t* a, const std::uint8_t* b)
{
    int sum = 0;
    for (int k = 0; k < kDescriptorBytes; ++k) {
        const int difference = int(a[k]) - int(b[k]);
        sum += difference * difference;
    }
    return sum;
}

/// The features of a panorama by height, so that a place's others are found quickly.
class Neighbours
{
public:
    explicit Neighbours(const std::vector<Eigen::Vector3f>& bearings)
        : m_bearings(bearings)
        , m_order(bearings.size())
    {
        std::iota(m_order.begin(), m_order.end(), 0);
        std::sort(m_order.begin(), m_order.end(), [&](int a, int b) { return height(a) < height(b); });
    }

    /// Those of feature i's place, without itself.
    std::vector<int> of(int i) const
    {
        const float low = height(i) - float(kSamePlace), high = height(i) + float(kSamePlace);
        std::vector<int> found;
        for (auto at = std::lower_bound(m_order.begin(), m_order.end(), low,
                                        [&](int a, float limit) { return height(a) < limit; });
             at != m_order.end() && height(*at) <= high; ++at)
            if (*at != i && samePlace(m_bearings[std::size_t(i)], m_bearings[std::size_t(*at)]))
                found.push_back(*at);
        return found;
    }

private:
    float height(int i) const
    {
        const float z = m_bearings[std::size_t(i)].z();
        return std::isfinite(z) ? z : 2.f; // a damaged feature: above all others, so that they stay in order
    }

    const std::vector<Eigen::Vector3f>& m_bearings;
    std::vector<int> m_order;
};

} // namespace

std::vector<DescriptorMatch> matchPlaces(const Features& features_0, const Features& features_1, double ratio)
{
    const Neighbours neighbours(features_1.bearings);
    const auto descriptor_1 = [&](std::size_t i) {
        return features_1.descriptors.data() + i * kDescriptorBytes;
    };
    std::vector<DescriptorMatch> kept;
    for (DescriptorMatch match : matchDescriptors(features_0.descriptors, features_1.descriptors, 1.0)) {
        const auto distinct = [&] { return match.distance2 < ratio * ratio * match.second_distance2; };
        if (!distinct()) {
            const std::uint8_t* row =
                features_0.descriptors.data() + std::size_t(match.index_0) * kDescriptorBytes;
            const std::vector<int> same = neighbours.of(match.index_1);
            const bool own_rival = std::any_of(same.begin(), same.end(), [&](int i) {
                return distance2(row, descriptor_1(std::size_t(i))) == match.second_distance2;
            });
            if (!own_rival) continue;
            const Eigen::Vector3f place = features_1.bearings[std::size_t(match.index_1)];
            match.second_distance2 = INT_MAX;
            for (std::size_t i = 0; i < features_1.size(); ++i)
                if (!samePlace(place, features_1.bearings[i]))
                    match.second_distance2 =
                        std::min(match.second_distance2, distance2(row, descriptor_1(i)));
        }
        if (distinct()) kept.push_back(match);
    }
    return kept;
}

} // namespace nexomap
