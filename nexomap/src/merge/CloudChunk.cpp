// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/CloudChunk.h"

#include "nexomap/src/Failure.h"
#include "nexomap/src/merge/OctreeCode.h"

// For ZSTD_c_literalCompressionMode.
#define ZSTD_STATIC_LINKING_ONLY
#include <zstd.h>

#include <algorithm>
#include <new>

namespace nexomap {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Persisted: never renumber.
constexpr std::uint8_t kDifferences = 0, kOctree = 1;
constexpr std::size_t kTrailerBytes = 5; // the number of trees, then which of the two
constexpr std::size_t kColours = 3, kCoordinates = 6;
// Hardly anything repeats in differences: looking for repetitions takes as long as all the rest and gains 5
// per cent. What counts is the coding of single bytes. So the packer leaps over whole blocks, and is told to
// code them all the same.
constexpr int kLevel = 1, kHashLog = 6, kLeap = ZSTD_BLOCKSIZE_MAX;

/// Two zero bits between the bits of a byte, and back by four bits of each coordinate at once.
struct MortonTables
{
    std::array<std::uint32_t, 256> spread{};
    std::array<std::uint32_t, 4096> gathered{}; ///< bits 0 to 3 of x, y, z in bytes 0, 1, 2
    MortonTables()
    {
        for (std::uint32_t n = 0; n < 256; ++n)
            for (std::uint32_t bit = 0; bit < 8; ++bit)
                spread[n] |= (n >> bit & 1) << (3 * bit);
        for (std::uint32_t n = 0; n < 4096; ++n)
            for (std::uint32_t bit = 0; bit < 12; ++bit)
                gathered[n] |= (n >> bit & 1) << (8 * (bit % 3) + bit / 3);
    }
};

const MortonTables& morton()
{
    static const MortonTables tables;
    return tables;
}

void addKeys(const CloudChunk& chunk, OctreeCoder& octree)
{
    constexpr std::size_t kAtOnce = 512;
    const MortonTables& t = morton();
    const std::uint8_t *xl = chunk.plane(0), *xh = chunk.plane(1), *yl = chunk.plane(2), *yh = chunk.plane(3),
                       *zl = chunk.plane(4), *zh = chunk.plane(5);
    std::array<std::uint64_t, kAtOnce> keys;
    for (std::size_t from = 0; from < chunk.points; from += kAtOnce) {
        const std::size_t to = std::min(chunk.points, from + kAtOnce);
        for (std::size_t i = from; i < to; ++i) {
            const std::uint32_t low = t.spread[xl[i]] | t.spread[yl[i]] << 1 | t.spread[zl[i]] << 2;
            const std::uint32_t high = t.spread[xh[i]] | t.spread[yh[i]] << 1 | t.spread[zh[i]] << 2;
            keys[i - from] = low | std::uint64_t(high) << 24;
        }
        octree.add(keys.data(), to - from);
    }
}

void putKeys(const std::vector<std::uint64_t>& keys, CloudChunk& chunk)
{
    const MortonTables& t = morton();
    std::array<std::uint8_t*, kCoordinates> to;
    for (std::size_t k = 0; k < kCoordinates; ++k)
        to[k] = chunk.plane(k);
    for (std::size_t i = 0; i < chunk.points; ++i) {
        const std::uint64_t key = keys[i];
        const std::uint32_t low = t.gathered[key & 4095] | t.gathered[key >> 12 & 4095] << 4;
        const std::uint32_t high = t.gathered[key >> 24 & 4095] | t.gathered[key >> 36 & 4095] << 4;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            to[2 * axis][i] = std::uint8_t(low >> (8 * axis));
            to[2 * axis + 1][i] = std::uint8_t(high >> (8 * axis));
        }
    }
}

/// Planes blue, green, red as differences of green and of what the others are more than green.
void encodeColours(const CloudChunk& chunk, std::uint8_t* to)
{
    const std::size_t n = chunk.points;
    const std::uint8_t *blue = chunk.plane(6), *green = chunk.plane(7), *red = chunk.plane(8);
    if (n == 0) return;
    std::uint8_t *more_blue = to, *step = to + n, *more_red = to + 2 * n;
    more_blue[0] = std::uint8_t(blue[0] - green[0]);
    step[0] = green[0];
    more_red[0] = std::uint8_t(red[0] - green[0]);
    // One loop each, so that compilers do many points at once.
    for (std::size_t i = 1; i < n; ++i)
        more_blue[i] = std::uint8_t(blue[i] - green[i] - blue[i - 1] + green[i - 1]);
    for (std::size_t i = 1; i < n; ++i)
        step[i] = std::uint8_t(green[i] - green[i - 1]);
    for (std::size_t i = 1; i < n; ++i)
        more_red[i] = std::uint8_t(red[i] - green[i] - red[i - 1] + green[i - 1]);
}

void decodeColours(const std::uint8_t* from, CloudChunk& chunk)
{
    const std::size_t n = chunk.points;
    std::uint8_t *blue = chunk.plane(6), *green = chunk.plane(7), *red = chunk.plane(8);
    unsigned b = 0, g = 0, r = 0;
    for (std::size_t i = 0; i < n; ++i) {
        b += from[i];
        g += from[n + i];
        r += from[2 * n + i];
        blue[i] = std::uint8_t(b + g);
        green[i] = std::uint8_t(g);
        red[i] = std::uint8_t(r + g);
    }
}

/// Coordinates as zig-zag differences from point to point. Arithmetic wraps, so that any bytes come back.
void encodeDifferences(const CloudChunk& chunk, std::uint8_t* to)
{
    const std::size_t n = chunk.points;
    for (std::size_t axis = 0; axis < 3; ++axis, to += 2 * n) {
        const std::uint8_t *low = chunk.plane(2 * axis), *high = chunk.plane(2 * axis + 1);
        std::uint16_t before = 0;
        for (std::size_t i = 0; i < n; ++i) {
            const auto value = std::uint16_t(low[i] | high[i] << 8);
            const auto step = std::uint16_t(value - before);
            const auto code = std::uint16_t((step << 1) ^ (step & 0x8000 ? 0xFFFF : 0));
            to[i] = std::uint8_t(code);
            to[n + i] = std::uint8_t(code >> 8);
            before = value;
        }
    }
}

void decodeDifferences(const std::uint8_t* from, CloudChunk& chunk)
{
    const std::size_t n = chunk.points;
    for (std::size_t axis = 0; axis < 3; ++axis, from += 2 * n) {
        std::uint8_t *low = chunk.plane(2 * axis), *high = chunk.plane(2 * axis + 1);
        std::uint16_t value = 0;
        for (std::size_t i = 0; i < n; ++i) {
            const auto code = std::uint16_t(from[i] | from[n + i] << 8);
            value = std::uint16_t(value + std::uint16_t((code >> 1) ^ (code & 1 ? 0xFFFF : 0)));
            low[i] = std::uint8_t(value);
            high[i] = std::uint8_t(value >> 8);
        }
    }
}

[[noreturn]] void refuse()
{
    throw Failure(NEXOMAP_BAD_FILE, "compressed cloud: damaged");
}

} // namespace

struct ChunkCoder::Workspace
{
    std::unique_ptr<ZSTD_CCtx, decltype(&ZSTD_freeCCtx)> packer{ZSTD_createCCtx(), ZSTD_freeCCtx};
    std::unique_ptr<ZSTD_DCtx, decltype(&ZSTD_freeDCtx)> unpacker{ZSTD_createDCtx(), ZSTD_freeDCtx};
    Bytes plain;
    OctreeCoder octree;
    OctreeCode code;
};

ChunkCoder::ChunkCoder()
    : m_work(std::make_unique<Workspace>())
{
    ZSTD_CCtx* const packer = m_work->packer.get();
    if (!packer || !m_work->unpacker) throw std::bad_alloc();
    ZSTD_CCtx_setParameter(packer, ZSTD_c_compressionLevel, kLevel);
    ZSTD_CCtx_setParameter(packer, ZSTD_c_strategy, ZSTD_fast);
    ZSTD_CCtx_setParameter(packer, ZSTD_c_hashLog, kHashLog);
    ZSTD_CCtx_setParameter(packer, ZSTD_c_checksumFlag, 1);
    // Without this setting leaping would leave the bytes as they are: then better slow than large.
    if (!ZSTD_isError(ZSTD_CCtx_setParameter(packer, ZSTD_c_literalCompressionMode, ZSTD_ps_enable)))
        ZSTD_CCtx_setParameter(packer, ZSTD_c_targetLength, kLeap);
}

ChunkCoder::~ChunkCoder() = default;

void ChunkCoder::encode(const CloudChunk& chunk, Bytes* packed)
{
    const std::size_t n = chunk.points;
    Bytes& plain = m_work->plain;
    OctreeCode& code = m_work->code;
    plain.resize((kColours + kCoordinates) * n + kTrailerBytes);
    encodeColours(chunk, plain.data());
    m_work->octree.begin(n);
    addKeys(chunk, m_work->octree);
    const bool as_octree = m_work->octree.finish(kCoordinates * n, &code);
    std::uint8_t* const coordinates = plain.data() + kColours * n;
    std::uint8_t* trailer = coordinates;
    if (as_octree) {
        trailer = std::copy(code.nodes.begin(), code.nodes.end(), coordinates);
    } else {
        encodeDifferences(chunk, coordinates);
        trailer += kCoordinates * n;
        code.trees = 0;
    }
    for (int shift = 0; shift < 32; shift += 8)
        *trailer++ = std::uint8_t(code.trees >> shift);
    *trailer++ = as_octree ? kOctree : kDifferences;

    const auto size = std::size_t(trailer - plain.data());
    packed->resize(ZSTD_compressBound(size));
    const std::size_t length =
        ZSTD_compress2(m_work->packer.get(), packed->data(), packed->size(), plain.data(), size);
    if (ZSTD_isError(length))
        throw std::bad_alloc(); // nothing else can go wrong with room for the worst case
    packed->resize(length);
}

void ChunkCoder::decode(const Bytes& packed, CloudChunk* chunk)
{
    const std::size_t points = chunk->points;
    // The longest that `encode` writes: no length is taken from the file.
    Bytes& plain = m_work->plain;
    plain.resize((kColours + kCoordinates) * points + kTrailerBytes);
    const std::size_t size =
        ZSTD_decompressDCtx(m_work->unpacker.get(), plain.data(), plain.size(), packed.data(), packed.size());
    if (ZSTD_isError(size) || size < kColours * points + kTrailerBytes) refuse();
    const std::uint8_t* const trailer = plain.data() + size - kTrailerBytes;
    std::uint32_t trees = 0;
    for (int k = 3; k >= 0; --k)
        trees = trees << 8 | trailer[k];
    const std::uint8_t* const coordinates = plain.data() + kColours * points;
    const auto bytes = std::size_t(trailer - coordinates);

    chunk->planes.resize(CloudChunk::kPlanes * points);
    decodeColours(plain.data(), *chunk);
    if (trailer[4] == kOctree) {
        if (!m_work->octree.decode(trees, coordinates, bytes, points)) refuse();
        putKeys(m_work->octree.keys(), *chunk);
    } else {
        if (trailer[4] != kDifferences || bytes != kCoordinates * points) refuse();
        decodeDifferences(coordinates, *chunk);
    }
}

} // namespace nexomap
