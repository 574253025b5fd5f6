// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/cloud/LargePages.h"

#ifdef __linux__
#include <sys/mman.h>

#include <cstdint>
#endif

namespace cloud {

void preferLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t bytes)
{
#ifdef __linux__
    constexpr std::uintptr_t kPage = std::uintptr_t(2) << 20;
    const auto begin = (reinterpret_cast<std::uintptr_t>(memory) + kPage - 1) / kPage * kPage;
    const auto end = (reinterpret_cast<std::uintptr_t>(memory) + bytes) / kPage * kPage;
    if (begin < end) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#endif
}

} // namespace cloud
