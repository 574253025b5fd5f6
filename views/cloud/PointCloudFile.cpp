// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/cloud/PointCloudFile.h"

#include "views/cloud/PointThinning.h"

#include <QFile>
#include <QSaveFile>

namespace cloud {
namespace {

bool readAll(QFile& file, std::uint8_t* to, std::uint64_t bytes)
{
    // In pieces: what a system reads in one call is limited to 2 GiB.
    constexpr std::uint64_t kPiece = std::uint64_t(64) << 20;
    while (bytes > 0) {
        const qint64 read = file.read(reinterpret_cast<char*>(to), qint64(std::min(bytes, kPiece)));
        if (read <= 0) return false;
        to += read;
        bytes -= std::uint64_t(read);
    }
    return true;
}

bool writeAll(QIODevice& file, const std::uint8_t* from, std::uint64_t bytes)
{
    return file.write(reinterpret_cast<const char*>(from), qint64(bytes)) == qint64(bytes);
}

ReadStatus check(const Header& header, qint64 fileBytes)
{
    if (std::uint64_t(fileBytes) != kHeaderBytes + std::uint64_t(header.dataBytes()) ||
        header.dataBytes() != kPlanes * std::uint64_t(header.points()))
        return ReadStatus::SizesDiffer;
    if (header.baseResolution() == 0 || header.refinement() == 0 || header.refinementZ() == 0)
        return ReadStatus::NoResolution;
    if (!gridCells(header)) return ReadStatus::GridTooLarge;
    return ReadStatus::Ok;
}

} // namespace

ReadStatus readPointCloud(const QString& path, PointCloud* cloud)
{
    QFile file(path);
    // Unbuffered: the planes go straight to their place.
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) return ReadStatus::CannotOpen;
    Header header;
    if (!readAll(file, header.bytes.data(), kHeaderBytes)) return ReadStatus::HeaderCutShort;
    if (const ReadStatus status = check(header, file.size()); status != ReadStatus::Ok) return status;

    PointCloud read;
    if (!read.allocate(header)) return ReadStatus::MemoryDoesNotSuffice;
    if (!readAll(file, read.data(), read.dataBytes())) return ReadStatus::DataCutShort;
    *cloud = std::move(read);
    return ReadStatus::Ok;
}

bool writePointCloud(const QString& path, const PointCloud& cloud)
{
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    // Flushed by hand: what is still buffered when a QSaveFile commits may fail unseen.
    return file.open(QIODevice::WriteOnly) && writeAll(file, cloud.header().bytes.data(), kHeaderBytes) &&
           writeAll(file, cloud.data(), cloud.dataBytes()) && file.flush() && file.commit();
}

} // namespace cloud
