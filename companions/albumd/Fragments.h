// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The pieces of a tour's description that come with an upload, read back into values.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace albumd {

/// Where a panorama stands. Units as in `PanoNode`: metres, radians, pixels of the plan.
struct Location
{
    double x = 0, y = 0, z = 0;
    double vertex_x = 0, vertex_y = 0;
    double direction = 0;
    std::int64_t plan_x = 0, plan_y = 0;
    std::string plan; ///< name of a stored picture, or empty
};

struct Hotspot
{
    bool isPhoto = false;
    double x = 0; ///< azimuth, radians
    double y = 0; ///< polar angle, radians
    std::string caption;
    std::string content; ///< text; of a photo hotspot the photo's name, or empty where that is no good name
};

/// A link's values as in `PanoLink`.
struct Link
{
    std::string pano_0, pano_1;
    double rot_0 = 0, rot_1 = 0, tilt_x0 = 0, tilt_x1 = 0, tilt_y0 = 0, icon_y0 = 0, icon_y1 = 0, spacing = 0;
    std::int64_t mode = 0;
};

constexpr std::size_t kMostHotspots = 4096; ///< per panorama

/// Each returns false, with the output untouched, for a text that is not the fragment in its one form: UTF-8,
/// every attribute in its order, numbers finite, nothing behind the end. Captions are sent without any
/// escaping, so that the text need not be XML: they are cut out by what must stand before and behind them.
[[nodiscard]] bool readLocation(std::string_view text, Location* location);
[[nodiscard]] bool readLink(std::string_view text, Link* link);

/// One line per hotspot; content may go over several lines. Empty: no hotspots.
[[nodiscard]] bool readHotspots(std::string_view text, std::vector<Hotspot>* hotspots);

} // namespace albumd
