// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnomaker/PnoMaker.h"

#include <memory>
#include <optional>
#include <string>

/// Picture files as rows, with what they say about the panorama that they show.
namespace pnotool {

/// What part of the full sphere a picture shows, as the GPano schema of XMP states it; pixels of the full
/// picture, which may be larger or smaller than the file's own.
struct SphereCrop
{
    double full_width = 0, full_height = 0;
    double width = 0, height = 0;
    double left = 0, top = 0;
};

struct CaptureMoment
{
    std::uint32_t year = 1970, month = 1, day = 1, hour = 0, minute = 0, second = 0, millisecond = 0;
};

class PictureSource : public pnomaker::RowSource
{
public:
    const std::string& xmp() const { return m_xmp; }   ///< the XMP packet; empty without one
    const std::string& exif() const { return m_exif; } ///< the EXIF block, from its TIFF header on; or empty
    const std::optional<CaptureMoment>& moment() const { return m_moment; } ///< where it is not in exif()
    std::string error() const override { return m_error; }

protected:
    bool fail(const std::string& error)
    {
        if (m_error.empty()) m_error = error;
        return false;
    }

    std::string m_xmp;
    std::string m_exif;
    std::optional<CaptureMoment> m_moment;
    std::string m_error;
};

/// Opens a JPEG, PNG or TIFF picture, told apart by its first bytes.
/// @param path   local 8-bit encoding
/// @param error  on failure one line without the path
/// @return null on failure
std::unique_ptr<PictureSource> openPicture(const std::string& path, std::string& error);

} // namespace pnotool
