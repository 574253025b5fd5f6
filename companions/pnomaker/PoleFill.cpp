// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnomaker/PoleFill.h"

#include <algorithm>
#include <vector>

namespace pnomaker {
namespace {

/// Mean over a window of 2 * half + 1 pixels of a closed row, by running sums.
void boxBlur(std::uint8_t* row, int width, int half)
{
    const std::vector<std::uint8_t> in(row, row + static_cast<std::ptrdiff_t>(width) * 3);
    const std::int64_t window = 2 * static_cast<std::int64_t>(half) + 1;
    for (int c = 0; c < 3; ++c) {
        std::int64_t sum = 0;
        for (int x = -half; x <= half; ++x)
            sum += in[static_cast<std::size_t>(((x % width + width) % width) * 3 + c)];
        for (int x = 0; x < width; ++x) {
            row[x * 3 + c] = static_cast<std::uint8_t>((sum + window / 2) / window);
            sum += in[static_cast<std::size_t>((x + half + 1) % width * 3 + c)];
            sum -= in[static_cast<std::size_t>((x - half + width) % width * 3 + c)];
        }
    }
}

} // namespace

void blurTowardPole(std::uint8_t* row, int width, double nearness)
{
    // Two passes make a triangular window without the steps of a single box.
    const int half = std::min(static_cast<int>(nearness * nearness * width / 2), (width - 1) / 2);
    if (half == 0) return;
    boxBlur(row, width, half);
    boxBlur(row, width, half);
}

} // namespace pnomaker
