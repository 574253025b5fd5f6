// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/CloudCompression.h"

#include "nexomap/src/Failure.h"
#include "nexomap/src/files/ByteStream.h"
#include "nexomap/src/merge/CloudChunk.h"
#include "nexomap/src/merge/CompressedCloud.h"
#include "nexomap/src/merge/CompressedCloudFormat.h"
#include "nexomap/src/merge/OrderedWork.h"

#include <algorithm>
#include <fstream>
#include <thread>

namespace nexomap {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

class Source
{
public:
    explicit Source(const fs::path& path)
        : m_path(path)
        , m_file(path, std::ios::binary | std::ios::ate)
        , m_size(m_file ? std::uint64_t(std::streamoff(m_file.tellg())) : 0)
    {
        if (!m_file) throw Failure(NEXOMAP_BAD_FILE, "cannot open " + path.string());
        m_file.seekg(0);
    }
    std::uint64_t size() const { return m_size; }
    void read(void* to, std::size_t bytes)
    {
        m_file.read(static_cast<char*>(to), std::streamsize(bytes));
        if (std::size_t(m_file.gcount()) != bytes)
            throw Failure(NEXOMAP_BAD_FILE, "cannot read " + m_path.string());
    }
    void readAt(std::uint64_t offset, void* to, std::size_t bytes)
    {
        m_file.seekg(std::streamoff(offset));
        read(to, bytes);
    }

private:
    fs::path m_path;
    std::ifstream m_file;
    std::uint64_t m_size;
};

std::size_t chunksOf(std::uint32_t points)
{
    return (points + CloudChunk::kMostPoints - 1) / CloudChunk::kMostPoints;
}

std::size_t pointsOfChunk(std::uint32_t points, std::size_t chunk)
{
    return std::min<std::size_t>(CloudChunk::kMostPoints, points - chunk * CloudChunk::kMostPoints);
}

std::size_t threadsFor(std::size_t chunks, unsigned wanted)
{
    const std::size_t threads = wanted ? wanted : compressionThreads();
    return std::max<std::size_t>(1, std::min(threads, chunks));
}

fs::path otherEnding(const std::string& path, const std::string& from, const std::string& to)
{
    if (path.size() <= from.size() || path.compare(path.size() - from.size(), from.size(), from) != 0)
        throw Failure(NEXOMAP_BAD_ARGUMENT, path + ": does not end in " + from);
    return path.substr(0, path.size() - from.size()) + to;
}

} // namespace

unsigned compressionThreads()
{
    return std::clamp(std::thread::hardware_concurrency(), 1u, 8u);
}

PendingFile compressCloud(const fs::path& cloud, const fs::path& target, unsigned threads)
{
    Source source(cloud);
    std::array<std::uint8_t, kCloudHeaderBytes> header;
    if (source.size() < header.size()) throw Failure(NEXOMAP_BAD_FILE, "not a point cloud");
    source.read(header.data(), header.size());
    const std::optional<std::uint32_t> points = cloudPoints(header.data(), source.size());
    if (!points) throw Failure(NEXOMAP_BAD_FILE, "not a point cloud");

    PendingFile file(target);
    ByteWriter head;
    head.putText(kCompressedMagic, 4);
    head.put(kCompressedVersion);
    head.bytes.insert(head.bytes.end(), header.begin(), header.end());
    head.put(compressedChecksum(head.bytes.data(), head.bytes.size()));
    file.write(head.bytes.data(), head.bytes.size());
    const std::size_t chunks = chunksOf(*points);
    const auto makeWorker = [&] {
        // Every worker reads for itself.
        return [&, planes = Source(cloud), chunk = CloudChunk(),
                coder = ChunkCoder()](std::size_t number, Bytes* packed) mutable {
            chunk.points = pointsOfChunk(*points, number);
            chunk.planes.resize(CloudChunk::kPlanes * chunk.points);
            for (std::size_t k = 0; k < CloudChunk::kPlanes; ++k)
                planes.readAt(kCloudHeaderBytes + std::uint64_t(k) * *points +
                                  number * CloudChunk::kMostPoints,
                              chunk.plane(k), chunk.points);
            coder.encode(chunk, packed);
        };
    };
    OrderedWork<Bytes>(chunks, threadsFor(chunks, threads))
        .run(makeWorker, [&](std::size_t, const Bytes& packed) {
            ByteWriter size;
            size.put(std::uint32_t(packed.size()));
            file.write(size.bytes.data(), size.bytes.size());
            file.write(packed.data(), packed.size());
        });
    file.close();
    return file;
}

PendingFile decompressCloud(const fs::path& compressed, const fs::path& target, unsigned threads)
{
    const CompressedCloud cloud(compressed);
    const std::uint64_t points = cloud.points();
    PendingFile file(target);
    file.write(cloud.header().data(), kCloudHeaderBytes);
    const auto makeWorker = [&] {
        return [reader = CompressedCloud::Reader(cloud)](std::size_t number, CloudChunk* chunk) mutable {
            reader.read(number, chunk);
        };
    };
    OrderedWork<CloudChunk>(cloud.chunks(), threadsFor(cloud.chunks(), threads))
        .run(makeWorker, [&](std::size_t number, const CloudChunk& chunk) {
            for (std::size_t k = 0; k < CloudChunk::kPlanes; ++k)
                file.writeAt(kCloudHeaderBytes + k * points + number * CloudChunk::kMostPoints,
                             chunk.plane(k), chunk.points);
        });
    file.close();
    return file;
}

void compressCloudFile(const std::string& path, unsigned threads)
{
    compressCloud(path, otherEnding(path, ".tmp", ".cld"), threads).finish();
}

void decompressCloudFile(const std::string& path, unsigned threads)
{
    decompressCloud(path, otherEnding(path, ".cld", ".tmp"), threads).finish();
}

} // namespace nexomap
