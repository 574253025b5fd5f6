// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/PanoramaCheck.h"

#include "linking/pno/PnoFile.h"

#include <memory>

namespace albumd {

bool isPanorama(const std::string& path, const std::string& id)
{
    const auto file = std::make_unique<PnoFile>();
    if (file->Open(path.c_str()) != pno::Ok) return false;
    const PnoImageInfo info = file->imageInfo();
    return std::string(info.identity, 14) == id;
}

} // namespace albumd
