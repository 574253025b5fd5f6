// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/Spill.h"
#include "nexomap/src/merge/StationSurvey.h"
#include "nexomap/src/merge/SurfaceCells.h"

namespace nexomap {

/// The space of a cloud, cut along the space-filling curve into parts that fit into memory, and what was
/// measured in each. Measurements near a border lie in both parts.
class SurfelBuckets
{
public:
    /// @param wanted   whether a block of the volume can hold wanted points
    /// @param cell_m   side of the cells that measurements are taken for
    /// @param most     measurements that one part should hold at most
    SurfelBuckets(SpillFolder& folder, const CloudGrid& grid, const SurfaceVolume& volume, double cell_m,
                  std::size_t most);

    /// Lays measurements aside; the order of calls is the order within the parts.
    void add(const std::vector<Surfel>& surfels);
    int count() const { return int(m_parts.size()); }
    KeyRange rangeOf(int part) const;
    std::vector<Surfel> read(int part) const;
    /// Those that lie in the part, without the others about it.
    std::vector<Surfel> readOwned(int part) const;
    std::uint64_t owned() const { return m_owned; }

private:
    int partOf(std::uint64_t key) const;
    void flushAll();

    SpillFolder& m_folder;
    CloudGrid m_grid;
    std::vector<std::uint64_t> m_starts; ///< first key of each part
    std::vector<Spill<Surfel>> m_parts;
    std::vector<std::vector<Surfel>> m_sorting;
    std::uint64_t m_owned = 0;
};

} // namespace nexomap
