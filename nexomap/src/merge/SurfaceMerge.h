// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/CloudBlocks.h"
#include "nexomap/src/merge/SurfelBuckets.h"

namespace nexomap {

struct SurfaceMergeOptions
{
    bool indoor = false; ///< without ceilings, and interpolated
    int cell_cm = 1;
    std::size_t memory_bytes = std::size_t(192) << 20; ///< for measurements; what is more goes to disk
};

/// The surfaces that a group of stations measured, as one cloud of cells and as all measurements. Both lie
/// partly in a folder inside the working folder, which is gone with this object.
class SurfaceMerge
{
public:
    /// @throws Failure(NEXOMAP_CANNOT_SOLVE) when no station shows a surface, Failure(NEXOMAP_CANNOT_WRITE)
    SurfaceMerge(const std::vector<MergeStation>& stations, const FrontEnd& front_end,
                 const std::filesystem::path& working_folder, const SurfaceMergeOptions& options);
    ~SurfaceMerge();

    const CloudBlocks& cloud() const;
    const SurfaceBlocks& measurements() const;
    /// One line for each station that could not be used.
    const std::vector<std::string>& leftOut() const { return m_left_out; }

private:
    struct Cells;
    struct Measurements;

    std::vector<std::string> m_left_out;
    std::unique_ptr<SpillFolder> m_folder;
    std::unique_ptr<SurfelBuckets> m_buckets;
    std::unique_ptr<Cells> m_cells;
    std::unique_ptr<Measurements> m_measurements;
};

} // namespace nexomap
