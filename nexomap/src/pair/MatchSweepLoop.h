// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

// The loop that all instruction sets share. Included once by each kernel's source file, inside an unnamed
// namespace, so that each has code of its own.
//
// Lanes are columns: four bytes of a row are multiplied with four bytes of every column of a block at once,
// so no sum across lanes is ever needed. Columns go in chunks that stay in the first-level cache while all
// rows pass.

template <class Simd>
void sweepAll(const nexomap::MatchSweep& s)
{
    using Vector = typename Simd::Vector;
    constexpr int kRows = 4, kLanes = Simd::kLanes, kWords = nexomap::kDescriptorBytes / 4;
    constexpr int kBlockBytes = nexomap::kDescriptorBytes * kLanes;
    constexpr int kChunk = 24 * 1024 / kBlockBytes;
    for (int chunk = 0; chunk < s.block_count; chunk += kChunk) {
        const int chunk_end = chunk + kChunk < s.block_count ? chunk + kChunk : s.block_count;
        for (int row = 0; row < s.row_count; row += kRows) {
            const uint8_t* a = s.rows + row * nexomap::kDescriptorBytes;
            for (int block = chunk; block < chunk_end; ++block) {
                const uint8_t* b = s.columns + static_cast<int64_t>(block) * kBlockBytes;
                Vector dot[kRows];
                for (int r = 0; r < kRows; ++r)
                    dot[r] = Simd::zero();
                for (int word = 0; word < kWords; ++word) {
                    const Vector columns = Simd::loadBytes(b + word * 4 * kLanes);
                    for (int r = 0; r < kRows; ++r)
                        dot[r] =
                            Simd::multiplyAdd(dot[r], columns, a + r * nexomap::kDescriptorBytes + 4 * word);
                }
                const Vector column_norm = Simd::load(s.column_norms + block * kLanes);
                Vector column_best = Simd::load(s.column_best + block * kLanes);
                Vector column_row = Simd::load(s.column_row + block * kLanes);
                const Vector block_index = Simd::set(block);
                for (int r = 0; r < kRows; ++r) {
                    const Vector distance =
                        Simd::distance(column_norm, Simd::set(s.row_norms[row + r]), dot[r]);
                    int32_t* const best_place = s.row_best + (row + r) * kLanes;
                    int32_t* const second_place = s.row_second + (row + r) * kLanes;
                    int32_t* const block_place = s.row_block + (row + r) * kLanes;
                    const Vector best = Simd::load(best_place);
                    Simd::store(second_place, Simd::min(Simd::load(second_place), Simd::max(best, distance)));
                    Simd::store(block_place,
                                Simd::whereLess(distance, best, block_index, Simd::load(block_place)));
                    Simd::store(best_place, Simd::min(best, distance));
                    column_row =
                        Simd::whereLess(distance, column_best, Simd::set(s.first_row + row + r), column_row);
                    column_best = Simd::min(column_best, distance);
                }
                Simd::store(s.column_best + block * kLanes, column_best);
                Simd::store(s.column_row + block * kLanes, column_row);
            }
        }
    }
}
