// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/SurfaceCells.h"

#include "nexomap/src/merge/MortonKey.h"

#include <algorithm>
#include <bitset>
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

/// Where cells are, by their keys: a bit for each of the 512 cells of a block says whether it is there, and
/// as the cells come in the order of their keys, counting bits says where.
class CellIndex
{
public:
    /// @param cells  in the order of their keys
    explicit CellIndex(const std::vector<SurfaceCell>& cells)
    {
        for (std::size_t k = 0; k < cells.size(); ++k) {
            const std::uint64_t number = cells[k].key >> 9;
            if (m_blocks.empty() || m_blocks.back().number != number) {
                m_blocks.emplace_back();
                m_blocks.back().number = number;
                m_blocks.back().first = std::uint32_t(k);
            }
            m_blocks.back().bits[(cells[k].key >> 6) & 7] |= std::uint64_t(1) << (cells[k].key & 63);
        }
        std::size_t slots = 16;
        while (slots < 3 * m_blocks.size())
            slots *= 2;
        m_slots.assign(slots, kNone);
        for (std::uint32_t k = 0; k < m_blocks.size(); ++k) {
            std::size_t slot = slotOf(m_blocks[k].number);
            while (m_slots[slot] != kNone)
                slot = (slot + 1) & (m_slots.size() - 1);
            m_slots[slot] = k;
        }
    }
    /// @return the cell's number; kNone: there is none
    std::uint32_t find(std::uint64_t key)
    {
        const std::uint64_t number = key >> 9;
        if (number != m_last_number) {
            m_last_number = number;
            m_last = nullptr;
            for (std::size_t slot = slotOf(number); m_slots[slot] != kNone && !m_last;
                 slot = (slot + 1) & (m_slots.size() - 1))
                if (m_blocks[m_slots[slot]].number == number) m_last = &m_blocks[m_slots[slot]];
        }
        if (!m_last) return kNone;
        const std::size_t word = (key >> 6) & 7;
        const std::uint64_t bit = std::uint64_t(1) << (key & 63);
        if (!(m_last->bits[word] & bit)) return kNone;
        std::size_t before = std::bitset<64>(m_last->bits[word] & (bit - 1)).count();
        for (std::size_t k = 0; k < word; ++k)
            before += std::bitset<64>(m_last->bits[k]).count();
        return m_last->first + std::uint32_t(before);
    }
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

private:
    struct Block
    {
        std::uint64_t number = 0;
        std::array<std::uint64_t, 8> bits{};
        std::uint32_t first = 0;
    };
    std::size_t slotOf(std::uint64_t number) const
    {
        return std::size_t(number * 0x9E3779B97F4A7C15u >> 24) & (m_slots.size() - 1);
    }
    std::vector<Block> m_blocks;
    std::vector<std::uint32_t> m_slots;
    std::uint64_t m_last_number = ~std::uint64_t(0);
    const Block* m_last = nullptr;
};

/// Keys of a cell's neighbours without taking keys apart: adds or takes one in the bits of one coordinate.
std::uint64_t stepped(std::uint64_t key, int axis, bool up)
{
    const std::uint64_t bits = std::uint64_t(0x249249249249) << axis;
    return (key & ~bits) | (up ? ((key | ~bits) + (std::uint64_t(1) << axis)) & bits
                               : ((key & bits) - (std::uint64_t(1) << axis)) & bits);
}

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
    const Eigen::Vector3d origin = grid.originMetres();
    const double scale[3] = {grid.stepsPerMetre(), grid.stepsPerMetre(), grid.stepsPerMetreZ()};
    const double most[3] = {std::min(65536.0, double(grid.width) * grid.refinement),
                            std::min(65536.0, double(grid.height) * grid.refinement), 65536.0};
    std::vector<KeyedIndex> entries;
    entries.reserve(surfels.size());
    for (std::size_t k = 0; k < surfels.size(); ++k) {
        const Surfel& s = surfels[k];
        const double x = (double(s.x) + origin.x()) * scale[0], y = (double(s.y) + origin.y()) * scale[1],
                     z = (double(s.z) + origin.z()) * scale[2];
        if (x >= 0.0 && y >= 0.0 && z >= 0.0 && x < most[0] && y < most[1] && z < most[2])
            entries.push_back(
                {mortonKey(std::uint16_t(x), std::uint16_t(y), std::uint16_t(z)), std::uint32_t(k)});
    }
    sortByKey(entries);
    std::size_t different = 0;
    for (std::size_t k = 0; k < entries.size(); ++k)
        different += k == 0 || entries[k].key != entries[k - 1].key;
    std::vector<SurfaceCell> cells;
    cells.reserve(different);
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
    CellIndex index(cells);
    std::vector<KeyedIndex> entries(cells.size());
    std::vector<float> shifts(cells.size(), 0.f);
    const float cell_m = float(1.0 / grid.stepsPerMetre());
    for (std::size_t number = 0; number < cells.size(); ++number) {
        const SurfaceCell& own = cells[number];
        int axis = 0;
        own.normal.cwiseAbs().maxCoeff(&axis);
        const Eigen::Vector3f along = own.normal / own.normal[axis]; // one cell of the longest axis
        const std::array<std::uint16_t, 3> cell = cellOfMorton(own.key);
        float sum = 0.f, weights = 0.f;
        const auto gather = [&](std::uint64_t key) {
            const std::uint32_t found = index.find(key);
            if (found == CellIndex::kNone) return;
            const SurfaceCell& other = cells[found];
            if (other.normal.dot(own.normal) < 0.7f) return;
            const float off = own.normal.dot(other.point - own.point);
            if (std::abs(off) > (float(reach) + 0.5f) * cell_m) return;
            sum += other.weight * off;
            weights += other.weight;
        };
        for (int k = -reach; k <= reach; ++k) {
            std::array<int, 3> at{};
            for (std::size_t a = 0; a < 3; ++a)
                at[a] = int(cell[a]) + int(std::floor(float(k) * along[int(a)] + 0.5f));
            if (std::min({at[0], at[1], at[2]}) < 1 || std::max({at[0], at[1], at[2]}) > 65534) continue;
            const std::uint64_t key =
                mortonKey(std::uint16_t(at[0]), std::uint16_t(at[1]), std::uint16_t(at[2]));
            gather(key);
            for (const int side : {(axis + 1) % 3, (axis + 2) % 3}) {
                gather(stepped(key, side, true));
                gather(stepped(key, side, false));
            }
        }
        if (weights > 0.f) shifts[number] = sum / weights;
    }
    for (std::size_t number = 0; number < cells.size(); ++number) {
        SurfaceCell& own = cells[number];
        own.point += shifts[number] * own.normal;
        std::array<std::uint16_t, 3> to;
        if (cellAt(grid, own.point.cast<double>(), &to)) own.key = mortonKey(to[0], to[1], to[2]);
        entries[number] = {own.key, std::uint32_t(number)};
    }
    sortByKey(entries);
    std::vector<SurfaceCell> sorted;
    sorted.reserve(cells.size());
    for (const KeyedIndex& entry : entries)
        sorted.push_back(cells[entry.index]);
    cells.swap(sorted);
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
