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
    const std::uint64_t window = 2 * static_cast<std::uint64_t>(half) + 1;
    // Dividing every pixel would cost more than all the rest.
    const std::uint64_t share = ((std::uint64_t(1) << 32) + window / 2) / window;
    constexpr std::uint64_t kRound = std::uint64_t(1) << 31;
    for (int c = 0; c < 3; ++c) {
        std::uint64_t sum = 0;
        for (int x = -half; x <= half; ++x)
            sum += in[static_cast<std::size_t>(((x + width) % width) * 3 + c)];
        int entering = (half + 1) % width, leaving = (width - half) % width;
        for (int x = 0; x < width; ++x) {
            row[x * 3 + c] = static_cast<std::uint8_t>((sum * share + kRound) >> 32);
            sum += in[static_cast<std::size_t>(entering * 3 + c)];
            sum -= in[static_cast<std::size_t>(leaving * 3 + c)];
            entering = entering + 1 == width ? 0 : entering + 1;
            leaving = leaving + 1 == width ? 0 : leaving + 1;
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
