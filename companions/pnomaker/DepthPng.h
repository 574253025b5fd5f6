// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <vector>

namespace pnomaker {

/// Appends a 256 x 256 picture of 16-bit grey values as PNG, compressed for speed: the upward filter turns
/// the repeated rows of a magnified range picture into zeros.
/// @return false when the encoder fails
bool encodeDepthTile(const std::uint16_t* values, std::vector<std::uint8_t>& out);

} // namespace pnomaker
