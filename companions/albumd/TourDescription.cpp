// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/TourDescription.h"

#include "companions/albumd/Names.h"

#include <nlohmann/json.hpp>

#include <set>

namespace albumd {
namespace {

using Json = nlohmann::json;

Json levelsOf(const PnoImageInfo& info)
{
    Json levels = Json::array();
    for (std::uint32_t level = 0; level <= info.max_zoom_level; ++level)
        levels.push_back({{"width", info.widths[level]},
                          {"height", info.heights[level]},
                          {"columns", info.columns[level]},
                          {"rows", info.rows[level]}});
    return levels;
}

Json hotspotsOf(const AlbumPanorama& panorama)
{
    Json all = Json::array();
    for (const Hotspot& hotspot : panorama.hotspots) {
        Json one = {{"x", hotspot.x}, {"y", hotspot.y}, {"caption", hotspot.caption}};
        one[hotspot.isPhoto ? "photo" : "text"] = hotspot.content;
        all.push_back(std::move(one));
    }
    return all;
}

Json locationOf(const Location& location, const Album& album, FileStore& files)
{
    Json one = {{"x", location.x}, {"y", location.y}, {"z", location.z}, {"direction", location.direction}};
    if (isCloudName(location.plan)) {
        one["cloud"] = location.plan;
    } else if (files.find(album.user, FileKind::Photo, location.plan)) {
        one["plan"] = location.plan;
        one["planX"] = location.plan_x;
        one["planY"] = location.plan_y;
    }
    return one;
}

/// Every cloud that a panorama stands on and that can be shown.
Json cloudsOf(const Album& album, FileStore& files, CloudViews& views)
{
    Json clouds = Json::object();
    std::set<std::string> tried;
    for (const AlbumPanorama& panorama : album.panoramas) {
        const std::string& name = panorama.location ? panorama.location->plan : std::string();
        if (!isCloudName(name) || !tried.insert(name).second) continue;
        const auto stored = files.find(album.user, FileKind::Photo, name);
        const auto view = stored ? views.describe(*stored) : std::nullopt;
        if (!view) continue;
        clouds[name] = Json::parse(*view, nullptr, false);
        clouds[name]["stored"] = stored->stored;
    }
    return clouds;
}

Json linkOf(const Link& link)
{
    return {{"pano0", link.pano_0},   {"pano1", link.pano_1},   {"rot0", link.rot_0}, {"rot1", link.rot_1},
            {"iconY0", link.icon_y0}, {"iconY1", link.icon_y1}, {"mode", link.mode}};
}

} // namespace

std::string describeTour(const Album& album, FileStore& files, PanoramaCache& panoramas, CloudViews& views)
{
    Json tour = {{"id", album.id},
                 {"name", album.name},
                 {"entry", album.entry},
                 {"direction", album.direction},
                 {"elevation", album.elevation},
                 {"viewAngle", album.view_angle},
                 {"clouds", cloudsOf(album, files, views)},
                 {"panoramas", Json::array()},
                 {"links", Json::array()}};
    std::set<std::string> shown;
    for (const AlbumPanorama& panorama : album.panoramas) {
        const auto stored = files.find(album.user, FileKind::Panorama, panorama.id);
        const auto file = stored ? panoramas.open(stored->path) : nullptr;
        if (!file) continue;
        const PnoImageInfo info = file->imageInfo();
        Json one = {{"id", panorama.id},
                    {"stored", stored->stored},
                    {"polarMin", info.output_min_y},
                    {"polarMax", info.output_max_y},
                    {"levels", levelsOf(info)},
                    {"hotspots", hotspotsOf(panorama)}};
        if (panorama.location) one["location"] = locationOf(*panorama.location, album, files);
        tour["panoramas"].push_back(std::move(one));
        shown.insert(panorama.id);
    }
    for (const Link& link : album.links)
        if (shown.count(link.pano_0) && shown.count(link.pano_1)) tour["links"].push_back(linkOf(link));
    return tour.dump();
}

} // namespace albumd
