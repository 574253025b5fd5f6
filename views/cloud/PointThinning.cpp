// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/cloud/PointThinning.h"

#include "views/cloud/LargePages.h"
#include "views/cloud/Ranges.h"

#include <cstdlib>
#include <memory>

namespace cloud {
namespace {

struct Free
{
    void operator()(void* memory) const { std::free(memory); }
};

/// Which worker counts which cells: stripes of neighbouring cells in turn, so that crowded places are shared.
/// Points of one cell are seen by one worker, in the order of the file, however many workers there are.
struct Stripes
{
    static constexpr unsigned kCellsLog2 = 14;
    static constexpr std::size_t kMostWorkers = 8;
    std::size_t workers = 1; ///< a power of two

    explicit Stripes(std::size_t points)
    {
        const std::size_t cores = std::max(1u, std::thread::hardware_concurrency());
        while (2 * workers <= std::min(cores, kMostWorkers) && points > (workers << 18))
            workers *= 2;
    }
    bool belongs(std::uint64_t cell, std::size_t worker) const
    {
        return ((cell >> kCellsLog2) & (workers - 1)) == worker;
    }
};

/// Where points lie in no order, each counter is far from the one before: waiting for them one by one would
/// take half the time of all.
void fetchEarly([[maybe_unused]] const std::uint8_t* counter)
{
#ifdef __GNUC__
    __builtin_prefetch(counter, 1);
#endif
}

void thinStripes(const PointCloud& cloud, std::uint64_t cells, std::uint8_t* counters, const Stripes& stripes,
                 std::size_t worker, PointSet* kept)
{
    const std::uint64_t width = std::uint64_t(cloud.header().gridWidth()) * cloud.header().refinement();
    const std::size_t points = cloud.size();
    const std::uint8_t *x0 = cloud.plane(0), *x1 = cloud.plane(1), *y0 = cloud.plane(2), *y1 = cloud.plane(3);
    std::uint64_t* words = kept->words().data();
    for (std::size_t first = 0; first < points; first += PointSet::kWordPoints) {
        const std::size_t count = std::min(PointSet::kWordPoints, points - first);
        // First which points are this worker's, then their counters: a branch for each point would be guessed
        // wrong half the time.
        std::uint64_t cell[PointSet::kWordPoints];
        std::uint8_t mine[PointSet::kWordPoints];
        std::size_t mineCount = 0;
        for (std::size_t i = 0; i < count; ++i) {
            cell[i] = width * (y0[first + i] + 256u * y1[first + i]) + x0[first + i] + 256u * x1[first + i];
            mine[mineCount] = static_cast<std::uint8_t>(i);
            mineCount += stripes.belongs(cell[i], worker) & (cell[i] < cells);
        }
        for (std::size_t k = 0; k < mineCount; ++k)
            fetchEarly(counters + cell[mine[k]]);
        std::uint64_t word = 0;
        for (std::size_t k = 0; k < mineCount; ++k) {
            const std::size_t i = mine[k];
            const std::uint8_t counted = counters[cell[i]];
            const bool keep = counted < kMostPointsPerCell;
            counters[cell[i]] = static_cast<std::uint8_t>(counted + keep);
            word |= std::uint64_t(keep) << i;
        }
        words[first / PointSet::kWordPoints] = word;
    }
}

} // namespace

std::optional<std::uint64_t> gridCells(const Header& header)
{
    const std::uint64_t width = std::uint64_t(header.gridWidth()) * header.refinement();
    const std::uint64_t height = std::uint64_t(header.gridHeight()) * header.refinement();
    if (width != 0 && height > kMostGridCells / width) return std::nullopt;
    // A grid without height has no cell at all, but its rows may still be too long to count with.
    if (width > kMostGridCells) return std::nullopt;
    return width * height;
}

std::optional<PointSet> thinnedPoints(const PointCloud& cloud)
{
    const auto cells = gridCells(cloud.header());
    if (!cells) return std::nullopt;
    // Taken as zeroed pages from the system: those that no point touches never become real memory.
    const std::unique_ptr<std::uint8_t, Free> counters(
        static_cast<std::uint8_t*>(std::calloc(std::max<std::uint64_t>(*cells, 1), 1)));
    if (!counters) return std::nullopt;
    preferLargePages(counters.get(), *cells);

    const Stripes stripes(cloud.size());
    std::vector<PointSet> kept(stripes.workers, PointSet(cloud.size()));
    std::vector<std::size_t> workers(stripes.workers + 1);
    for (std::size_t worker = 0; worker < workers.size(); ++worker)
        workers[worker] = worker;
    forEachRange(workers, [&](std::size_t worker, std::size_t, std::size_t) {
        thinStripes(cloud, *cells, counters.get(), stripes, worker, &kept[worker]);
    });
    for (std::size_t worker = 1; worker < kept.size(); ++worker) {
        for (std::size_t word = 0; word < kept[0].words().size(); ++word)
            kept[0].words()[word] |= kept[worker].words()[word];
    }
    return std::move(kept[0]);
}

} // namespace cloud
