// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A compressed cloud file, read chunk by chunk: never the whole cloud in memory.

#pragma once

#include "nexomap/src/merge/CloudChunk.h"
#include "nexomap/src/merge/CloudFile.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

namespace nexomap {

class CompressedCloud
{
public:
    /// Checks the head and where each chunk stands.
    /// @throws Failure(NEXOMAP_BAD_FILE)
    explicit CompressedCloud(const std::filesystem::path& path);

    /// The cloud's own header.
    const std::array<std::uint8_t, kCloudHeaderBytes>& header() const { return m_header; }
    std::uint32_t points() const { return m_points; }
    std::size_t chunks() const { return m_places.size(); }

    /// From any thread. A Reader is the quicker way to many.
    /// @param number  below `chunks()`; each holds CloudChunk::kMostPoints points, the last one the rest
    /// @throws Failure(NEXOMAP_BAD_FILE), std::bad_alloc
    CloudChunk chunk(std::size_t number) const;

    /// Reads one chunk after the other through one open file, in the same memory. One per thread.
    class Reader
    {
    public:
        /// @param cloud  must outlive this
        /// @throws Failure(NEXOMAP_BAD_FILE), std::bad_alloc
        explicit Reader(const CompressedCloud& cloud);
        /// As `CompressedCloud::chunk`.
        void read(std::size_t number, CloudChunk* chunk);

    private:
        const CompressedCloud* m_cloud;
        std::ifstream m_file;
        std::vector<std::uint8_t> m_packed;
        ChunkCoder m_coder;
    };

private:
    std::filesystem::path m_path;
    std::array<std::uint8_t, kCloudHeaderBytes> m_header{};
    std::uint32_t m_points = 0;
    std::vector<std::pair<std::uint64_t, std::uint32_t>> m_places; ///< offset and length of each chunk
};

} // namespace nexomap
