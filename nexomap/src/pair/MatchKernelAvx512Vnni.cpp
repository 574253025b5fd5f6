// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Descriptor sweep with AVX-512 VNNI: sixteen columns at once.
#include "nexomap/src/pair/MatchKernel.h"

#include <immintrin.h>
#include <string.h>

namespace {

#include "nexomap/src/pair/MatchSweepLoop.h"

struct Avx512Vnni
{
    static constexpr int kLanes = 16;
    using Vector = __m512i;

    static Vector zero() { return _mm512_setzero_si512(); }
    static Vector set(int32_t value) { return _mm512_set1_epi32(value); }
    static Vector load(const int32_t* p) { return _mm512_loadu_si512(p); }
    static Vector loadBytes(const uint8_t* p) { return _mm512_loadu_si512(p); }
    static void store(int32_t* p, Vector v) { _mm512_storeu_si512(p, v); }
    static Vector min(Vector a, Vector b) { return _mm512_min_epi32(a, b); }
    static Vector max(Vector a, Vector b) { return _mm512_max_epi32(a, b); }
    static Vector whereLess(Vector a, Vector b, Vector yes, Vector no)
    {
        return _mm512_mask_mov_epi32(no, _mm512_cmplt_epi32_mask(a, b), yes);
    }
    static Vector distance(Vector column, Vector row, Vector dot)
    {
        return _mm512_sub_epi32(_mm512_add_epi32(column, row), _mm512_slli_epi32(dot, 1));
    }
    static Vector multiplyAdd(Vector sum, Vector columns, const uint8_t* row)
    {
        int32_t word;
        memcpy(&word, row, 4);
        return _mm512_dpbusd_epi32(sum, columns, _mm512_set1_epi32(word));
    }
};

} // namespace

namespace nexomap {
const MatchKernel kMatchAvx512Vnni = {"AVX512-VNNI", Avx512Vnni::kLanes, sweepAll<Avx512Vnni>};
}
