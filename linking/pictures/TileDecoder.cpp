// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/pictures/TileDecoder.h"

#include "linking/pno/PnoFormat.h"

#include <QBuffer>
#include <QImageReader>
#include <turbojpeg.h>

#include <cstring>

namespace {

constexpr int kTile = static_cast<int>(pno::kTilePixels);
constexpr int kMaxSide = 16 * kTile; ///< of a tile that the toolkit is asked to decode, pixels

constexpr std::uint8_t kStartOfImage = 0xD8;
constexpr std::uint8_t kEndOfImage = 0xD9;
constexpr std::uint8_t kStartOfScan = 0xDA;
constexpr std::uint8_t kFirstRestart = 0xD0;
constexpr std::uint8_t kLastRestart = 0xD7;

// Position behind the header of the first scan; 0 when there is none.
std::uint32_t scanStart(const std::uint8_t* bytes, std::uint32_t size)
{
    if (size < 4 || bytes[0] != 0xFF || bytes[1] != kStartOfImage) return 0;
    std::uint32_t at = 2;
    while (size - at >= 4 && bytes[at] == 0xFF) {
        const std::uint32_t length = bytes[at + 2] * 256u + bytes[at + 3];
        if (length < 2 || size - at - 2 < length) return 0;
        const bool scan = bytes[at + 1] == kStartOfScan;
        at += 2 + length;
        if (scan) return at;
    }
    return 0;
}

// Whether one single scan runs to the last bytes of the file. Once such a scan's rows flow, nothing can fail
// any more: faults in it are patched over, whereas a marker behind it may stop the decoder with the square
// half drawn.
bool isOneWholeScan(const std::uint8_t* bytes, std::uint32_t size)
{
    const std::uint32_t start = scanStart(bytes, size);
    if (start == 0 || size - start < 2) return false;
    const std::uint8_t* at = bytes + start;
    const std::uint8_t* const end = bytes + size - 2;
    if (end[0] != 0xFF || end[1] != kEndOfImage) return false;
    while (
        (at = static_cast<const std::uint8_t*>(std::memchr(at, 0xFF, static_cast<std::size_t>(end - at))))) {
        const bool restart = at[1] >= kFirstRestart && at[1] <= kLastRestart;
        if (at[1] != 0 && !restart) return false;
        at += 2;
        if (at >= end) break;
    }
    return true;
}

} // namespace

struct TileDecoder::Handle
{
    tjhandle decompressor = tjInitDecompress();
    ~Handle()
    {
        if (decompressor) tjDestroy(decompressor);
    }
};

TileDecoder::TileDecoder()
    : m_handle(std::make_unique<Handle>())
{}

TileDecoder::~TileDecoder() = default;

bool TileDecoder::decodePlainJpeg(const std::uint8_t* bytes, std::uint32_t size, std::uint8_t* square,
                                  int stride)
{
    tjhandle handle = m_handle->decompressor;
    if (!handle || !isOneWholeScan(bytes, size)) return false;
    int width = 0;
    int height = 0;
    int sampling = 0;
    int colours = 0;
    if (tjDecompressHeader3(handle, bytes, size, &width, &height, &sampling, &colours) != 0) return false;
    if (width != kTile || height != kTile || colours == TJCS_CMYK || colours == TJCS_YCCK) return false;
    // The decoder's default accuracy is also the toolkit's, so that both ways give the same pixels.
    if (tjDecompress2(handle, bytes, size, square, kTile, stride, kTile, TJPF_RGB, 0) == 0) return true;
    return tjGetErrorCode(handle) == TJERR_WARNING;
}

QImage TileDecoder::decode(const std::uint8_t* bytes, std::uint32_t size)
{
    QByteArray view = QByteArray::fromRawData(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
    QBuffer buffer(&view);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    // A few bytes may claim a picture of many gigabytes.
    const QSize claimed = reader.size();
    if (claimed.width() > kMaxSide || claimed.height() > kMaxSide) return {};
    return reader.read();
}
