// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/Commands.h"

#include "companions/pnotool/Arguments.h"
#include "companions/pnotool/input/Exif.h"
#include "companions/pnotool/MakePanorama.h"
#include "companions/pnotool/Terminal.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>

namespace pnotool {
namespace {

namespace fs = std::filesystem;

/// Reads the options that every job of a command shares; sets `problem` of the arguments.
MakeJob jobFrom(Arguments& arguments)
{
    MakeJob job;
    pnomaker::MakeOptions& options = job.options;
    job.out = arguments.text("out");
    job.range = arguments.text("range");
    job.points = arguments.text("points");
    job.rangeUnit_m = arguments.real("range-unit", job.rangeUnit_m);
    job.showProgress = errorsGoToTerminal();
    options.id = arguments.text("id");
    options.name = arguments.text("name");
    options.level = arguments.integer("level", 0);
    if (arguments.has("level") && options.level == 0)
        options.level = -1; // 0 stands for the level that fits, only when nothing is asked for
    options.quality = arguments.integer("quality", options.quality);
    job.polarGiven = arguments.has("polar");
    arguments.pair("polar", options.polar_min, options.polar_max);
    double x = 0, y = 0;
    if (arguments.pair("plan", x, y)) {
        if (std::fabs(x) > 1e9 || std::fabs(y) > 1e9 || x != std::floor(x) || y != std::floor(y))
            arguments.problem = "--plan wants two whole numbers of pixels";
        else {
            options.plan_x = static_cast<int>(x);
            options.plan_y = static_cast<int>(y);
        }
    }
    job.timeGiven = arguments.has("time");
    if (job.timeGiven) {
        if (const auto moment = momentFromIso8601(arguments.text("time"))) {
            options.year = moment->year;
            options.month = moment->month;
            options.day = moment->day;
            options.hour = moment->hour;
            options.minute = moment->minute;
            options.second = moment->second;
            options.millisecond = moment->millisecond;
        } else {
            arguments.problem = "--time wants a date from 1970 to 2100 like 2024-05-31T14:30:00, not \"" +
                                arguments.text("time") + "\"";
        }
    }
    return job;
}

bool looksLikePicture(const fs::path& path)
{
    std::string ending = path.extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    static const std::set<std::string> kEndings = {".jpg", ".jpeg", ".jpe", ".png", ".tif", ".tiff"};
    return kEndings.count(ending) != 0;
}

/// Every picture of a folder; one that fails is named, and the others go on.
int makeFolder(const MakeJob& common, const std::string& folder)
{
    std::error_code problem;
    std::vector<std::string> pictures;
    for (fs::directory_iterator entry(folder, problem), end; !problem && entry != end;
         entry.increment(problem))
        if (entry->is_regular_file(problem) && looksLikePicture(entry->path()))
            pictures.push_back(entry->path().string());
    if (problem) return failed(folder + ": " + problem.message());
    if (pictures.empty()) return failed(folder + ": there are no JPEG, PNG or TIFF pictures in this folder");
    std::sort(pictures.begin(), pictures.end());
    fs::create_directories(common.out, problem);
    if (problem) return failed(common.out + ": " + problem.message());

    int status = kDone;
    std::map<std::string, std::string> pictureOfName, pictureOfId;
    for (const std::string& picture : pictures) {
        MakeJob job = common;
        job.picture = picture;
        job.out = (fs::path(common.out) / (baseName(picture) + ".pno")).string();
        const auto [earlier, isNew] = pictureOfName.emplace(job.out, picture);
        if (!isNew) {
            status = failed(picture + ": " + job.out + " is already made from " + earlier->second);
            continue;
        }
        const MakeResult result = makePanorama(job);
        if (!result.error.empty()) {
            status = failed(result.error);
            continue;
        }
        std::printf("%s\n", result.summary.c_str());
        std::fflush(stdout);
        const auto [same, isFirst] = pictureOfId.emplace(result.id, picture);
        if (!isFirst)
            std::fprintf(stderr, "pnotool: %s: the same picture as %s, so both panoramas have one id\n",
                         picture.c_str(), same->second.c_str());
    }
    return status;
}

} // namespace

int makeCommand(const Words& words)
{
    Arguments arguments = parseArguments(
        words,
        {"out", "id", "name", "level", "quality", "polar", "range", "range-unit", "points", "plan", "time"},
        {});
    MakeJob job = jobFrom(arguments);
    if (arguments.problem.empty() && arguments.places.size() != 1)
        arguments.problem = "make wants one picture or folder";
    if (arguments.problem.empty() && job.out.empty()) arguments.problem = "make wants --out";
    if (arguments.problem.empty() && !job.points.empty() && job.range.empty())
        arguments.problem = "--points wants --range as well: a panorama file has both or neither";
    if (!arguments.problem.empty()) return wrongUsage(arguments.problem);

    std::error_code ignored;
    if (fs::is_directory(arguments.places[0], ignored)) {
        for (const char* name : {"id", "name", "range", "points"})
            if (arguments.has(name))
                return wrongUsage(std::string("--") + name + " is for one picture, not for a folder");
        return makeFolder(job, arguments.places[0]);
    }
    job.picture = arguments.places[0];
    const MakeResult result = makePanorama(job);
    if (!result.error.empty()) return failed(result.error);
    std::printf("%s\n", result.summary.c_str());
    return kDone;
}

} // namespace pnotool
