// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A first look at two panoramas, at a fiftieth of the cost of a full one.
#include "nexomap/src/pair/CoarseMatching.h"

#include "nexomap/src/pair/Correspondence.h"

#include <algorithm>
#include <numeric>

namespace nexomap {

Features outlineOf(const Features& features, int count)
{
    std::vector<int> order(features.size());
    std::iota(order.begin(), order.end(), 0);
    const auto larger = [&](int a, int b) {
        return std::make_pair(-features.scales[std::size_t(a)], a) <
               std::make_pair(-features.scales[std::size_t(b)], b);
    };
    if (int(order.size()) > count) {
        std::nth_element(order.begin(), order.begin() + count, order.end(), larger);
        order.resize(std::size_t(count));
    }
    std::sort(order.begin(), order.end());
    Features outline;
    for (const int i : order) {
        const auto from = features.descriptors.begin() + std::ptrdiff_t(i) * kDescriptorBytes;
        outline.descriptors.insert(outline.descriptors.end(), from, from + kDescriptorBytes);
        outline.bearings.push_back(features.bearings[std::size_t(i)]);
        outline.ranges_m.push_back(features.ranges_m[std::size_t(i)]);
        outline.scales.push_back(features.scales[std::size_t(i)]);
        outline.angles_rad.push_back(features.angles_rad[std::size_t(i)]);
    }
    return outline;
}

int likeness(const Features& outline_0, const Features& outline_1)
{
    // Few features have less company: the ratio may be as wide as in full matching.
    constexpr double kRatio = 0.85;
    return int(plausibleMatches(outline_0, outline_1,
                                matchDescriptors(outline_0.descriptors, outline_1.descriptors, kRatio))
                   .size());
}

} // namespace nexomap
