// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnomaker/Resampler.h"

#include "companions/pnomaker/Stripe.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace pnomaker {
namespace {

constexpr int kWeightBits = 14;
constexpr int kRowBits = 6; ///< fraction bits of the intermediate row: 255 << 6 leaves room for overshoot
constexpr int kMixBits = kWeightBits + kRowBits;

double cubic(double x)
{
    x = std::fabs(x);
    if (x < 1) return (1.5 * x - 2.5) * x * x + 1;
    return x < 2 ? ((-0.5 * x + 2.5) * x - 4) * x + 2 : 0;
}

/// Brings every output to the same even number of taps, so that they can be multiplied in pairs.
void makeUniform(AxisWeights& axis)
{
    axis.maxCount += axis.maxCount % 2;
    std::vector<std::int16_t> values;
    for (Taps& taps : axis.taps) {
        const std::size_t begin = taps.weights;
        taps.weights = values.size();
        for (int k = 0; k < axis.maxCount; ++k)
            values.push_back(k < taps.count ? axis.values[begin + static_cast<std::size_t>(k)]
                                            : static_cast<std::int16_t>(0));
        taps.count = axis.maxCount;
    }
    axis.values = std::move(values);
}

/// Rounds weights to fixed point; what rounding loses goes to the largest, so that the sum is exact.
void appendFixed(const std::vector<double>& weights, std::vector<std::int16_t>& values)
{
    double sum = 0;
    for (const double weight : weights)
        sum += weight;
    const std::size_t begin = values.size();
    int rest = 1 << kWeightBits;
    for (const double weight : weights) {
        values.push_back(static_cast<std::int16_t>(std::lround(weight / sum * (1 << kWeightBits))));
        rest -= values.back();
    }
    *std::max_element(values.begin() + static_cast<std::ptrdiff_t>(begin), values.end()) +=
        static_cast<std::int16_t>(rest);
}

/// One output pixel: the weighted sum of `count` pixels of the intermediate row, an even number. Reads one
/// value past the last of them.
#ifdef __SSE2__
inline void mixPixel(const std::int16_t* in, const std::int16_t* weights, int count, std::uint8_t* pixel)
{
    __m128i sum = _mm_set1_epi32(1 << (kMixBits - 1));
    for (int k = 0; k < count; k += 2, in += 6) {
        std::int32_t pair;
        std::memcpy(&pair, weights + k, 4);
        const __m128i first = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(in));
        const __m128i second = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(in + 3));
        sum = _mm_add_epi32(sum, _mm_madd_epi16(_mm_unpacklo_epi16(first, second), _mm_set1_epi32(pair)));
    }
    const __m128i words = _mm_packs_epi32(_mm_srai_epi32(sum, kMixBits), sum);
    const std::int32_t bytes = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
    std::memcpy(pixel, &bytes, 4);
}
#else
inline void mixPixel(const std::int16_t* in, const std::int16_t* weights, int count, std::uint8_t* pixel)
{
    for (int c = 0; c < 3; ++c) {
        int sum = 1 << (kMixBits - 1);
        for (int k = 0; k < count; ++k)
            sum += in[3 * k + c] * weights[k];
        pixel[c] = static_cast<std::uint8_t>(std::clamp(sum >> kMixBits, 0, 255));
    }
}
#endif

} // namespace

AxisWeights::AxisWeights(int inputs, int outputs, double origin, double step, bool wrapped)
{
    const bool enlarges = step < 1.0 - 1e-9;
    std::vector<double> weights;
    for (int i = 0; i < outputs; ++i) {
        const double begin = i * step + origin;
        const double end = begin + step;
        int first = static_cast<int>(std::floor(begin + 1e-9));
        int last = static_cast<int>(std::ceil(end - 1e-9)) - 1;
        if (enlarges) {
            first = static_cast<int>(std::floor((begin + end) / 2 - 0.5)) - 1;
            last = first + 3;
        }
        if (!wrapped) {
            // Outputs beyond the input's ends see the edge alone.
            last = std::clamp(last, 0, inputs - 1);
            first = std::clamp(first, 0, last);
        }
        weights.clear();
        for (int j = first; j <= last; ++j) {
            const double weight = enlarges ? cubic((begin + end) / 2 - (j + 0.5))
                                           : std::min<double>(j + 1, end) - std::max<double>(j, begin);
            weights.push_back(first == last ? 1.0 : weight);
        }
        // At a cut-off edge the kernel can lose nearly all of its weight; the nearest input then stands.
        double sum = 0;
        for (const double weight : weights)
            sum += weight;
        if (sum < 1e-6) weights.assign(weights.size(), 1.0);
        taps.push_back({first, last - first + 1, values.size()});
        appendFixed(weights, values);
        maxCount = std::max(maxCount, taps.back().count);
    }
    if (wrapped) makeUniform(*this);
}

Resampler::Resampler(int inWidth, int inHeight, int outWidth, int outHeight, double rowOrigin, double rowStep)
    : m_inWidth(inWidth)
    , m_outWidth(outWidth)
    , m_same(inWidth == outWidth && inHeight == outHeight && rowOrigin == 0 && rowStep == 1)
    , m_halves(inWidth == 2 * outWidth && inHeight == 2 * outHeight && rowOrigin == 0 && rowStep == 2)
    , m_horizontal(inWidth, outWidth, 0, static_cast<double>(inWidth) / outWidth, true)
    , m_vertical(inHeight, outHeight, rowOrigin, rowStep, false)
{
    m_wrapPixels = std::max(0, -m_horizontal.taps.front().first);
    for (const Taps& taps : m_horizontal.taps)
        m_wrapPixels = std::max(m_wrapPixels, taps.first + taps.count - inWidth);
}

void Resampler::makeRow(const StripeWindow& input, int outRow, std::uint8_t* out,
                        std::vector<std::int16_t>& scratch) const
{
    const Taps& taps = m_vertical.taps[outRow];
    const int values = m_inWidth * 3;
    if (m_same) {
        std::memcpy(out, input.row(outRow), static_cast<std::size_t>(values));
        return;
    }
    scratch.resize(static_cast<std::size_t>(values + 6 * m_wrapPixels + 8));
    std::int16_t* const row = scratch.data() + 3 * m_wrapPixels;
    if (m_halves) {
        const std::uint8_t* a = input.row(2 * outRow);
        const std::uint8_t* b = input.row(2 * outRow + 1);
        for (int x = 0; x < values; ++x)
            row[x] = static_cast<std::int16_t>(a[x] + b[x] + 1);
        for (int x = 0; x < m_outWidth; ++x)
            for (int c = 0; c < 3; ++c)
                out[3 * x + c] = static_cast<std::uint8_t>((row[6 * x + c] + row[6 * x + 3 + c]) >> 2);
        return;
    }
    const std::int16_t* weights = &m_vertical.values[taps.weights];
    constexpr int kShift = kWeightBits - kRowBits;
    constexpr int kHalf = 1 << (kShift - 1);
    if (taps.count == 1) {
        const std::uint8_t* a = input.row(taps.first);
        for (int x = 0; x < values; ++x)
            row[x] = static_cast<std::int16_t>(a[x] << kRowBits);
    } else if (taps.count == 2) {
        const std::uint8_t *a = input.row(taps.first), *b = input.row(taps.first + 1);
        const int wa = weights[0], wb = weights[1];
        for (int x = 0; x < values; ++x)
            row[x] = static_cast<std::int16_t>((a[x] * wa + b[x] * wb + kHalf) >> kShift);
    } else if (taps.count == 3) {
        const std::uint8_t *a = input.row(taps.first), *b = input.row(taps.first + 1),
                           *c = input.row(taps.first + 2);
        const int wa = weights[0], wb = weights[1], wc = weights[2];
        for (int x = 0; x < values; ++x)
            row[x] = static_cast<std::int16_t>((a[x] * wa + b[x] * wb + c[x] * wc + kHalf) >> kShift);
    } else {
        std::vector<std::int32_t> sums(static_cast<std::size_t>(values), kHalf);
        for (int k = 0; k < taps.count; ++k) {
            const std::uint8_t* a = input.row(taps.first + k);
            const int weight = weights[k];
            for (int x = 0; x < values; ++x)
                sums[x] += a[x] * weight;
        }
        for (int x = 0; x < values; ++x)
            row[x] = static_cast<std::int16_t>(sums[x] >> kShift);
    }
    // The picture is closed along the horizon.
    for (int i = 0; i < 3 * m_wrapPixels; ++i) {
        row[values + i] = row[i];
        row[i - 3 * m_wrapPixels] = row[values + i - 3 * m_wrapPixels];
    }
    mixColumns(row, out);
}

void Resampler::mixColumns(const std::int16_t* row, std::uint8_t* out) const
{
    const int count = m_horizontal.maxCount;
    const std::int16_t* weights = m_horizontal.values.data();
    for (int x = 0; x < m_outWidth; ++x, weights += count) {
        std::uint8_t pixel[4];
        mixPixel(row + 3 * m_horizontal.taps[x].first, weights, count, pixel);
        std::memcpy(out + 3 * static_cast<std::ptrdiff_t>(x), pixel, 3);
    }
}

} // namespace pnomaker
