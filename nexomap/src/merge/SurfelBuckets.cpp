// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/SurfelBuckets.h"

#include "nexomap/src/merge/LayerDrawing.h"
#include "nexomap/src/merge/MortonKey.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace nexomap {
namespace {

constexpr int kBlockBits = 6;    // parts are made of blocks of 64 cells a side
constexpr double kPerCell = 4.0; // measurements of one station for a cell, at most

} // namespace

SurfelBuckets::SurfelBuckets(SpillFolder& folder, const CloudGrid& grid, const SurfaceVolume& volume,
                             double cell_m, std::size_t most)
    : m_folder(folder)
    , m_grid(grid)
{
    std::map<std::uint64_t, double> counts; // in the order of the curve
    for (const auto& [key, block] : volume.blocks()) {
        std::array<std::uint16_t, 3> cell;
        if (cellAt(grid, (0.5f * (block.low + block.high)).cast<double>(), &cell))
            counts[mortonKey(cell[0], cell[1], cell[2]) >> (3 * kBlockBits)] +=
                double(block.area_m2) * kPerCell / (cell_m * cell_m);
    }
    m_starts.push_back(0);
    double sum = 0.0;
    for (const auto& [block, count] : counts) {
        if (sum > 0.0 && sum + count > double(most)) {
            m_starts.push_back(block << (3 * kBlockBits));
            sum = 0.0;
        }
        sum += count;
    }
    m_parts.assign(m_starts.size(), Spill<Surfel>(folder));
    m_sorting.resize(m_starts.size());
}

int SurfelBuckets::partOf(std::uint64_t key) const
{
    return int(std::upper_bound(m_starts.begin(), m_starts.end(), key) - m_starts.begin()) - 1;
}

KeyRange SurfelBuckets::rangeOf(int part) const
{
    const std::size_t k = std::size_t(part);
    return {m_starts[k], k + 1 < m_starts.size() ? m_starts[k + 1] : ~std::uint64_t(0)};
}

void SurfelBuckets::add(const std::vector<Surfel>& surfels)
{
    constexpr int kSide = 1 << kBlockBits;
    for (const Surfel& surfel : surfels) {
        std::array<std::uint16_t, 3> cell;
        if (!cellAt(m_grid, surfel.point().cast<double>(), &cell)) continue;
        const int own = partOf(mortonKey(cell[0], cell[1], cell[2]));
        m_sorting[std::size_t(own)].push_back(surfel);
        ++m_owned;
        // Which way the borders of its block are near.
        std::array<int, 3> toward{};
        bool near = false;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const int place = cell[axis] % kSide;
            if (place < kInfluence && cell[axis] >= kSide) toward[axis] = -1;
            if (place >= kSide - kInfluence && cell[axis] < 65536 - kSide) toward[axis] = 1;
            near = near || toward[axis];
        }
        if (!near || m_parts.size() == 1) continue;
        std::array<int, 7> told{};
        int count = 0;
        for (int corner = 1; corner < 8; ++corner) {
            std::array<std::uint16_t, 3> at = cell;
            bool other = true;
            for (int axis = 0; axis < 3; ++axis)
                if (corner & (1 << axis)) {
                    other = other && toward[std::size_t(axis)];
                    at[std::size_t(axis)] =
                        std::uint16_t(int(at[std::size_t(axis)]) + toward[std::size_t(axis)] * kInfluence);
                }
            if (!other) continue;
            const int part = partOf(mortonKey(at[0], at[1], at[2]));
            if (part == own || std::find(told.begin(), told.begin() + count, part) != told.begin() + count)
                continue;
            told[std::size_t(count++)] = part;
            m_sorting[std::size_t(part)].push_back(surfel);
        }
    }
    for (std::size_t k = 0; k < m_parts.size(); ++k) {
        m_parts[k].append(m_sorting[k].data(), m_sorting[k].size());
        m_sorting[k].clear();
    }
    if (m_folder.inMemory() > m_folder.budget()) flushAll();
}

void SurfelBuckets::flushAll()
{
    for (Spill<Surfel>& part : m_parts)
        part.flush();
    for (std::vector<Surfel>& list : m_sorting)
        list.shrink_to_fit();
}

std::vector<Surfel> SurfelBuckets::read(int part) const
{
    std::vector<Surfel> surfels;
    const Spill<Surfel>& spill = m_parts[std::size_t(part)];
    surfels.reserve(std::size_t(spill.size()));
    spill.forEachBlock([&](const Surfel* records, std::size_t count) {
        surfels.insert(surfels.end(), records, records + count);
    });
    return surfels;
}

std::vector<Surfel> SurfelBuckets::readOwned(int part) const
{
    std::vector<Surfel> surfels = read(part);
    const KeyRange range = rangeOf(part);
    const auto foreign = [&](const Surfel& surfel) {
        std::array<std::uint16_t, 3> cell;
        return !cellAt(m_grid, surfel.point().cast<double>(), &cell) ||
               !range.has(mortonKey(cell[0], cell[1], cell[2]));
    };
    surfels.erase(std::remove_if(surfels.begin(), surfels.end(), foreign), surfels.end());
    return surfels;
}

} // namespace nexomap
