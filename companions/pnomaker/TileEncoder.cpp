// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnomaker/TileEncoder.h"

#include "linking/pno/PnoFormat.h"

#include <turbojpeg.h>

namespace pnomaker {
namespace {

constexpr int kSize = static_cast<int>(pno::kTilePixels);

} // namespace

TileEncoder::TileEncoder()
    : m_handle(tjInitCompress())
    , m_buffer(tjBufSize(kSize, kSize, TJSAMP_444))
{}

TileEncoder::~TileEncoder()
{
    if (m_handle) tjDestroy(m_handle);
}

std::size_t TileEncoder::encode(const std::uint8_t* rgb, std::size_t pitch, int quality,
                                std::vector<std::uint8_t>& out)
{
    if (!m_handle) return 0;
    unsigned char* target = m_buffer.data();
    unsigned long size = static_cast<unsigned long>(m_buffer.size());
    const int subsampling = quality < 95 ? TJSAMP_420 : TJSAMP_444;
    if (tjCompress2(m_handle, rgb, kSize, static_cast<int>(pitch), kSize, TJPF_RGB, &target, &size,
                    subsampling, quality, TJFLAG_NOREALLOC) != 0)
        return 0;
    out.insert(out.end(), target, target + size);
    return size;
}

} // namespace pnomaker
