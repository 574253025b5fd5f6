// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/WallEvidence.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kLowestCeiling_m = 2.1; // what ends lower is furniture
constexpr double kPatch_m = 1.0;
constexpr int kLeastTall = 18;        // filled bits of a column that tells how high walls go
constexpr std::size_t kLeastTops = 8; // such columns of a patch
constexpr int kTopBins = 4;           // a wall is filled here
constexpr int kTopTolerance = 2;

int count(std::uint64_t bits)
{
    return int(std::bitset<64>(bits).count());
}

int highest(std::uint64_t bits)
{
    int bin = -1;
    for (; bits; bits >>= 1)
        ++bin;
    return bin;
}

/// Up to which bits the walls go in each patch of the map and the patches about it.
class WallTops
{
public:
    WallTops(const HeightColumns& columns, const PlanRaster& raster)
        : m_patch(std::max(1, int(kPatch_m / raster.pixel_m)))
        , m_across(raster.width / m_patch + 1)
        , m_down(raster.height / m_patch + 1)
        , m_tops(std::size_t(m_across * m_down))
    {
        const std::uint64_t slice = HeightColumns::bitsBetween(0.1, 10.0);
        std::vector<Ends> ends(m_tops.size());
        for (int y = 0; y < raster.height; ++y)
            for (int x = 0; x < raster.width; ++x)
                if (const std::uint64_t bits = columns.at(x, y) & slice; count(bits) >= kLeastTall)
                    ++ends[patchOf(x, y)][std::size_t(highest(bits))];
        for (int y = 0; y < m_down; ++y)
            for (int x = 0; x < m_across; ++x) {
                Ends sum{};
                for (int v = std::max(0, y - 1); v <= std::min(m_down - 1, y + 1); ++v)
                    for (int u = std::max(0, x - 1); u <= std::min(m_across - 1, x + 1); ++u)
                        for (std::size_t bin = 0; bin < sum.size(); ++bin)
                            sum[bin] += ends[std::size_t(v * m_across + u)][bin];
                m_tops[std::size_t(y * m_across + x)] = topsOf(sum);
            }
    }
    /// Whether walls end at a bit, give or take what the ceiling's noise leaves of them.
    bool reaches(int x, int y, int bin) const { return m_tops[patchOf(x, y)] >> bin & 1; }

private:
    using Ends = std::array<std::uint32_t, 64>;

    std::size_t patchOf(int x, int y) const { return std::size_t(y / m_patch * m_across + x / m_patch); }
    /// The highest end, single points above not counted, and lower ones that are as frequent as those of a
    /// lower room are. Curtains and wardrobes are rarer than walls.
    static std::uint64_t topsOf(const Ends& ends)
    {
        std::size_t all = 0, above = 0;
        for (const std::uint32_t n : ends)
            all += n;
        if (all < kLeastTops) return 0;
        int bin = 63;
        for (; bin > 0 && (above += ends[std::size_t(bin)]) * 5 < all; --bin) {
        }
        std::uint64_t tops = ~std::uint64_t(0) << std::max(0, bin - kTopTolerance);
        for (std::size_t k = 1; k < 63; ++k)
            if ((ends[k - 1] + ends[k] + ends[k + 1]) * std::size_t(3) > all)
                tops |= std::uint64_t(7) << (k - 1);
        return tops & HeightColumns::bitsBetween(kLowestCeiling_m, 10.0);
    }

    int m_patch, m_across, m_down;
    std::vector<std::uint64_t> m_tops;
};

} // namespace

WallEvidence wallEvidence(const HeightColumns& columns, const PlanRaster& raster)
{
    const std::uint64_t knees = HeightColumns::bitsBetween(0.15, 0.75),
                        breast = HeightColumns::bitsBetween(0.9, 1.95),
                        ground = HeightColumns::bitsBetween(-0.12, 0.07);
    const WallTops tops(columns, raster);
    const cv::Mat1b none(raster.height, raster.width, std::uint8_t(0));
    WallEvidence evidence{none.clone(), none.clone(), none.clone(), none.clone()};
    for (int y = 1; y + 1 < raster.height; ++y)
        for (int x = 1; x + 1 < raster.width; ++x) {
            const std::uint64_t own = columns.at(x, y);
            if (!own) continue;
            evidence.seen(y, x) = 255;
            if (own & ground) evidence.floor(y, x) = 255;
            if (count(own) < 2) continue;
            const std::uint64_t about = columns.about(x, y);
            const int end = highest(about);
            if (end < kTopBins || !tops.reaches(x, y, end)) continue;
            const std::uint64_t upper = ((std::uint64_t(1) << kTopBins) - 1) << (end - kTopBins + 1);
            if (count(about & upper) < kTopBins - 1) continue;
            const bool solid = count(about & breast) * 2 >= count(breast);
            const bool stands = solid || count(about & knees) * 5 >= count(knees) * 3;
            if (stands || !(about & ground)) evidence.wall(y, x) = 255;
            if (solid) evidence.solid(y, x) = 255;
        }
    return evidence;
}

} // namespace nexomap
