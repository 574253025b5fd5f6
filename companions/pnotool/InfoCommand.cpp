// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What a panorama file says of itself, as text or as JSON.
#include "companions/pnotool/Arguments.h"
#include "companions/pnotool/Commands.h"
#include "companions/pnotool/PanoramaInput.h"

#include <cstdio>
#include <nlohmann/json.hpp>

namespace pnotool {
namespace {

using Json = nlohmann::ordered_json;

std::string timeText(const pno::CaptureTime& time)
{
    char text[80];
    std::snprintf(text, sizeof(text), "%04u-%02u-%02uT%02u:%02u:%02u.%03u", time.year, time.month, time.day,
                  time.hour, time.minute, time.second, time.millisecond);
    return text;
}

Json jsonOf(const PnoFile& file)
{
    const PnoImageInfo info = file.imageInfo();
    const auto levels = [&](const std::uint32_t(&values)[16]) {
        return Json(std::vector<std::uint32_t>(values, values + info.max_zoom_level + 1));
    };
    const auto plan = file.pointValues();
    Json json;
    json["status"] = 0;
    json["id"] = info.identity;
    json["pano_id"] = std::to_string(file.panoId());
    json["name"] = info.name;
    json["time"] = timeText(file.captureTime());
    json["lidar"] = file.lidar();
    json["max_zoom_level"] = info.max_zoom_level;
    json["widths"] = levels(info.widths);
    json["heights"] = levels(info.heights);
    json["columns"] = levels(info.columns);
    json["rows"] = levels(info.rows);
    json["tiles"] = file.tileCount();
    json["plan"] = {static_cast<std::int32_t>(plan[0]), static_cast<std::int32_t>(plan[1])};
    return json;
}

void printText(const PnoFile& file)
{
    const PnoImageInfo info = file.imageInfo();
    std::printf("status   0\nid       %s (%llu)\nname     %s\ntime     %s\n", info.identity,
                static_cast<unsigned long long>(file.panoId()), info.name,
                timeText(file.captureTime()).c_str());
    std::printf("polar    %.4f to %.4f, covered %.4f to %.4f\nquality  %u\n", info.output_min_y,
                info.output_max_y, info.valid_min_y, info.valid_max_y, info.quality);
    const auto values = file.pointValues();
    if (file.lidar())
        std::printf("lidar    yes, %u points, plan %d,%d\n", values[2], static_cast<std::int32_t>(values[0]),
                    static_cast<std::int32_t>(values[1]));
    else
        std::printf("lidar    no\n");
    std::printf("tiles    %d\n", file.tileCount());
    for (std::uint32_t i = 0; i <= info.max_zoom_level; ++i)
        std::printf("level %2u %5u x %-5u in %2u x %-2u tiles\n", i, info.widths[i], info.heights[i],
                    info.columns[i], info.rows[i]);
}

} // namespace

int infoCommand(const Words& words)
{
    const Arguments arguments = parseArguments(words, {}, {"json"});
    if (!arguments.problem.empty()) return wrongUsage(arguments.problem);
    if (arguments.places.size() != 1) return wrongUsage("info wants one panorama file");
    const std::string& path = arguments.places[0];
    const auto file = std::make_unique<PnoFile>();
    const int status = file->Open(path.c_str());
    const bool json = arguments.has("json");
    if (status == pno::Ok && json)
        std::printf("%s\n", jsonOf(*file).dump(2, ' ', false, Json::error_handler_t::replace).c_str());
    else if (status == pno::Ok)
        printText(*file);
    else if (json)
        std::printf("{\n  \"status\": %d\n}\n", status);
    else
        std::printf("status   %d\n", status);
    return status == pno::Ok ? kDone : failed(path + ": " + statusText(status));
}

} // namespace pnotool
