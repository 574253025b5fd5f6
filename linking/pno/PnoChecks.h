// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "linking/pno/PnoFormat.h"
#include "linking/pno/PnoPyramid.h"
#include "project/PnoImageInfo.h"

#include <cstdint>
#include <optional>

/// Validation of the blocks of a panorama file that was read from anywhere: nothing in them is trusted.
namespace pno {

bool validCaptureTime(const CaptureTime& time);

/// @return the pyramid that the block describes; nullopt when any rule is broken
std::optional<Pyramid> checkedPyramid(const PnoImageInfo& info);

/// The directory of the colour tiles: level by level, row by row, column by column.
/// @param records  pyramid.tiles entries
/// @return largest offset + size, which the data segment must hold; nullopt when an entry is out of place or
///         too large
std::optional<std::int32_t> checkedTileDirectory(const TileRecord* records, std::uint32_t topLevel,
                                                 const Pyramid& pyramid);

/// The same for the depth tiles: one grid of kDepthRows x kDepthColumns entries.
std::optional<std::int32_t> checkedDepthDirectory(const TileRecord* records);

} // namespace pno
