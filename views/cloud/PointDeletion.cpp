// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/cloud/PointDeletion.h"

#include "views/cloud/Ranges.h"

#include <cstring>

namespace cloud {
namespace {

constexpr std::size_t kLeastPoints = 1 << 16; // of a thread

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
