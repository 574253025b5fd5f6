// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <vector>

namespace nexomap {

/// Sorts keys and tells where each stood before; equal ones keep their order.
/// @param keys  below 2^48, at most 2^32 - 1 of them; sorted afterwards
/// @return for each sorted key the index that it had
std::vector<std::uint32_t> sortKeys(std::vector<std::uint64_t>& keys);

} // namespace nexomap
