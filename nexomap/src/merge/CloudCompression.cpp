// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/CloudCompression.h"

#include "nexomap/src/Failure.h"
#include "nexomap/src/files/ByteStream.h"
#include "nexomap/src/files/WorkingFolder.h"
#include "nexomap/src/merge/CloudFile.h"

#include <zlib.h>
#include <zstd.h>

#include <algorithm>
#include <memory>

namespace nexomap {
namespace {

// Persisted: never renumber.
constexpr char kMagic[] = "NXC1";
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kSealBytes =
    4 + 4 + 8 + 8 + 4;    // magic, version, plain and packed length, CRC-32 of plain
constexpr int kLevel = 1; // higher levels gain 2 % and take ten times as long

std::uint32_t checksum(const Bytes& bytes)
{
    uLong sum = crc32(0, nullptr, 0);
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t step = std::min<std::size_t>(bytes.size() - at, 1u << 30);
        sum = crc32(sum, bytes.data() + at, uInt(step));
        at += step;
    }
    return std::uint32_t(sum);
}

/// Coordinates as zig-zag differences from point to point, colours as differences from green; planes as
/// before. Arithmetic wraps, so that any bytes come back.
Bytes differences(const Bytes& cloud, std::size_t n)
{
    Bytes out(cloud.begin(), cloud.begin() + kCloudHeaderBytes);
    out.resize(cloud.size());
    const std::uint8_t* in = cloud.data() + kCloudHeaderBytes;
    std::uint8_t* to = out.data() + kCloudHeaderBytes;
    for (int axis = 0; axis < 3; ++axis, in += 2 * n, to += 2 * n) {
        std::uint16_t before = 0;
        for (std::size_t i = 0; i < n; ++i) {
            const std::uint16_t value = std::uint16_t(in[i] | in[n + i] << 8);
            const std::uint16_t step = std::uint16_t(value - before);
            const std::uint16_t code = std::uint16_t((step << 1) ^ (step & 0x8000 ? 0xFFFF : 0));
            to[i] = std::uint8_t(code);
            to[n + i] = std::uint8_t(code >> 8);
            before = value;
        }
    }
    const std::uint8_t *blue = in, *green = in + n, *red = in + 2 * n;
    for (std::size_t i = 0; i < n; ++i) {
        to[i] = std::uint8_t(blue[i] - green[i]);
        to[n + i] = std::uint8_t(green[i] - (i ? green[i - 1] : 0));
        to[2 * n + i] = std::uint8_t(red[i] - green[i]);
    }
    return out;
}

Bytes sums(const Bytes& coded, std::size_t n)
{
    Bytes out(coded.begin(), coded.begin() + kCloudHeaderBytes);
    out.resize(coded.size());
    const std::uint8_t* in = coded.data() + kCloudHeaderBytes;
    std::uint8_t* to = out.data() + kCloudHeaderBytes;
    for (int axis = 0; axis < 3; ++axis, in += 2 * n, to += 2 * n) {
        std::uint16_t value = 0;
        for (std::size_t i = 0; i < n; ++i) {
            const std::uint16_t code = std::uint16_t(in[i] | in[n + i] << 8);
            value = std::uint16_t(value + std::uint16_t((code >> 1) ^ (code & 1 ? 0xFFFF : 0)));
            to[i] = std::uint8_t(value);
            to[n + i] = std::uint8_t(value >> 8);
        }
    }
    for (std::size_t i = 0; i < n; ++i) {
        to[n + i] = std::uint8_t(in[n + i] + (i ? to[n + i - 1] : 0));
        to[i] = std::uint8_t(in[i] + to[n + i]);
        to[2 * n + i] = std::uint8_t(in[2 * n + i] + to[n + i]);
    }
    return out;
}

/// Unpacks as much as there is, at most `most` bytes: memory grows with what comes out, not with what a
/// header promises.
Bytes unpack(const std::uint8_t* data, std::size_t size, std::uint64_t most)
{
    const std::unique_ptr<ZSTD_DStream, decltype(&ZSTD_freeDStream)> stream(ZSTD_createDStream(),
                                                                            ZSTD_freeDStream);
    if (!stream) throw std::bad_alloc();
    Bytes out;
    Bytes chunk(ZSTD_DStreamOutSize());
    ZSTD_inBuffer in{data, size, 0};
    for (std::size_t left = 1; left != 0;) {
        ZSTD_outBuffer piece{chunk.data(), chunk.size(), 0};
        left = ZSTD_decompressStream(stream.get(), &piece, &in);
        if (ZSTD_isError(left)) throw Failure(NEXOMAP_BAD_FILE, "compressed cloud: damaged");
        out.insert(out.end(), chunk.begin(), chunk.begin() + std::ptrdiff_t(piece.pos));
        if (out.size() > most || (in.pos == in.size && piece.pos == 0 && left != 0))
            throw Failure(NEXOMAP_BAD_FILE, "compressed cloud: of another length than it says");
    }
    return out;
}

std::string otherEnding(const std::string& path, const std::string& from, const std::string& to)
{
    if (path.size() <= from.size() || path.compare(path.size() - from.size(), from.size(), from) != 0)
        throw Failure(NEXOMAP_BAD_ARGUMENT, path + ": does not end in " + from);
    return path.substr(0, path.size() - from.size()) + to;
}

std::size_t pointsOf(const Bytes& cloud)
{
    std::optional<std::uint32_t> points;
    if (cloud.size() >= kCloudHeaderBytes) points = cloudPoints(cloud.data(), cloud.size());
    if (!points) throw Failure(NEXOMAP_BAD_FILE, "not a point cloud");
    return *points;
}

} // namespace

PendingFile compressCloud(const std::filesystem::path& path, const std::filesystem::path& target)
{
    const Bytes cloud = readFile(path);
    const Bytes coded = differences(cloud, pointsOf(cloud));
    Bytes packed(ZSTD_compressBound(coded.size()));
    const std::size_t size = ZSTD_compress(packed.data(), packed.size(), coded.data(), coded.size(), kLevel);
    if (ZSTD_isError(size)) throw Failure(NEXOMAP_INTERNAL, ZSTD_getErrorName(size));
    packed.resize(size);
    ByteWriter out;
    out.putText(kMagic, 4);
    out.put(kVersion);
    out.put(std::uint64_t(cloud.size()));
    out.put(std::uint64_t(packed.size()));
    out.put(checksum(cloud));
    out.bytes.insert(out.bytes.end(), packed.begin(), packed.end());
    PendingFile file(target);
    file.write(out.bytes.data(), out.bytes.size());
    file.close();
    return file;
}

void compressCloudFile(const std::string& path)
{
    compressCloud(path, otherEnding(path, ".tmp", ".cld")).finish();
}

void decompressCloudFile(const std::string& path)
{
    const std::string target = otherEnding(path, ".cld", ".tmp");
    const Bytes bytes = readFile(path);
    ByteReader in(bytes.data(), bytes.size());
    if (bytes.size() < kSealBytes || in.getText(4) != kMagic || in.get<std::uint32_t>() != kVersion)
        throw Failure(NEXOMAP_BAD_FILE, "not a compressed point cloud");
    const std::uint64_t plain = in.get<std::uint64_t>();
    if (in.get<std::uint64_t>() != bytes.size() - kSealBytes)
        throw Failure(NEXOMAP_BAD_FILE, "compressed cloud: cut short");
    const std::uint32_t sum = in.get<std::uint32_t>();
    const Bytes coded = unpack(bytes.data() + kSealBytes, bytes.size() - kSealBytes, plain);
    if (coded.size() != plain)
        throw Failure(NEXOMAP_BAD_FILE, "compressed cloud: of another length than it says");
    const Bytes cloud = sums(coded, pointsOf(coded));
    if (checksum(cloud) != sum) throw Failure(NEXOMAP_BAD_FILE, "compressed cloud: damaged");
    writeFile(target, cloud);
}

} // namespace nexomap
