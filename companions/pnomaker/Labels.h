// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>

/// The two texts by which a panorama file is known.
namespace pnomaker {

/// Fourteen letters A-Z whose identity number is `number` itself.
std::string idFromNumber(std::uint64_t number);

/// Exactly fourteen letters A-Z a-z.
bool isId(const std::string& text);

/// Makes a text fit the name field: control characters become "_", at most 31 bytes, cut between UTF-8
/// characters; at least 4, padded with "_".
std::string fittedName(const std::string& text);

} // namespace pnomaker
