// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace cloud {

/// Asks the system to back this memory, not touched yet, with large pages: a cloud's hundreds of megabytes
/// come and are found quicker so. A hint: systems that know no such thing ignore it.
void preferLargePages(void* memory, std::size_t bytes);

} // namespace cloud
