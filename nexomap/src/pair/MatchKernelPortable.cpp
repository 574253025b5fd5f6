// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Descriptor sweep in plain C++, for processors without the instruction sets of the other kernels.
#include "nexomap/src/pair/MatchKernel.h"

namespace {

struct Plain
{
    static constexpr int kLanes = 8;
    struct Vector
    {
        int32_t v[kLanes];
    };

    template <class F>
    static Vector each(F f)
    {
        Vector result;
        for (int i = 0; i < kLanes; ++i)
            result.v[i] = f(i);
        return result;
    }
    static Vector zero()
    {
        return each([](int) { return 0; });
    }
    static Vector set(int32_t value)
    {
        return each([=](int) { return value; });
    }
    static Vector load(const int32_t* p)
    {
        return each([=](int i) { return p[i]; });
    }
    static void store(int32_t* p, const Vector& v)
    {
        for (int i = 0; i < kLanes; ++i)
            p[i] = v.v[i];
    }
    static Vector min(const Vector& a, const Vector& b)
    {
        return each([&](int i) { return a.v[i] < b.v[i] ? a.v[i] : b.v[i]; });
    }
    static Vector max(const Vector& a, const Vector& b)
    {
        return each([&](int i) { return a.v[i] > b.v[i] ? a.v[i] : b.v[i]; });
    }
    static Vector whereLess(const Vector& a, const Vector& b, const Vector& yes, const Vector& no)
    {
        return each([&](int i) { return a.v[i] < b.v[i] ? yes.v[i] : no.v[i]; });
    }
    static Vector distance(const Vector& column, const Vector& row, const Vector& dot)
    {
        return each([&](int i) { return column.v[i] + row.v[i] - 2 * dot.v[i]; });
    }
};

// Without instructions for bytes the four products are formed one by one; the shared loop would hide the
// pattern from the compiler's vectoriser.
void sweepPlain(const nexomap::MatchSweep& s)
{
    constexpr int kLanes = Plain::kLanes;
    for (int block = 0; block < s.block_count; ++block) {
        const uint8_t* b = s.columns + static_cast<int64_t>(block) * nexomap::kDescriptorBytes * kLanes;
        int16_t columns[nexomap::kDescriptorBytes][kLanes];
        for (int byte = 0; byte < nexomap::kDescriptorBytes; ++byte)
            for (int lane = 0; lane < kLanes; ++lane)
                columns[byte][lane] = b[(byte / 4) * 4 * kLanes + lane * 4 + byte % 4];
        for (int row = 0; row < s.row_count; ++row) {
            const uint8_t* a = s.rows + row * nexomap::kDescriptorBytes;
            Plain::Vector dot = Plain::zero();
            for (int byte = 0; byte < nexomap::kDescriptorBytes; ++byte)
                for (int lane = 0; lane < kLanes; ++lane)
                    dot.v[lane] += a[byte] * columns[byte][lane];
            const Plain::Vector distance = Plain::distance(Plain::load(s.column_norms + block * kLanes),
                                                           Plain::set(s.row_norms[row]), dot);
            int32_t* const best_place = s.row_best + row * kLanes;
            int32_t* const second_place = s.row_second + row * kLanes;
            int32_t* const block_place = s.row_block + row * kLanes;
            const Plain::Vector best = Plain::load(best_place);
            Plain::store(second_place, Plain::min(Plain::load(second_place), Plain::max(best, distance)));
            Plain::store(block_place,
                         Plain::whereLess(distance, best, Plain::set(block), Plain::load(block_place)));
            Plain::store(best_place, Plain::min(best, distance));
            int32_t* const column_best = s.column_best + block * kLanes;
            int32_t* const column_row = s.column_row + block * kLanes;
            const Plain::Vector old = Plain::load(column_best);
            Plain::store(column_row, Plain::whereLess(distance, old, Plain::set(s.first_row + row),
                                                      Plain::load(column_row)));
            Plain::store(column_best, Plain::min(old, distance));
        }
    }
}

} // namespace

namespace nexomap {
const MatchKernel kMatchPortable = {"portable", Plain::kLanes, sweepPlain};
}
