// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <functional>

/// Work on several threads whose result does not depend on how many there are.
namespace samplescene {

/// Calls `work(begin, end)` for pieces of at most `piece` of 0 to `count`, each exactly once.
/// @param threads  0: as many as the machine runs at once
void parallelFor(std::size_t count, std::size_t piece, int threads,
                 const std::function<void(std::size_t, std::size_t)>& work);

} // namespace samplescene
