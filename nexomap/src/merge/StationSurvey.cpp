// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/StationSurvey.h"

#include "nexomap/src/model/ParallelFor.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kCoarse_m = 0.05;
constexpr float kUnderside = -0.8f; // of a normal's height: sloped ceilings too
constexpr double kLeastAbove_m = 0.25;
constexpr std::size_t kLeastSamples = 500;
constexpr int kEveryColour = 3;

struct CoarseSample
{
    Eigen::Vector3f world, direction;
    float area_m2, height_of_normal, above_m;
};

std::uint64_t blockKey(const Eigen::Vector3f& world)
{
    std::uint64_t key = 0;
    for (int axis = 0; axis < 3; ++axis) {
        const auto number =
            std::int64_t(std::floor(double(world[axis]) / SurfaceVolume::kSide_m)) + (1 << 20);
        key = key << 21 | (std::uint64_t(number) & 0x1FFFFF);
    }
    return key;
}

} // namespace

RangePicture rangesOf(const MergeStation& station, const FrontEnd& front_end, std::string* error)
{
    RangePicture picture;
    if (station.loaded && !station.loaded->metric() && !station.loaded->remark.empty()) {
        *error = station.path + ": " + station.loaded->remark;
        return picture;
    }
    if (front_end.ranges) picture = front_end.ranges(station.path, station.name, error);
    if (picture.empty() && station.loaded && station.loaded->metric()) {
        const RangeMap& map = station.loaded->range;
        picture = rangePictureOf(map.packed ? map.packed->unpack() : map);
    }
    if (picture.empty() && error->empty()) *error = station.path + ": no lidar";
    return picture;
}

StationColours::StationColours(const MergeStation& station, const FrontEnd& front_end)
{
    if (front_end.colours) {
        Panorama named;
        named.id = station.name;
        named.path = station.path;
        m_picture = front_end.colours(station.loaded ? *station.loaded : named);
    }
    if (m_picture.pixels.empty() && station.loaded) m_picture = {station.loaded->preview, 0.0, kPi};
    if (m_picture.pixels.empty()) m_picture = {cv::Mat3b(2, 4, cv::Vec3b(128, 128, 128)), 0.0, kPi};
    balance(Eigen::Vector3f::Ones());
}

void StationColours::balance(const Eigen::Vector3f& factors)
{
    for (int channel = 0; channel < 3; ++channel)
        for (int value = 0; value < 256; ++value)
            m_curve[std::size_t(channel)][std::size_t(value)] =
                std::uint8_t(std::clamp(float(value) * factors[channel] + 0.5f, 0.f, 255.f));
}

std::array<std::uint8_t, 3> StationColours::at(const Eigen::Vector3f& direction) const
{
    const float azimuth = std::atan2(direction.y(), direction.x());
    const float polar = std::atan2(std::hypot(direction.x(), direction.y()), direction.z());
    const cv::Mat3b& pixels = m_picture.pixels;
    const int x = int((float(kPi) - azimuth) / float(2.0 * kPi) * float(pixels.cols));
    const int y = int((polar - float(m_picture.polar_min)) /
                      float(m_picture.polar_max - m_picture.polar_min) * float(pixels.rows));
    const cv::Vec3b& bgr = pixels(std::clamp(y, 0, pixels.rows - 1), std::clamp(x, 0, pixels.cols - 1));
    return {m_curve[0][bgr[2]], m_curve[1][bgr[1]], m_curve[2][bgr[0]]};
}

void SurfaceVolume::add(const Eigen::Vector3f& world, float area_m2)
{
    const auto [entry, fresh] = m_blocks.try_emplace(blockKey(world));
    Block& block = entry->second;
    block.low = fresh ? world : Eigen::Vector3f(block.low.cwiseMin(world));
    block.high = fresh ? world : Eigen::Vector3f(block.high.cwiseMax(world));
    block.area_m2 += area_m2;
}

std::optional<StationSurvey> surveyStation(const MergeStation& station, const FrontEnd& front_end,
                                           bool indoor, SurfaceVolume* volume, ExposureBalance* balance,
                                           std::string* reason)
{
    const RangePicture picture = rangesOf(station, front_end, reason);
    if (picture.empty()) return std::nullopt;
    const RangePyramid pyramid(picture, kFarthest_m);
    const SurfaceSampling sampling(pyramid, {kCoarse_m, false});
    const Eigen::Matrix3f R = station.pose.R.cast<float>();
    const Eigen::Vector3f t = station.pose.t.cast<float>(), up = station.up.cast<float>();
    std::vector<std::vector<CoarseSample>> bands(std::size_t(sampling.bands()));
    parallelFor(sampling.bands(), [&](int band) {
        sampling.forEachInBand(band, [&](const SurfaceSample& sample) {
            const Eigen::Vector3f from = R * sample.point;
            bands[std::size_t(band)].push_back(
                {t + from, sample.point, sample.area_m2, up.dot(R * sample.normal), up.dot(from)});
        });
    });
    std::size_t count = 0;
    for (const auto& band : bands)
        count += band.size();
    if (count < kLeastSamples) {
        *reason = station.path + ": its lidar shows no surface";
        return std::nullopt;
    }
    StationSurvey survey;
    survey.seen = std::make_unique<SeenSpace>(pyramid, station.pose);
    const StationColours colours(station, front_end);
    OverheadBuilder overhead;
    ExposureBalance::Station light;
    std::size_t number = 0;
    for (const auto& band : bands)
        for (const CoarseSample& sample : band) {
            volume->add(sample.world, sample.area_m2);
            if (indoor && sample.height_of_normal<kUnderside&& double(sample.above_m)> kLeastAbove_m)
                overhead.add(double(sample.world.x()), double(sample.world.y()),
                             station.up.dot(sample.world.cast<double>()));
            if (number++ % kEveryColour) continue;
            const auto [red, green, blue] = colours.at(sample.direction);
            light.add(sample.world, red, green, blue);
        }
    survey.overhead = overhead.finish();
    balance->add(std::move(light));
    return survey;
}

} // namespace nexomap
