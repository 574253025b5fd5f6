// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/cloud/PointDeletion.h"

#include "views/cloud/Ranges.h"

#include <cmath>
#include <cstring>
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

/// The share of each quantised coordinate in a point's place: the same sums as `placeOf` takes, with each
/// product computed once.
struct PlaceTables
{
    std::vector<double> right_x, right_y, ahead_x, ahead_y, up_z;
    double cosTilt;

    PlaceTables(const Quantisation& scene, const Camera& camera)
        : right_x(kQuantisedValues)
        , right_y(kQuantisedValues)
        , ahead_x(kQuantisedValues)
        , ahead_y(kQuantisedValues)
        , up_z(kQuantisedValues)
        , cosTilt(std::cos(camera.tilt))
    {
        const double a = kHalfPi - camera.rotation;
        const double cosA = std::cos(a), sinA = std::sin(a), sinTilt = std::sin(camera.tilt);
        for (unsigned value = 0; value < kQuantisedValues; ++value) {
            const double x = scene.x(value) - camera.pan_x, y = scene.y(value) - camera.pan_y;
            right_x[value] = cosA * x;
            right_y[value] = sinA * y;
            ahead_x[value] = sinA * x;
            ahead_y[value] = cosA * y;
            up_z[value] = sinTilt * scene.z(value);
        }
    }
};

/// Appends the points of a run of words that are not deleted, plane by plane.
void copyKept(const PointSet& deleted, const PointCloud& from, std::size_t firstWord, std::size_t lastWord,
              PointCloud* to, std::size_t out)
{
    for (std::size_t word = firstWord; word < lastWord; ++word) {
        const std::size_t first = word * PointSet::kWordPoints;
        const std::size_t count = std::min(PointSet::kWordPoints, from.size() - first);
        const std::uint64_t gone = deleted.words()[word];
        std::uint8_t kept[PointSet::kWordPoints];
        std::size_t keptCount = 0;
        if (gone == 0) {
            for (std::size_t plane = 0; plane < kPlanes; ++plane)
                std::memcpy(to->plane(plane) + out, from.plane(plane) + first, count);
            out += count;
            continue;
        }
        for (std::size_t i = 0; i < count; ++i) {
            kept[keptCount] = static_cast<std::uint8_t>(i);
            keptCount += ~gone >> i & 1;
        }
        for (std::size_t plane = 0; plane < kPlanes; ++plane) {
            const std::uint8_t* source = from.plane(plane) + first;
            std::uint8_t* target = to->plane(plane) + out;
            for (std::size_t i = 0; i < keptCount; ++i)
                target[i] = source[kept[i]];
        }
        out += keptCount;
    }
}

} // namespace

PointSet pointsInBox(const PointCloud& cloud, const Camera& camera, ViewSize size, const QRect& box)
{
    const PlaceTables place(Quantisation(cloud.header()), camera);
    const Span columns(box.left(), box.right()), rows(box.top(), box.bottom());
    const double middleX = size.width * 0.5, middleY = size.height * 0.5;
    PointSet inside(cloud.size());
    const auto mark = [&](std::size_t, std::size_t firstWord, std::size_t lastWord) {
        for (std::size_t word = firstWord; word < lastWord; ++word) {
            const std::size_t first = word * PointSet::kWordPoints;
            const std::size_t count = std::min(PointSet::kWordPoints, cloud.size() - first);
            std::uint64_t bits = 0;
            for (std::size_t i = 0; i < count; ++i) {
                const unsigned x = cloud.x(first + i), y = cloud.y(first + i), z = cloud.z(first + i);
                const double right = place.right_x[x] - place.right_y[y];
                const double up = place.cosTilt * (place.ahead_x[x] + place.ahead_y[y]) + place.up_z[z];
                const bool in = columns.contains(middleX + camera.zoom * right * camera.scale + 0.5) &
                                rows.contains(middleY - camera.zoom * up * camera.scale + 0.5);
                bits |= std::uint64_t(in) << i;
            }
            inside.words()[word] = bits;
        }
    };
    forEachRange(rangeBorders(inside.words().size(), kLeastWords), mark);
    return inside;
}

std::optional<PointCloud> without(const PointSet& deleted, const PointCloud& cloud)
{
    const auto& words = deleted.words();
    const auto borders = rangeBorders(words.size(), kLeastWords);
    std::vector<std::size_t> begin{0};
    for (std::size_t part = 0; part + 1 < borders.size(); ++part) {
        const std::size_t points = std::min(borders[part + 1] * PointSet::kWordPoints, cloud.size()) -
                                   std::min(borders[part] * PointSet::kWordPoints, cloud.size());
        begin.push_back(begin.back() + points - deleted.countIn(borders[part], borders[part + 1]));
    }

    Header header = cloud.header();
    header.setPoints(static_cast<std::uint32_t>(begin.back()));
    PointCloud rest;
    if (!rest.allocate(header)) return std::nullopt;
    forEachRange(borders, [&](std::size_t part, std::size_t firstWord, std::size_t lastWord) {
        copyKept(deleted, cloud, firstWord, lastWord, &rest, begin[part]);
    });
    return rest;
}

} // namespace cloud
