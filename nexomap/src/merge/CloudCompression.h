// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/merge/PendingFile.h"

#include <string>

namespace nexomap {

/// A point cloud of a 56-byte header and nine byte planes, chunk by chunk. Lossless to the byte for any
/// points in any order; small for points in Morton order. Holds some chunks, never the cloud; the result does
/// not depend on how many threads work at it.
/// @param cloud  the file to compress, under whatever name
/// @param threads  0: compressionThreads()
/// @return the compressed file, not yet under its name
/// @throws Failure(NEXOMAP_BAD_FILE, NEXOMAP_CANNOT_WRITE)
[[nodiscard]] PendingFile compressCloud(const std::filesystem::path& cloud,
                                        const std::filesystem::path& target, unsigned threads = 0);
[[nodiscard]] PendingFile decompressCloud(const std::filesystem::path& compressed,
                                          const std::filesystem::path& target, unsigned threads = 0);
/// As many as the machine runs at once, at most 8: what they hold together stays small.
unsigned compressionThreads();

/// "X.tmp" to "X.cld" and back.
/// @param path  local 8-bit encoding, ending in ".tmp" (compress) or ".cld" (decompress)
/// @throws Failure
void compressCloudFile(const std::string& path, unsigned threads = 0);
void decompressCloudFile(const std::string& path, unsigned threads = 0);

} // namespace nexomap
