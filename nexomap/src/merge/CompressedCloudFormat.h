// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The head of a compressed cloud file, for its writer and its reader.

#pragma once

#include "nexomap/src/merge/CloudFile.h"

#include <zlib.h>

namespace nexomap {

// Persisted: never renumber.
constexpr char kCompressedMagic[] = "NXC1";
constexpr std::uint32_t kCompressedVersion = 2;
constexpr std::size_t kCompressedHeadBytes = 4 + 4 + kCloudHeaderBytes + 4; // magic, version, header, CRC-32

inline std::uint32_t compressedChecksum(const std::uint8_t* data, std::size_t size)
{
    return std::uint32_t(crc32(crc32(0, nullptr, 0), data, uInt(size)));
}

} // namespace nexomap
