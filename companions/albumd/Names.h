// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Which names may reach a path or an address: fixed lengths, letters and digits. Everything else is refused.

#pragma once

#include <string>
#include <string_view>

namespace albumd {

/// 14 ASCII letters or digits.
bool isPanoramaId(std::string_view text);

/// 14 ASCII letters.
bool isAlbumId(std::string_view text);

/// One digit.
bool isLevel(std::string_view text);

/// A panorama's id, "-" or "_", eight letters or digits, ".jpg", ".png" or ".cld": 27 characters.
bool isPhotoName(std::string_view text);

/// The photo's name of a map that is a cloud.
bool isCloudName(std::string_view text);

/// An address that the upload dialog lets through.
bool isEmail(std::string_view text);

/// A password that the upload dialog lets through: seven characters, a digit and a letter among them.
bool isPassword(std::string_view text);

/// Well-formed UTF-8 without zero bytes.
bool isUtf8(std::string_view text);

/// ASCII letters made small, so that one mailbox is one account.
std::string lowered(std::string_view text);

} // namespace albumd
