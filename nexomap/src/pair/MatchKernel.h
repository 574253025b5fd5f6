// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

// The inner loop of descriptor matching, compiled once per instruction set. Plain C types only: a source file
// compiled for a newer processor must not emit any function that others share, or the linker may hand its
// code to a processor that cannot run it.

#include <stdint.h>

namespace nexomap {

constexpr int kDescriptorBytes = 128;

/// One sweep of rows against all columns: squared Euclidean distances, the two best columns of each row and
/// the best row of each column. Ties go to the smaller index. Arrays are owned by the caller.
struct MatchSweep
{
    const uint8_t* rows;         ///< row_count x 128 bytes, values up to 127
    const int32_t* row_norms;    ///< squared lengths
    int32_t row_count;           ///< a multiple of 4
    int32_t first_row;           ///< index of the first row, for column_row
    const uint8_t* columns;      ///< packed: block by block of `lanes` columns, 4 bytes of each in turn
    const int32_t* column_norms; ///< block_count x lanes; padding columns hold kMatchPadding
    int32_t block_count;
    int32_t* row_best;    ///< row_count x lanes, preset to INT32_MAX
    int32_t* row_second;  ///< as row_best
    int32_t* row_block;   ///< as row_best, preset to 0: block of the best
    int32_t* column_best; ///< block_count x lanes, preset to INT32_MAX
    int32_t* column_row;  ///< as column_best: row of the best
};

constexpr int32_t kMatchPadding = 1 << 28;

/// How one instruction set sweeps.
struct MatchKernel
{
    const char* name;
    int32_t lanes;
    void (*sweep)(const MatchSweep&);
};

extern const MatchKernel kMatchPortable;
#if defined(NEXOMAP_X86_KERNELS)
extern const MatchKernel kMatchAvx2;
extern const MatchKernel kMatchAvxVnni;
extern const MatchKernel kMatchAvx512Vnni;
#endif

} // namespace nexomap
