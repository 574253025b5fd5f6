// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/LayerDrawing.h"

#include "nexomap/src/merge/KeySort.h"
#include "nexomap/src/merge/MortonKey.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace nexomap {
namespace {

constexpr int kBits = 4, kBlock = 1 << kBits;             // cells along a block
constexpr std::uint64_t kInBlock = (1u << 3 * kBits) - 1; // the bits of a key that say where in its block
constexpr int kMostReach = 4, kMargin = kMostReach + 1;
constexpr int kWide = kBlock + 2 * kMargin;
constexpr std::array<int, 3> kStride{1, kWide, kWide* kWide};

/// What a cell says to those about it, close together in memory.
struct Witness
{
    Eigen::Vector3f point, normal;
    float weight;
};

/// Cells of one block, by its octants: [octants[k], octants[k + 1]) in the list.
struct Block
{
    std::array<int, 3> at{};
    std::array<std::uint32_t, 9> octants{};

    std::uint32_t from() const { return octants.front(); }
    std::uint32_t to() const { return octants.back(); }
};

/// Where the cells of a block stand in it, by the low bits of their keys.
struct Place
{
    std::uint8_t x, y, z;
};

const std::vector<Place>& places()
{
    static const std::vector<Place> table = [] {
        std::vector<Place> made;
        for (std::uint64_t key = 0; key <= kInBlock; ++key) {
            const std::array<std::uint16_t, 3> at = cellOfMorton(key);
            made.push_back({std::uint8_t(at[0]), std::uint8_t(at[1]), std::uint8_t(at[2])});
        }
        return made;
    }();
    return table;
}

/// The cells of a block and those about it, found by their place: looking into a small grid costs a tenth of
/// a search by keys.
class Window
{
public:
    explicit Window(const std::vector<SurfaceCell>& cells)
        : m_cells(cells)
        , m_numbers(std::size_t(kWide) * kWide * kWide, 0)
        , m_witnesses(1)
    {
        m_low.reserve(cells.size());
        for (std::uint32_t k = 0; k < cells.size(); ++k) {
            m_low.push_back(std::uint16_t(cells[k].key & kInBlock));
            const std::uint64_t number = cells[k].key >> (3 * kBits);
            if (k == 0 || number != cells[k - 1].key >> (3 * kBits)) {
                const std::array<std::uint16_t, 3> at = cellOfMorton(number);
                m_of_key.emplace(number, std::uint32_t(m_blocks.size()));
                m_blocks.push_back({{at[0], at[1], at[2]}, {}});
                m_blocks.back().octants.fill(k);
            }
            const auto after = m_blocks.back().octants.begin() + 1 + (m_low[k] >> 3 * (kBits - 1));
            std::fill(after, m_blocks.back().octants.end(), k + 1);
        }
    }
    const std::vector<Block>& blocks() const { return m_blocks; }
    /// Looks at a block and all about it.
    void move(const Block& block)
    {
        for (const std::uint32_t place : m_filled)
            m_numbers[place] = 0;
        m_filled.clear();
        m_witnesses.resize(1);
        for (int z = -1; z <= 1; ++z)
            for (int y = -1; y <= 1; ++y)
                for (int x = -1; x <= 1; ++x) {
                    const int bx = block.at[0] + x, by = block.at[1] + y, bz = block.at[2] + z;
                    if (std::min({bx, by, bz}) < 0 || std::max({bx, by, bz}) >= 65536 / kBlock) continue;
                    const auto found =
                        m_of_key.find(mortonKey(std::uint16_t(bx), std::uint16_t(by), std::uint16_t(bz)));
                    if (found != m_of_key.end())
                        fill(m_blocks[found->second], x * kBlock, y * kBlock, z * kBlock);
                }
    }
    /// Of a cell in the block itself.
    int placeOf(std::uint32_t cell) const
    {
        const Place& in = places()[m_low[cell]];
        return (in.x + kMargin) * kStride[0] + (in.y + kMargin) * kStride[1] + (in.z + kMargin) * kStride[2];
    }
    /// Null: no cell there.
    const Witness* at(int place) const
    {
        const std::uint16_t number = m_numbers[std::size_t(place)];
        return number ? &m_witnesses[number] : nullptr;
    }

private:
    void fill(const Block& block, int from_x, int from_y, int from_z)
    {
        static_assert(kMargin <= kBlock / 2, "of a block beside only the nearer half is looked at");
        const std::vector<Place>& table = places();
        const std::array<int, 3> from{from_x, from_y, from_z};
        const auto isFar = [&](int octant) {
            for (std::size_t axis = 0; axis < 3; ++axis)
                if (from[axis] != 0 && (from[axis] < 0) != bool(octant >> axis & 1)) return true;
            return false;
        };
        for (int octant = 0; octant < 8; ++octant) {
            if (isFar(octant)) continue;
            for (std::uint32_t k = block.octants[std::size_t(octant)];
                 k < block.octants[std::size_t(octant) + 1]; ++k) {
                const Place& in = table[m_low[k]];
                const int x = in.x + from_x + kMargin, y = in.y + from_y + kMargin,
                          z = in.z + from_z + kMargin;
                if (unsigned(x) >= unsigned(kWide) || unsigned(y) >= unsigned(kWide) ||
                    unsigned(z) >= unsigned(kWide))
                    continue;
                const auto place = std::uint32_t(x * kStride[0] + y * kStride[1] + z * kStride[2]);
                m_numbers[place] = std::uint16_t(m_witnesses.size());
                m_filled.push_back(place);
                m_witnesses.push_back({m_cells[k].point, m_cells[k].normal, m_cells[k].weight});
            }
        }
    }

    const std::vector<SurfaceCell>& m_cells;
    std::vector<std::uint16_t> m_low;
    std::vector<Block> m_blocks;
    std::unordered_map<std::uint64_t, std::uint32_t> m_of_key;
    std::vector<std::uint16_t> m_numbers; ///< in m_witnesses; 0: none
    std::vector<Witness> m_witnesses;
    std::vector<std::uint32_t> m_filled;
};

/// Rounds what is small, without a call of the mathematics library.
int rounded(float value)
{
    return int(value + 64.5f) - 64;
}

/// How far a cell should move along its normal.
float shiftOf(const SurfaceCell& own, int place, const Window& window, int reach, float cell_m)
{
    int axis = 0;
    own.normal.cwiseAbs().maxCoeff(&axis);
    const int side = (axis + 1) % 3, other_side = (axis + 2) % 3;
    const int step = kStride[std::size_t(axis)], across = kStride[std::size_t(side)],
              other_across = kStride[std::size_t(other_side)];
    const float slope = own.normal[side] / own.normal[axis],
                other_slope = own.normal[other_side] / own.normal[axis];
    const float limit = (float(reach) + 0.5f) * cell_m;
    float sum = 0.f, weights = 0.f;
    const auto gather = [&](int at) {
        const Witness* other = window.at(at);
        if (!other) return;
        const float off = own.normal.dot(other->point - own.point);
        const int alike = other->normal.dot(own.normal) >= 0.7f, near = std::abs(off) <= limit;
        const float weight = alike & near ? other->weight : 0.f; // without a branch between the two
        sum += weight * off;
        weights += weight;
    };
    for (int k = -reach; k <= reach; ++k) {
        const int at = place + k * step + rounded(float(k) * slope) * across +
                       rounded(float(k) * other_slope) * other_across;
        gather(at);
        gather(at + across);
        gather(at - across);
        gather(at + other_across);
        gather(at - other_across);
    }
    return weights > 0.f ? sum / weights : 0.f;
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
        if (to > from + 1) sum.normal.normalize();
        cells[count++] = sum;
    }
    cells.resize(count);
}

} // namespace

void drawTogether(std::vector<SurfaceCell>& cells, const CloudGrid& grid, int reach)
{
    reach = std::clamp(reach, 1, kMostReach);
    const float cell_m = float(1.0 / grid.stepsPerMetre());
    std::vector<float> shifts(cells.size());
    Window window(cells);
    for (const Block& block : window.blocks()) {
        window.move(block);
        for (std::uint32_t k = block.from(); k < block.to(); ++k)
            shifts[k] = shiftOf(cells[k], window.placeOf(k), window, reach, cell_m);
    }
    const GridKeys keys_of(grid);
    std::vector<std::uint64_t> keys(cells.size());
    for (std::size_t k = 0; k < cells.size(); ++k) {
        cells[k].point += shifts[k] * cells[k].normal;
        if (!keys_of.keyAt(cells[k].point, &keys[k])) keys[k] = cells[k].key;
    }
    const std::vector<std::uint32_t> order = sortKeys(keys);
    std::vector<SurfaceCell> sorted(cells.size());
    for (std::size_t k = 0; k < order.size(); ++k) {
        sorted[k] = cells[order[k]];
        sorted[k].key = keys[k];
    }
    cells.swap(sorted);
    joinEqual(cells);
}

} // namespace nexomap
