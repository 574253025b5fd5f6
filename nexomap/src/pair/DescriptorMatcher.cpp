// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Brute-force matching of byte descriptors with whatever the processor does best.
#include "nexomap/src/pair/DescriptorMatcher.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <cstdint>
#include <cstring>

#if defined(NEXOMAP_X86_KERNELS)
#include <cpuid.h>
#endif

namespace nexomap {
namespace {

constexpr int kStripe = 512; // rows per task; its row results fit the second-level cache

std::vector<std::int32_t> squaredLengths(const std::vector<std::uint8_t>& descriptors)
{
    std::vector<std::int32_t> norms(descriptors.size() / kDescriptorBytes);
    for (std::size_t i = 0; i < norms.size(); ++i)
        for (int k = 0; k < kDescriptorBytes; ++k) {
            const int value = descriptors[i * kDescriptorBytes + k];
            norms[i] += value * value;
        }
    return norms;
}

std::vector<std::uint8_t> packColumns(const std::vector<std::uint8_t>& descriptors, int count, int lanes,
                                      int blocks)
{
    std::vector<std::uint8_t> packed(std::size_t(blocks) * lanes * kDescriptorBytes, 0);
    for (int column = 0; column < count; ++column) {
        std::uint8_t* block = packed.data() + std::size_t(column / lanes) * lanes * kDescriptorBytes;
        for (int word = 0; word < kDescriptorBytes / 4; ++word)
            std::memcpy(block + (word * lanes + column % lanes) * 4,
                        descriptors.data() + std::size_t(column) * kDescriptorBytes + word * 4, 4);
    }
    return packed;
}

/// What one task knows when it is done.
struct Stripe
{
    std::vector<std::int32_t> best, second, column; ///< per row
    std::vector<std::int32_t> column_best, column_row;
};

struct Columns
{
    std::vector<std::uint8_t> packed;
    std::vector<std::int32_t> norms;
    int blocks = 0;
};

Stripe sweepStripe(const std::vector<std::uint8_t>& rows, const std::vector<std::int32_t>& norms, int first,
                   int count, const Columns& columns, const MatchKernel& kernel)
{
    const int padded = (count + 3) / 4 * 4, lanes = kernel.lanes;
    std::vector<std::uint8_t> part(std::size_t(padded) * kDescriptorBytes, 0);
    std::copy_n(rows.begin() + std::size_t(first) * kDescriptorBytes, std::size_t(count) * kDescriptorBytes,
                part.begin());
    std::vector<std::int32_t> part_norms(padded, kMatchPadding);
    std::copy_n(norms.begin() + first, count, part_norms.begin());
    std::vector<std::int32_t> best(std::size_t(padded) * lanes, INT32_MAX), second = best;
    std::vector<std::int32_t> block(best.size(), 0);
    Stripe result;
    result.column_best.assign(columns.norms.size(), INT32_MAX);
    result.column_row.assign(columns.norms.size(), 0);
    kernel.sweep({part.data(), part_norms.data(), padded, first, columns.packed.data(), columns.norms.data(),
                  columns.blocks, best.data(), second.data(), block.data(), result.column_best.data(),
                  result.column_row.data()});

    result.best.assign(count, INT32_MAX);
    result.second.assign(count, INT32_MAX);
    result.column.assign(count, 0);
    for (int row = 0; row < count; ++row)
        for (int lane = 0; lane < lanes; ++lane) {
            const std::size_t at = std::size_t(row) * lanes + lane;
            const std::int32_t column = block[at] * lanes + lane;
            std::int32_t& first_best = result.best[row];
            result.second[row] = std::min({result.second[row], second[at], std::max(first_best, best[at])});
            if (best[at] < first_best || (best[at] == first_best && column < result.column[row])) {
                first_best = best[at];
                result.column[row] = column;
            }
        }
    return result;
}

} // namespace

std::vector<const MatchKernel*> availableMatchKernels()
{
    std::vector<const MatchKernel*> kernels;
#if defined(NEXOMAP_X86_KERNELS)
    __builtin_cpu_init(); // also asks the operating system whether it keeps the wide registers
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vnni"))
        kernels.push_back(&kMatchAvx512Vnni);
    unsigned a = 0, b = 0, c = 0, d = 0;
    if (__builtin_cpu_supports("avx2") && __get_cpuid_count(7, 1, &a, &b, &c, &d) && (a & (1u << 4)))
        kernels.push_back(&kMatchAvxVnni);
    if (__builtin_cpu_supports("avx2")) kernels.push_back(&kMatchAvx2);
#endif
    kernels.push_back(&kMatchPortable);
    return kernels;
}

std::vector<DescriptorMatch> matchDescriptors(const std::vector<std::uint8_t>& descriptors_0,
                                              const std::vector<std::uint8_t>& descriptors_1, double ratio,
                                              const MatchKernel* kernel)
{
    static const MatchKernel* const fastest = availableMatchKernels().front();
    if (!kernel) kernel = fastest;
    const int rows = int(descriptors_0.size() / kDescriptorBytes),
              count = int(descriptors_1.size() / kDescriptorBytes);
    if (rows == 0 || count == 0) return {};

    Columns columns;
    columns.blocks = (count + kernel->lanes - 1) / kernel->lanes;
    columns.packed = packColumns(descriptors_1, count, kernel->lanes, columns.blocks);
    columns.norms = squaredLengths(descriptors_1);
    columns.norms.resize(std::size_t(columns.blocks) * kernel->lanes, kMatchPadding);
    const std::vector<std::int32_t> row_norms = squaredLengths(descriptors_0);

    std::vector<Stripe> stripes((rows + kStripe - 1) / kStripe);
    cv::parallel_for_(cv::Range(0, int(stripes.size())), [&](const cv::Range& range) {
        for (int i = range.start; i < range.end; ++i)
            stripes[i] = sweepStripe(descriptors_0, row_norms, i * kStripe,
                                     std::min(kStripe, rows - i * kStripe), columns, *kernel);
    });

    std::vector<std::int32_t> column_best(count, INT32_MAX), column_row(count, -1);
    for (const Stripe& stripe : stripes) // in row order, so that ties go to the smaller row
        for (int column = 0; column < count; ++column)
            if (stripe.column_best[column] < column_best[column]) {
                column_best[column] = stripe.column_best[column];
                column_row[column] = stripe.column_row[column];
            }

    std::vector<DescriptorMatch> matches;
    for (int row = 0; row < rows; ++row) {
        const Stripe& stripe = stripes[row / kStripe];
        const int i = row % kStripe, column = stripe.column[i];
        const bool distinct = count < 2 || double(stripe.best[i]) < ratio * ratio * double(stripe.second[i]);
        if (distinct && column < count && column_row[column] == row)
            matches.push_back({row, column, stripe.best[i], stripe.second[i]});
    }
    return matches;
}

int descriptorDistance2(const Features& f0, int i0, const Features& f1, int i1)
{
    const std::uint8_t* a = f0.descriptors.data() + std::size_t(i0) * kDescriptorBytes;
    const std::uint8_t* b = f1.descriptors.data() + std::size_t(i1) * kDescriptorBytes;
    int sum = 0;
    for (int k = 0; k < kDescriptorBytes; ++k) {
        const int difference = int(a[k]) - int(b[k]);
        sum += difference * difference;
    }
    return sum;
}

} // namespace nexomap
