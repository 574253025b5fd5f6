// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The front end that reads panorama files.

#include "linking/pno/PnoFile.h"
#include "nexomap/src/FrontEnd.h"

namespace nexomap {
namespace {

std::optional<std::string> identify(const std::string& path, std::string* error)
{
    const auto file = std::make_unique<PnoFile>(); // large
    if (const std::int32_t status = file->Open(path.c_str()); status != pno::Ok) {
        *error = "not a panorama file (status " + std::to_string(status) + ")";
        return std::nullopt;
    }
    return std::string(file->imageInfo().identity);
}

} // namespace

FrontEnd panoramaFileFrontEnd()
{
    return {identify,
            [](const std::string& path, std::string* error) {
                return std::shared_ptr<const Panorama>(loadPanorama(path, error));
            },
            matchPair};
}

} // namespace nexomap
