// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnomaker/PnoMaker.h"

#include "companions/pnomaker/ContentHash.h"
#include "companions/pnomaker/Labels.h"
#include "companions/pnomaker/Lidar.h"
#include "companions/pnomaker/PnoWriter.h"
#include "companions/pnomaker/Pyramid.h"
#include "companions/pnomaker/PyramidBuilder.h"
#include "companions/pnomaker/RangePoints.h"
#include "companions/pnomaker/WorkerPool.h"
#include "project/PnoImageInfo.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>

namespace pnomaker {
namespace {

constexpr int kMinWidth = 256;    ///< the smallest level's
constexpr int kMaxWidth = 131072; ///< keeps a stripe of the source near 100 MB
constexpr int kColourLevel = 8;   ///< 4096 x 2048: enough to colour points
// How far the valid extent may depart from the full sphere; a reader refuses more.
constexpr double kValidMinLimit = 0.2 + 0.3;
constexpr double kValidMaxLimit = 2.8 - 0.3415;

std::string refusalOfPicture(const RowSource& source, const MakeOptions& options)
{
    const int width = source.width();
    const int height = source.height();
    const std::string size = "the picture is " + std::to_string(width) + " x " + std::to_string(height);
    if (width < kMinWidth || height < 1) return size + "; at least 256 pixels of width are needed";
    if (width > kMaxWidth) return size + "; at most 131072 pixels of width can be taken";
    const double min = options.polar_min, max = options.polar_max;
    if (!(min >= 0 && max <= pno::kPi + 1e-6 && min < max))
        return "the polar extent must be two angles between 0 and pi, the smaller first";
    const double expected = width * (max - min) / (2 * pno::kPi);
    if (std::fabs(height - expected) > 1 + 0.005 * expected) {
        if (min == 0 && max >= pno::kPi) return size + "; a full sphere is twice as wide as high";
        return size + "; at this width the given polar extent is " + std::to_string(std::lround(expected)) +
               " pixels high";
    }
    return {};
}

std::string refusalOfOptions(const MakeOptions& options)
{
    if (!options.id.empty() && !isId(options.id))
        return "the id \"" + options.id + "\" is not 14 letters A-Z or a-z";
    if (options.level != 0 && (options.level < 10 || options.level > 12))
        return "the level must be 10, 11 or 12";
    if (options.quality < 50 || options.quality > 100) return "the quality must be between 50 and 100";
    if (options.year < 1970 || options.year > 2100 || options.month < 1 || options.month > 12 ||
        options.day < 1 || options.day > 31 || options.hour > 23 || options.minute > 59 ||
        options.second > 59 || options.millisecond > 999)
        return "the capture time must be a date from 1970 to 2100";
    if (options.points && !options.range)
        return "points need a range picture: a panorama file has both or neither";
    return options.range ? refusalOfRange(*options.range) : std::string();
}

pno::CaptureTime captureTime(const MakeOptions& options)
{
    pno::CaptureTime time = {};
    time.year = options.year;
    time.month = options.month;
    time.day = options.day;
    time.hour = options.hour;
    time.minute = options.minute;
    time.second = options.second;
    time.millisecond = options.millisecond;
    return time;
}

PnoImageInfo imageInfo(const MakeOptions& options, const Pyramid& pyramid, const std::string& id, int quality)
{
    PnoImageInfo info = {};
    const std::string name = fittedName(options.name.empty() ? id : options.name);
    std::memcpy(info.name, name.data(), name.size());
    std::memcpy(info.identity, id.data(), id.size());
    info.format = 1;
    info.mosaic_pixel_size = pno::kTilePixels;
    info.max_zoom_level = static_cast<std::uint32_t>(pyramid.topLevel);
    for (int i = 0; i <= pyramid.topLevel; ++i) {
        const LevelSize& level = pyramid.levels[static_cast<std::size_t>(i)];
        info.widths[i] = static_cast<std::uint32_t>(level.width);
        info.heights[i] = static_cast<std::uint32_t>(level.height);
        info.columns[i] = static_cast<std::uint32_t>(level.columns);
        info.rows[i] = static_cast<std::uint32_t>(level.rows);
    }
    info.pixel_scale = pno::kTwoPiOfScale / (pno::kTilePixels * std::pow(2.0, pyramid.topLevel / 2.0));
    info.output_min_x = info.valid_min_x = -pno::kPi;
    info.output_max_x = info.valid_max_x = pno::kPi;
    info.output_min_y = 0;
    info.output_max_y = pno::kPi;
    info.valid_min_y = std::min(options.polar_min, kValidMinLimit);
    info.valid_max_y = std::clamp(options.polar_max, kValidMaxLimit, pno::kPi);
    info.quality = static_cast<std::uint32_t>(quality);
    return info;
}

/// One pass over the source at one quality.
/// @param outgrown  set when the file would be larger than the format allows
std::string makeOnce(RowSource& source, const MakeOptions& options, int quality, WorkerPool& pool,
                     const std::string& path, bool& outgrown)
{
    const Pyramid pyramid =
        fullSpherePyramid(options.level != 0 ? options.level : topLevelForWidth(source.width()));
    PnoWriter writer(path, pyramid);
    if (!writer.begin()) return writer.error();

    ContentHash hash;
    SpherePicture colours;
    const bool needsColours = options.range && !options.points;
    const PyramidJob job = {pyramid,
                            quality,
                            options.polar_min,
                            std::min(options.polar_max, pno::kPi),
                            options.id.empty() ? &hash : nullptr,
                            needsColours ? &colours.rgb : nullptr,
                            kColourLevel,
                            options.progress};
    std::string error = buildPyramid(source, job, pool, writer);
    if (error.empty() && options.range) {
        colours.width = pyramid.levels[kColourLevel].width;
        colours.height = pyramid.levels[kColourLevel].height;
        error = writeLidar(options, colours, pool, writer);
    }
    const std::string id = options.id.empty() ? idFromNumber(hash.value()) : options.id;
    if (error.empty() && !writer.finish(captureTime(options), imageInfo(options, pyramid, id, quality)))
        error = writer.error();
    outgrown = writer.outgrown();
    return error;
}

} // namespace

std::string make(RowSource& source, const MakeOptions& options, const std::string& path)
{
    try {
        for (const std::string& refusal : {refusalOfOptions(options), refusalOfPicture(source, options)})
            if (!refusal.empty()) return refusal;
        WorkerPool pool(options.threads);
        std::string error;
        bool outgrown = true;
        for (int quality = options.quality; outgrown; quality = std::max(50, quality - 10)) {
            error = makeOnce(source, options, quality, pool, path, outgrown);
            if (outgrown && (quality == 50 || !source.rewind())) break;
        }
        return error;
    } catch (const std::bad_alloc&) {
        return "there is not enough memory";
    } catch (const std::exception& problem) {
        return problem.what();
    }
}

} // namespace pnomaker
