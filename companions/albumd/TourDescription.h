// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the page has to know of an album, as JSON.

#pragma once

#include "companions/albumd/Albums.h"
#include "companions/albumd/CloudViews.h"
#include "companions/albumd/FileStore.h"
#include "companions/albumd/PanoramaCache.h"

#include <string>

namespace albumd {

/// Panoramas whose file is gone are left out, and their links with them.
std::string describeTour(const Album& album, FileStore& files, PanoramaCache& panoramas, CloudViews& views);

} // namespace albumd
