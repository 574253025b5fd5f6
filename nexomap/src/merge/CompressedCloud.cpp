// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/CompressedCloud.h"

#include "nexomap/src/Failure.h"
#include "nexomap/src/files/ByteStream.h"
#include "nexomap/src/merge/CompressedCloudFormat.h"

#include <algorithm>

namespace nexomap {
namespace {

constexpr std::size_t kLeastChunkBytes = 4 + 1;

std::ifstream opened(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) throw Failure(NEXOMAP_BAD_FILE, "cannot open " + path.string());
    return file;
}

void readAt(std::ifstream& file, std::uint64_t offset, std::uint8_t* to, std::size_t bytes)
{
    file.seekg(std::streamoff(offset));
    file.read(reinterpret_cast<char*>(to), std::streamsize(bytes));
    if (std::size_t(file.gcount()) != bytes) throw Failure(NEXOMAP_BAD_FILE, "compressed cloud: cut short");
}

} // namespace

CompressedCloud::CompressedCloud(const std::filesystem::path& path)
    : m_path(path)
{
    std::ifstream file = opened(path);
    file.seekg(0, std::ios::end);
    const auto size = std::uint64_t(std::streamoff(file.tellg()));
    std::array<std::uint8_t, kCompressedHeadBytes> head;
    if (size < head.size()) throw Failure(NEXOMAP_BAD_FILE, "not a compressed point cloud");
    readAt(file, 0, head.data(), head.size());
    ByteReader in(head.data(), head.size());
    const bool ours = in.getText(4) == kCompressedMagic && in.get<std::uint32_t>() == kCompressedVersion;
    ByteReader seal(head.data() + head.size() - 4, 4);
    if (!ours || seal.get<std::uint32_t>() != compressedChecksum(head.data(), head.size() - 4))
        throw Failure(NEXOMAP_BAD_FILE, "not a compressed point cloud");
    std::copy_n(head.data() + 8, m_header.size(), m_header.data());
    ByteReader counts(m_header.data() + 48, 8);
    m_points = counts.get<std::uint32_t>();
    const auto bytes = counts.get<std::uint32_t>();
    const std::uint64_t chunks =
        (std::uint64_t(m_points) + CloudChunk::kMostPoints - 1) / CloudChunk::kMostPoints;
    std::uint64_t left = size - head.size();
    if (bytes != CloudChunk::kPlanes * std::uint64_t(m_points) || left < chunks * kLeastChunkBytes)
        throw Failure(NEXOMAP_BAD_FILE, "compressed cloud: cut short");

    std::uint64_t at = head.size();
    for (std::uint64_t k = 0; k < chunks; ++k) {
        std::array<std::uint8_t, 4> length;
        if (left < length.size()) throw Failure(NEXOMAP_BAD_FILE, "compressed cloud: cut short");
        readAt(file, at, length.data(), length.size());
        m_places.emplace_back(at + 4, ByteReader(length.data(), length.size()).get<std::uint32_t>());
        left -= 4;
        if (m_places.back().second > left) throw Failure(NEXOMAP_BAD_FILE, "compressed cloud: cut short");
        left -= m_places.back().second;
        at += 4 + std::uint64_t(m_places.back().second);
    }
    if (left != 0) throw Failure(NEXOMAP_BAD_FILE, "compressed cloud: longer than it says");
}

CloudChunk CompressedCloud::chunk(std::size_t number) const
{
    CloudChunk chunk;
    Reader(*this).read(number, &chunk);
    return chunk;
}

CompressedCloud::Reader::Reader(const CompressedCloud& cloud)
    : m_cloud(&cloud)
    , m_file(opened(cloud.m_path))
{}

void CompressedCloud::Reader::read(std::size_t number, CloudChunk* chunk)
{
    const auto& [offset, length] = m_cloud->m_places[number];
    m_packed.resize(length);
    readAt(m_file, offset, m_packed.data(), m_packed.size());
    chunk->points =
        std::min<std::size_t>(CloudChunk::kMostPoints, m_cloud->m_points - number * CloudChunk::kMostPoints);
    m_coder.decode(m_packed, chunk);
}

} // namespace nexomap
