// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/PendingFile.h"

#include <string>

namespace nexomap {

/// "X.tmp" (a point cloud of a 56-byte header and nine byte planes) to "X.cld": differences of neighbouring
/// points in byte planes, packed by Zstandard, with a checked header. Lossless to the byte for any file.
/// @param cloud  the file to compress, under whatever name
/// @return the compressed file, not yet under its name
/// @throws Failure
[[nodiscard]] PendingFile compressCloud(const std::filesystem::path& cloud,
                                        const std::filesystem::path& target);

/// The same by the rule of the names.
/// @param path  local 8-bit encoding, ending in ".tmp" (compress) or ".cld" (decompress)
/// @throws Failure
void compressCloudFile(const std::string& path);
void decompressCloudFile(const std::string& path);

} // namespace nexomap
