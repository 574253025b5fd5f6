// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "linking/pno/PnoFile.h"

#include <memory>
#include <string>

namespace pnotool {

/// Opens a panorama file. On failure says on standard error which status it has, and returns null.
std::unique_ptr<PnoFile> openPanorama(const std::string& path);

/// What a status of `PnoFile::Open` means, for people.
const char* statusText(int status);

/// Writes an output whole or not at all; on failure says why on standard error.
/// @return exit status
int writeOutput(const std::string& path, const void* bytes, std::size_t size);

} // namespace pnotool
