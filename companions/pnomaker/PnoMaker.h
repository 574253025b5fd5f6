// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "linking/pno/PnoFormat.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// Makes panorama files. No GUI toolkit, no exceptions towards the caller.
namespace pnomaker {

/// Rows of an equirectangular picture, from the top, read once. RGB, 3 bytes a pixel, no padding.
class RowSource
{
public:
    virtual ~RowSource() = default;
    virtual int width() const = 0;  ///< pixels
    virtual int height() const = 0; ///< pixels
    /// Reads the next `count` rows into `rgb` (count * width * 3 bytes). False when the source fails: see
    /// error().
    virtual bool readRows(std::uint8_t* rgb, int count) = 0;
    virtual std::string error() const { return {}; } ///< one line, for people
    /// Starts again at the first row; false when the source can be read only once.
    virtual bool rewind() { return false; }
};

/// A range picture of the full sphere: azimuth +pi at the left edge to -pi at the right, top row the upper
/// pole.
struct RangePicture
{
    int width = 0; ///< pixels, 2 * height
    int height = 0;
    std::vector<std::uint16_t> values; ///< row by row; value * unit_m = metres along the ray; 0 = none
    double unit_m = 0.001;             ///< metres per step, 1e-6 to 1
};

/// One point of the point block, panorama frame (x to azimuth 0, y to azimuth +pi/2, z up), metres.
struct CloudPoint
{
    float x, y, z;
    std::uint8_t red, green, blue;
};

struct MakeOptions
{
    std::string id;         ///< 14 letters A-Z a-z; empty: derived from the picture
    std::string name;       ///< UTF-8; shorter than 4 bytes: padded with "_", longer than 31: cut
    int level = 0;          ///< 10, 11 or 12; 0: the smallest that keeps the source's width
    int quality = 90;       ///< JPEG quality, 50 to 100; lowered by tens where the file would outgrow 256 MiB
                            ///< and the source can rewind
    double polar_min = 0.0; ///< what the picture's rows cover, radians from the upper pole
    double polar_max = pno::kPi;
    std::uint32_t year = 1970, month = 1, day = 1, hour = 0, minute = 0, second = 0, millisecond = 0;
    int plan_x = 0, plan_y = 0;
    const RangePicture* range = nullptr;             ///< not owned; nullptr: no lidar
    const std::vector<CloudPoint>* points = nullptr; ///< not owned; nullptr: thinned from the range picture
    std::function<void(double)> progress;            ///< called with 0 to 1 now and then; may be empty
    int threads = 0;                                 ///< 0: one per core; the file is the same for any number
};

/// Writes one panorama file: pyramid with sqrt(2) steps, 256-pixel JPEG tiles, lidar segments where a range
/// picture is given. Memory stays bounded by a few stripes of the source. The output appears under `path`
/// only when it is whole; an earlier file of that name stays until then.
/// @param path   local 8-bit encoding
/// @return empty on success, else one line that says what was refused and why
[[nodiscard]] std::string make(RowSource& source, const MakeOptions& options, const std::string& path);

} // namespace pnomaker
