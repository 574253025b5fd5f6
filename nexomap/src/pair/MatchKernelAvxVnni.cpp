// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Descriptor sweep with AVX-VNNI: four byte products and their sum in one instruction.
#include "nexomap/src/pair/MatchKernel.h"

#include <immintrin.h>
#include <string.h>

namespace {

#include "nexomap/src/pair/MatchSweepLoop.h"

struct AvxVnni
{
    static constexpr int kLanes = 8;
    using Vector = __m256i;

    static Vector zero() { return _mm256_setzero_si256(); }
    static Vector set(int32_t value) { return _mm256_set1_epi32(value); }
    static Vector load(const int32_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
    static Vector loadBytes(const uint8_t* p)
    {
        return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
    }
    static void store(int32_t* p, Vector v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
    static Vector min(Vector a, Vector b) { return _mm256_min_epi32(a, b); }
    static Vector max(Vector a, Vector b) { return _mm256_max_epi32(a, b); }
    static Vector whereLess(Vector a, Vector b, Vector yes, Vector no)
    {
        return _mm256_blendv_epi8(no, yes, _mm256_cmpgt_epi32(b, a));
    }
    static Vector distance(Vector column, Vector row, Vector dot)
    {
        return _mm256_sub_epi32(_mm256_add_epi32(column, row), _mm256_slli_epi32(dot, 1));
    }
    static Vector multiplyAdd(Vector sum, Vector columns, const uint8_t* row)
    {
        int32_t word;
        memcpy(&word, row, 4);
        return _mm256_dpbusd_avx_epi32(sum, columns, _mm256_set1_epi32(word));
    }
};

} // namespace

namespace nexomap {
const MatchKernel kMatchAvxVnni = {"AVX-VNNI", AvxVnni::kLanes, sweepAll<AvxVnni>};
}
