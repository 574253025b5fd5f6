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

constexpr std::size_t kLeastPoints = 1 << 16; // of a thread

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

constexpr std::size_t kBlockWords = 16; // copied plane by plane
constexpr std::size_t kBlockPoints = kBlockWords * PointSet::kWordPoints;

/// Numbers, from the first of the block on, of the points that are not deleted.
/// @return how many
std::size_t listKept(const std::uint64_t* deleted, std::size_t count, std::uint16_t* kept)
{
    std::size_t keptCount = 0;
    for (std::size_t i = 0; i < count; ++i) {
        kept[keptCount] = static_cast<std::uint16_t>(i);
        keptCount += ~deleted[i / PointSet::kWordPoints] >> (i % PointSet::kWordPoints) & 1;
    }
    return keptCount;
}

/// Copies the points first .. last that are not deleted to where `out` and the next ones stand.
void copyKept(const PointSet& deleted, const PointCloud& from, std::size_t first, std::size_t last,
              PointCloud* to, std::size_t out)
{
    std::uint16_t kept[kBlockPoints];
    for (; first < last; first += kBlockPoints) {
        const std::size_t count = std::min(kBlockPoints, last - first);
        const std::size_t keptCount =
            listKept(deleted.words().data() + first / PointSet::kWordPoints, count, kept);
        for (std::size_t plane = 0; plane < kPlanes; ++plane) {
            const std::uint8_t* source = from.plane(plane) + first;
            std::uint8_t* target = to->plane(plane) + out;
            if (keptCount == count) {
                std::memcpy(target, source, count);
                continue;
            }
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
    const std::uint8_t *x0 = cloud.plane(0), *x1 = cloud.plane(1), *y0 = cloud.plane(2), *y1 = cloud.plane(3),
                       *z0 = cloud.plane(4), *z1 = cloud.plane(5);
    PointSet inside(cloud.size());
    const auto mark = [&](std::size_t, std::size_t firstWord, std::size_t lastWord) {
        for (std::size_t word = firstWord; word < lastWord; ++word) {
            const std::size_t first = word * PointSet::kWordPoints;
            const std::size_t count = std::min(PointSet::kWordPoints, cloud.size() - first);
            std::uint64_t bits = 0;
            for (std::size_t i = 0; i < count; ++i) {
                const std::size_t point = first + i;
                const unsigned x = x0[point] + 256u * x1[point], y = y0[point] + 256u * y1[point],
                               z = z0[point] + 256u * z1[point];
                const double right = place.right_x[x] - place.right_y[y];
                const double up = place.cosTilt * (place.ahead_x[x] + place.ahead_y[y]) + place.up_z[z];
                const bool in = columns.contains(middleX + camera.zoom * right * camera.scale + 0.5) &
                                rows.contains(middleY - camera.zoom * up * camera.scale + 0.5);
                bits |= std::uint64_t(in) << i;
            }
            inside.words()[word] = bits;
        }
    };
    forEachRange(rangeBorders(inside.words().size(), kLeastPoints / PointSet::kWordPoints), mark);
    return inside;
}

std::optional<PointCloud> without(const PointSet& deleted, const PointCloud& cloud)
{
    const auto borders = rangeBorders(cloud.size(), kLeastPoints, kBlockPoints);
    std::vector<std::size_t> begin{0}; // of each part among the points that stay
    for (std::size_t part = 0; part + 1 < borders.size(); ++part) {
        const std::size_t firstWord = borders[part] / PointSet::kWordPoints;
        const std::size_t lastWord = (borders[part + 1] + PointSet::kWordPoints - 1) / PointSet::kWordPoints;
        begin.push_back(begin.back() + borders[part + 1] - borders[part] -
                        deleted.countIn(firstWord, lastWord));
    }

    Header header = cloud.header();
    header.setPoints(static_cast<std::uint32_t>(begin.back()));
    PointCloud rest;
    if (!rest.allocate(header)) return std::nullopt;
    forEachRange(borders, [&](std::size_t part, std::size_t first, std::size_t last) {
        copyKept(deleted, cloud, first, last, &rest, begin[part]);
    });
    return rest;
}

} // namespace cloud
