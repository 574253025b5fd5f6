// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/pictures/Thumbnail.h"

#include "linking/pictures/TileDecoder.h"
#include "linking/pno/PnoFile.h"

QImage panoramaThumbnail(PnoFile& file)
{
    constexpr int kTop = 16;
    constexpr int kWidth = 256;
    constexpr int kHeight = 96;
    std::uint32_t size = 0;
    const PnoBytes bytes = file.ReadTile(0, 0, 0, &size);
    if (!bytes) return {};
    const QImage tile = TileDecoder::decode(bytes.get(), size);
    return tile.isNull() ? tile : tile.copy(0, kTop, kWidth, kHeight);
}
