// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/MakePanorama.h"

#include "companions/pnotool/ClearOnSignal.h"
#include "companions/pnotool/input/Cloud.h"
#include "companions/pnotool/input/Exif.h"
#include "companions/pnotool/input/PictureSource.h"
#include "companions/pnotool/input/RangeInput.h"
#include "companions/pnotool/input/SphereFacts.h"
#include "linking/pno/PnoFile.h"

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace pnotool {
namespace {

/// Takes the extent that the picture states. A statement that does not fit the picture's own shape is a
/// leftover of an edit and is not followed.
/// @return empty, or why such a picture cannot be taken
std::string applyFacts(const SphereFacts& facts, int width, int height, pnomaker::MakeOptions& options)
{
    if (!facts.projection.empty() && facts.projection != "equirectangular")
        return "the picture's projection is " + facts.projection + ", not equirectangular";
    if (!facts.crop) return {};
    const SphereCrop& crop = *facts.crop;
    const double stated = crop.width / crop.height;
    const double own = static_cast<double>(width) / height;
    if (!(crop.width > 0 && crop.height > 0 && crop.full_height > 0 && crop.top >= 0) ||
        std::fabs(stated - own) > 0.005 * own || crop.top + crop.height > crop.full_height * 1.001)
        return {};
    if (crop.width < 0.999 * crop.full_width)
        return "the picture covers only " + std::to_string(std::lround(360 * crop.width / crop.full_width)) +
               " of the horizon's 360 degrees";
    options.polar_min = crop.top / crop.full_height * pno::kPi;
    options.polar_max = std::min((crop.top + crop.height) / crop.full_height, 1.0) * pno::kPi;
    return {};
}

void applyMoment(const CaptureMoment& moment, pnomaker::MakeOptions& options)
{
    options.year = moment.year;
    options.month = moment.month;
    options.day = moment.day;
    options.hour = moment.hour;
    options.minute = moment.minute;
    options.second = moment.second;
    options.millisecond = moment.millisecond;
}

std::string summaryOf(const std::string& path, std::string& id)
{
    const auto file = std::make_unique<PnoFile>();
    const int status = file->Open(path.c_str());
    if (status != pno::Ok)
        return path + ": what was written is not accepted (status " + std::to_string(status) + ")";
    const PnoImageInfo info = file->imageInfo();
    id = info.identity;
    std::error_code ignored;
    char text[256];
    std::snprintf(text, sizeof(text), ": id %s, level %u, %d tiles, quality %u, %s, %.1f MiB", info.identity,
                  info.max_zoom_level, file->tileCount(), info.quality,
                  file->lidar() ? "with lidar" : "without lidar",
                  static_cast<double>(std::filesystem::file_size(path, ignored)) / 1048576);
    return path + text;
}

void showProgress(const std::string& name, double share)
{
    std::fprintf(stderr, "\r%s  %3d %%%s", name.c_str(), static_cast<int>(100 * share),
                 share >= 1 ? "\r\033[K" : "");
    std::fflush(stderr);
}

} // namespace

std::string baseName(const std::string& path)
{
    return std::filesystem::path(path).stem().string();
}

MakeResult makePanorama(MakeJob job)
{
    const auto refused = [](const std::string& path, const std::string& why) {
        return MakeResult{path + ": " + why, {}, {}};
    };
    std::error_code ignored;
    for (const std::string& input : {job.picture, job.range, job.points})
        if (!input.empty() && std::filesystem::equivalent(input, job.out, ignored))
            return refused(job.out, "the output would replace its own input");

    std::string error;
    const std::unique_ptr<PictureSource> picture = openPicture(job.picture, error);
    if (!picture) return refused(job.picture, error);
    if (!job.polarGiven) {
        error = applyFacts(sphereFacts(picture->xmp()), picture->width(), picture->height(), job.options);
        if (!error.empty()) return refused(job.picture, error);
    }
    if (!job.timeGiven) {
        if (const auto moment = momentFromExif(picture->exif()))
            applyMoment(*moment, job.options);
        else if (picture->moment())
            applyMoment(*picture->moment(), job.options);
    }
    if (job.options.name.empty()) job.options.name = baseName(job.picture);

    pnomaker::RangePicture range;
    std::vector<pnomaker::CloudPoint> points;
    if (!job.range.empty()) {
        error = readRangePicture(job.range, range);
        if (!error.empty()) return refused(job.range, error);
        range.unit_m = job.rangeUnit_m;
        job.options.range = &range;
    }
    if (!job.points.empty()) {
        error = readCloud(job.points, points);
        if (!error.empty()) return refused(job.points, error);
        job.options.points = &points;
    }
    if (job.showProgress) job.options.progress = [&job](double share) { showProgress(job.picture, share); };

    const ClearOnSignal clear(job.out);
    error = pnomaker::make(*picture, job.options, job.out);
    if (!error.empty()) {
        if (job.showProgress) showProgress(job.picture, 1);
        return error.compare(0, job.out.size(), job.out) == 0 ? MakeResult{error, {}, {}}
                                                              : refused(job.picture, error);
    }
    MakeResult result;
    result.summary = summaryOf(job.out, result.id);
    if (result.id.empty()) result.error = result.summary;
    return result;
}

} // namespace pnotool
