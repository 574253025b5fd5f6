// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Whether it is worth comparing two panoramas whose poses came about without each other.
#include "nexomap/src/links/PredictedView.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr int kRows = 32; // of samples from pole to pole: 1,300 a map

double shareSeen(const RangeMap& from, const RangeMap& into, const Pose& into_from)
{
    const EquirectGrid grid{from.size().width, from.size().height};
    const EquirectGrid other{into.size().width, into.size().height};
    int samples = 0, seen = 0;
    for (int k = 0; k < kRows; ++k) {
        const int row = std::min(grid.height - 1, int((k + 0.5) / kRows * grid.height));
        const int count = std::max(1, int(2.0 * kRows * std::sin(kPi * (k + 0.5) / kRows)));
        for (int i = 0; i < count; ++i) {
            const int column = std::min(grid.width - 1, int((i + 0.5) / count * grid.width));
            const double range = from.cell(row, column);
            if (!(range > 0.0)) continue;
            const Eigen::Vector3d point = into_from * (grid.direction(column + 0.5, row + 0.5) * range);
            const double expected = point.norm();
            if (expected < 0.3) continue;
            const Eigen::Vector2d pixel = other.pixel(point);
            const double measured = into.cell(std::clamp(int(pixel.y()), 0, other.height - 1),
                                              std::clamp(int(pixel.x()), 0, other.width - 1));
            ++samples;
            // Wider than where poses are judged: these have drifted apart, or they would have been compared.
            seen += measured > 0.0 && std::abs(measured - expected) < 0.1 + 0.03 * expected;
        }
    }
    return samples > 0 ? double(seen) / samples : 0.0;
}

} // namespace

double predictedCovisibility(const RangeMap& map_0, const RangeMap& map_1, const Pose& pose)
{
    if (map_0.empty() || map_1.empty()) return 0.0;
    return 0.5 * (shareSeen(map_1, map_0, pose) + shareSeen(map_0, map_1, pose.inverse()));
}

} // namespace nexomap
