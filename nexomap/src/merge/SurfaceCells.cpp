// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/SurfaceCells.h"

#include "nexomap/src/merge/MortonKey.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

struct KeyedIndex
{
    std::uint64_t key;
    std::uint32_t index;
};

/// Stable radix sort by the bits in which the keys differ.
void sortByKey(std::vector<KeyedIndex>& entries)
{
    constexpr int kBits = 11;
    std::uint64_t all = ~std::uint64_t(0), any = 0;
    for (const KeyedIndex& entry : entries)
        all &= entry.key, any |= entry.key;
    const std::uint64_t differing = any & ~all;
    std::vector<KeyedIndex> other(entries.size());
    for (int shift = 0; shift < 48; shift += kBits) {
        if (((differing >> shift) & ((1u << kBits) - 1)) == 0) continue;
        std::vector<std::uint32_t> starts(1u << kBits, 0);
        for (const KeyedIndex& entry : entries)
            ++starts[std::size_t(entry.key >> shift) & ((1u << kBits) - 1)];
        std::uint32_t sum = 0;
        for (std::uint32_t& start : starts) {
            const std::uint32_t count = start;
            start = sum;
            sum += count;
        }
        for (const KeyedIndex& entry : entries)
            other[starts[std::size_t(entry.key >> shift) & ((1u << kBits) - 1)]++] = entry;
        entries.swap(other);
    }
}

/// Where cells are, by their keys: open addressing.
class CellIndex
{
public:
    explicit CellIndex(const std::vector<SurfaceCell>& cells)
        : m_cells(cells)
    {
        std::size_t slots = 16;
        while (slots < 2 * cells.size())
            slots *= 2;
        m_slots.assign(slots, kNone);
        for (std::uint32_t k = 0; k < cells.size(); ++k) {
            std::size_t slot = slotOf(cells[k].key);
            while (m_slots[slot] != kNone)
                slot = (slot + 1) & (m_slots.size() - 1);
            m_slots[slot] = k;
        }
    }
    const SurfaceCell* find(std::uint64_t key) const
    {
        for (std::size_t slot = slotOf(key); m_slots[slot] != kNone; slot = (slot + 1) & (m_slots.size() - 1))
            if (m_cells[m_slots[slot]].key == key) return &m_cells[m_slots[slot]];
        return nullptr;
    }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;
    // Neighbours stay near each other in the table too: only the bits above a block of cells are mixed.
    std::size_t slotOf(std::uint64_t key) const
    {
        return std::size_t((key & 511) + ((key >> 9) * 0x9E3779B97F4A7C15u >> 20) * 512) &
               (m_slots.size() - 1);
    }
    const std::vector<SurfaceCell>& m_cells;
    std::vector<std::uint32_t> m_slots;
};

std::uint8_t byteOf(float value)
{
    return std::uint8_t(std::clamp(value + 0.5f, 0.f, 255.f));
}

/// Joins neighbours in the list that have the same key.
void joinEqual(std::vector<SurfaceCell>& cells)
{
    std::size_t count = 0;
    for (std::size_t from = 0, to = 0; from < cells.size(); from = to) {
        SurfaceCell sum = cells[from];
        for (to = from + 1; to < cells.size() && cells[to].key == sum.key; ++to) {
            const SurfaceCell& next = cells[to];
            const float share = next.weight / (sum.weight + next.weight);
            sum.point += share * (next.point - sum.point);
            sum.normal += share * (next.normal - sum.normal);
            sum.colour += next.view / (sum.view + next.view) * (next.colour - sum.colour);
            sum.weight += next.weight;
            sum.view += next.view;
        }
        sum.normal.normalize();
        cells[count++] = sum;
    }
    cells.resize(count);
}

} // namespace

std::uint8_t weightCode(float weight)
{
    return std::uint8_t(std::clamp(std::lround((std::log2(std::max(weight, 1e-9f)) + 20.f) * 8.f), 0l, 255l));
}

float weightOf(std::uint8_t code)
{
    static const std::array<float, 256> table = [] {
        std::array<float, 256> made{};
        for (int k = 0; k < 256; ++k)
            made[std::size_t(k)] = std::exp2(float(k) / 8.f - 20.f);
        return made;
    }();
    return table[code];
}

bool cellAt(const CloudGrid& grid, const Eigen::Vector3d& world, std::array<std::uint16_t, 3>* cell)
{
    const Eigen::Vector3d at = world + grid.originMetres();
    const double most[3] = {double(grid.width) * grid.refinement, double(grid.height) * grid.refinement,
                            65536.0};
    for (int axis = 0; axis < 3; ++axis) {
        const double number =
            std::floor(at[axis] * (axis < 2 ? grid.stepsPerMetre() : grid.stepsPerMetreZ()));
        if (!(number >= 0.0 && number < std::min(65536.0, most[axis]))) return false;
        (*cell)[std::size_t(axis)] = std::uint16_t(number);
    }
    return true;
}

std::vector<SurfaceCell> cellsOf(const std::vector<Surfel>& surfels, const CloudGrid& grid)
{
    std::vector<KeyedIndex> entries;
    entries.reserve(surfels.size());
    for (std::size_t k = 0; k < surfels.size(); ++k) {
        std::array<std::uint16_t, 3> cell;
        if (cellAt(grid, surfels[k].point().cast<double>(), &cell))
            entries.push_back({mortonKey(cell[0], cell[1], cell[2]), std::uint32_t(k)});
    }
    sortByKey(entries);
    std::vector<SurfaceCell> cells;
    for (std::size_t from = 0, to = 0; from < entries.size(); from = to) {
        SurfaceCell cell;
        cell.key = entries[from].key;
        // Sums about the first point: far from the origin floats would lose the millimetres.
        const Eigen::Vector3f base = surfels[entries[from].index].point();
        Eigen::Vector3f point = Eigen::Vector3f::Zero(), normal = point, colour = point;
        for (to = from; to < entries.size() && entries[to].key == cell.key; ++to) {
            const Surfel& surfel = surfels[entries[to].index];
            const float weight = weightOf(surfel.weight), view = weightOf(surfel.view);
            point += weight * (surfel.point() - base);
            normal += weight * surfel.normal();
            colour += view * Eigen::Vector3f(surfel.red, surfel.green, surfel.blue);
            cell.weight += weight;
            cell.view += view;
        }
        cell.point = base + point / cell.weight;
        const float length = normal.norm();
        cell.normal = length > 0.f ? Eigen::Vector3f(normal / length) : Eigen::Vector3f::UnitZ();
        cell.colour = colour / cell.view;
        cells.push_back(cell);
    }
    return cells;
}

void drawTogether(std::vector<SurfaceCell>& cells, const CloudGrid& grid, int reach)
{
    const CellIndex index(cells);
    std::vector<SurfaceCell> moved(cells);
    const float cell_m = float(1.0 / grid.stepsPerMetre());
    for (SurfaceCell& own : moved) {
        int axis = 0;
        own.normal.cwiseAbs().maxCoeff(&axis);
        const Eigen::Vector3f along = own.normal / own.normal[axis]; // one cell of the longest axis
        const int side_a = (axis + 1) % 3, side_b = (axis + 2) % 3;
        const std::array<std::uint16_t, 3> cell = cellOfMorton(own.key);
        float sum = 0.f, weights = 0.f;
        for (int k = -reach; k <= reach; ++k) {
            std::array<int, 3> place{};
            for (int a = 0; a < 3; ++a)
                place[std::size_t(a)] = int(cell[std::size_t(a)]) + int(std::lround(float(k) * along[a]));
            constexpr int kAbout[5][2] = {{0, 0}, {1, 0}, {-1, 0}, {0, 1}, {0, -1}};
            for (const auto& about : kAbout) {
                std::array<int, 3> at = place;
                at[std::size_t(side_a)] += about[0];
                at[std::size_t(side_b)] += about[1];
                if (std::min({at[0], at[1], at[2]}) < 0 || std::max({at[0], at[1], at[2]}) > 65535) continue;
                const SurfaceCell* other =
                    index.find(mortonKey(std::uint16_t(at[0]), std::uint16_t(at[1]), std::uint16_t(at[2])));
                if (!other || other->normal.dot(own.normal) < 0.7f) continue;
                const float off = own.normal.dot(other->point - own.point);
                if (std::abs(off) > (float(reach) + 0.5f) * cell_m) continue;
                sum += other->weight * off;
                weights += other->weight;
            }
        }
        if (!(weights > 0.f)) continue;
        own.point += sum / weights * own.normal;
        std::array<std::uint16_t, 3> to;
        if (cellAt(grid, own.point.cast<double>(), &to)) own.key = mortonKey(to[0], to[1], to[2]);
    }
    std::vector<KeyedIndex> entries;
    entries.reserve(moved.size());
    for (std::size_t k = 0; k < moved.size(); ++k)
        entries.push_back({moved[k].key, std::uint32_t(k)});
    sortByKey(entries);
    cells.clear();
    for (const KeyedIndex& entry : entries)
        cells.push_back(moved[entry.index]);
    joinEqual(cells);
}

std::vector<CloudPoint> pointsOf(const std::vector<SurfaceCell>& cells, const KeyRange& owned)
{
    std::vector<CloudPoint> points;
    points.reserve(cells.size());
    for (const SurfaceCell& cell : cells)
        if (owned.has(cell.key))
            points.push_back({cellOfMorton(cell.key), byteOf(cell.colour.x()), byteOf(cell.colour.y()),
                              byteOf(cell.colour.z())});
    return points;
}

} // namespace nexomap
