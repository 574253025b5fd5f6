// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnomaker/PnoMaker.h"

#include <string>

namespace pnotest {

struct JpegForm
{
    int quality = 92;
    bool grey = false;
    bool progressive = false;
    bool adobeInks = false; ///< CMYK, inverted, as Adobe's programs write it
    std::string exif;       ///< from the TIFF header on; empty: none
    std::string xmp;        ///< a packet; empty: none
};

/// Writes a picture as JPEG, a few rows at a time.
/// @return false when the file cannot be written or the source fails
bool writeJpeg(const std::string& path, pnomaker::RowSource& picture, const JpegForm& form = {});

} // namespace pnotest
