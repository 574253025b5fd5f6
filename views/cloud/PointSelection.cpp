// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Which points lie in a box: nearly all are decided by sums in single precision, many at a time; only those
// near the box's border are projected exactly.

#include "views/cloud/PointDeletion.h"
#include "views/cloud/Ranges.h"

#include <cmath>
#include <limits>
#include <utility>

namespace cloud {
namespace {

constexpr std::size_t kLeastWords = 1 << 10; // of a thread: 65,536 points

/// The places whose whole part, cut off toward 0, is one of begin .. end. Kept as real numbers, because a
/// place far outside fits no whole one.
struct Span
{
    double least, below; ///< least <= place < below

    Span(int begin, int end)
    {
        // What QRect::contains takes for a side drawn backwards; one step back is an empty side.
        if (end < begin - 1) std::swap(begin, end);
        constexpr double infinity = std::numeric_limits<double>::infinity();
        least = begin > 0 ? begin : std::nextafter(begin - 1.0, infinity);
        below = end >= 0 ? end + 1.0 : std::nextafter(double(end), infinity);
    }
    bool contains(double place) const { return place >= least && place < below; }
};

/// One coordinate of the place as a sum of quantised coordinates, in single precision, and how far from the
/// exact place it may be.
struct RoughPlace
{
    float ofX, ofY, ofZ, constant;
    double error;

    /// @param at  the exact coordinate of the place of a point of the scene
    template <class At>
    RoughPlace(const Quantisation& scene, const At& at)
    {
        const double step = 1 / scene.steps, step_z = 1 / scene.steps_z;
        const ScenePoint first{scene.x(0), scene.y(0), scene.z(0)};
        const double origin = at({0, 0, 0});
        const double unitX = at({1, 0, 0}) - origin, unitY = at({0, 1, 0}) - origin,
                     unitZ = at({0, 0, 1}) - origin;
        ofX = static_cast<float>(unitX * step);
        ofY = static_cast<float>(unitY * step);
        ofZ = static_cast<float>(unitZ * step_z);
        constant = static_cast<float>(at(first));
        // Of every term the largest that it can be, and of the differences what they are made from: rounding
        // moves each by at most 2^-24 of that; four such steps are less than the 2^-20 taken here.
        constexpr double most = kQuantisedValues;
        const double magnitude =
            std::abs(at(first)) +
            most * (std::abs(unitX * step) + std::abs(unitY * step) + std::abs(unitZ * step_z));
        const double differences = most * std::abs(origin) * (2 * step + step_z) * 1e-9;
        error = magnitude * std::ldexp(1.0, -20) + differences;
    }
};

/// Borders that decide: inside when between `surely`, outside when not even between `perhaps`.
struct RoughSpan
{
    float surelyLeast, surelyBelow, perhapsLeast, perhapsBelow;

    RoughSpan(const Span& span, double error)
    {
        // The borders are rounded as well; the error is widened by as much.
        const double margin = error + (std::abs(span.least) + std::abs(span.below)) * std::ldexp(1.0, -22);
        surelyLeast = static_cast<float>(span.least + margin);
        surelyBelow = static_cast<float>(span.below - margin);
        perhapsLeast = static_cast<float>(span.least - margin);
        perhapsBelow = static_cast<float>(span.below + margin);
    }
};

/// The points of one word of a set.
struct Block
{
    float x[PointSet::kWordPoints], y[PointSet::kWordPoints], z[PointSet::kWordPoints];

    Block(const PointCloud& cloud, std::size_t first, std::size_t count)
    {
        const auto take = [&](std::size_t plane, float* values) {
            const std::uint8_t *low = cloud.plane(plane) + first, *high = cloud.plane(plane + 1) + first;
            for (std::size_t i = 0; i < count; ++i)
                values[i] = static_cast<float>(low[i] + 256 * high[i]);
        };
        take(0, x);
        take(2, y);
        take(4, z);
    }
};

} // namespace

PointSet pointsInBox(const PointCloud& cloud, const Camera& camera, ViewSize size, const QRect& box)
{
    const Quantisation scene(cloud.header());
    const Span columns(box.left(), box.right()), rows(box.top(), box.bottom());
    const RoughPlace across(scene, [&](const ScenePoint& p) { return placeOf(p, camera, size).x; });
    const RoughPlace down(scene, [&](const ScenePoint& p) { return placeOf(p, camera, size).y; });
    const RoughSpan roughColumns(columns, across.error), roughRows(rows, down.error);
    const auto exactlyIn = [&](std::size_t point) {
        const ScenePoint at{scene.x(cloud.x(point)), scene.y(cloud.y(point)), scene.z(cloud.z(point))};
        const PixelPlace place = placeOf(at, camera, size);
        return columns.contains(place.x) && rows.contains(place.y);
    };

    PointSet inside(cloud.size());
    const auto mark = [&](std::size_t, std::size_t firstWord, std::size_t lastWord) {
        for (std::size_t word = firstWord; word < lastWord; ++word) {
            const std::size_t first = word * PointSet::kWordPoints;
            const std::size_t count = std::min(PointSet::kWordPoints, cloud.size() - first);
            const Block block(cloud, first, count);
            int surely[PointSet::kWordPoints], perhaps[PointSet::kWordPoints];
            int surelyCount = 0, perhapsCount = 0;
            for (std::size_t i = 0; i < count; ++i) {
                const float u = across.ofX * block.x[i] + across.ofY * block.y[i] + across.ofZ * block.z[i] +
                                across.constant;
                const float v =
                    down.ofX * block.x[i] + down.ofY * block.y[i] + down.ofZ * block.z[i] + down.constant;
                surely[i] = int(u >= roughColumns.surelyLeast) & int(u < roughColumns.surelyBelow) &
                            int(v >= roughRows.surelyLeast) & int(v < roughRows.surelyBelow);
                // So that numbers beyond single precision are uncertain, not outside.
                perhaps[i] = 1 ^ (int(u < roughColumns.perhapsLeast) | int(u > roughColumns.perhapsBelow) |
                                  int(v < roughRows.perhapsLeast) | int(v > roughRows.perhapsBelow));
                surelyCount += surely[i];
                perhapsCount += perhaps[i];
            }
            if (perhapsCount == 0) continue;
            std::uint64_t bits = 0;
            for (std::size_t i = 0; i < count; ++i)
                bits |= std::uint64_t(surely[i]) << i;
            if (surelyCount != perhapsCount) {
                for (std::size_t i = 0; i < count; ++i) {
                    if (perhaps[i] && !surely[i]) bits |= std::uint64_t(exactlyIn(first + i)) << i;
                }
            }
            inside.words()[word] = bits;
        }
    };
    forEachRange(rangeBorders(inside.words().size(), kLeastWords), mark);
    return inside;
}

} // namespace cloud
