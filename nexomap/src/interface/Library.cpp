// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/interface/Library.h"

#include <cstdio>
#include <cstdlib>

namespace nexomap {

Library& library()
{
    static Library* const only = [] {
        auto* fresh = new Library; // never destroyed: a program may call until its very end
        fresh->front_end = panoramaFileFrontEnd();
        return fresh;
    }();
    return *only;
}

void setFrontEnd(FrontEnd front_end)
{
    Library& here = library();
    const std::lock_guard<std::mutex> guard(here.lock);
    here.front_end = std::move(front_end);
    here.model = {};
    here.folder.reset();
}

void tell(const char* reason) noexcept
{
    if (std::getenv("NEXOMAP_VERBOSE")) std::fprintf(stderr, "NexomapLib: %s\n", reason);
}

} // namespace nexomap
