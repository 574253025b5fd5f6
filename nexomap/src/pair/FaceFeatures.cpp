// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Features of an equirectangular picture, found where it is not distorted.
#include "nexomap/src/pair/FaceFeatures.h"

#include "nexomap/src/pair/BuildingDirection.h"
#include "nexomap/src/pair/CubeFaces.h"

#include <opencv2/features2d.hpp>

#include <algorithm>
#include <array>
#include <tuple>

namespace nexomap {
namespace {

constexpr std::size_t kFeaturesPerFace = 1350, kFeaturesPerOuterFace = 500;
constexpr double kPoleMargin = 2.0 * kDegree; // filled-in rows are blurred into the picture this far
constexpr double kNadirMask = 2.6;            // the tripod stands in every picture's own frame
// The detector doubles the picture first and halves its coordinates without the half pixel between the two
// grids: its keypoints lie a quarter of a pixel too far right and down.
constexpr double kDetectorShift = 0.25;
constexpr float kRootSiftScale = 256.f; // components of root-SIFT above 0.5 do not occur in pictures

Eigen::Vector3d keypointRay(const Face& face, const cv::KeyPoint& point, double dx = 0.0, double dy = 0.0)
{
    return face.ray(point.pt.x + 0.5 - kDetectorShift + dx, point.pt.y + 0.5 - kDetectorShift + dy);
}

/// Angle of the keypoint's orientation against the local vertical, anticlockwise as seen from the camera.
float uprightAngle(const Face& face, const cv::KeyPoint& point, const Eigen::Vector3d& bearing)
{
    const double angle = point.angle * kDegree;
    const Eigen::Vector3d step =
        keypointRay(face, point, std::cos(angle), std::sin(angle)).normalized() - bearing;
    const Eigen::Vector3d left = Eigen::Vector3d::UnitZ().cross(bearing);
    return float(std::atan2(step.dot(left), step.dot(bearing.cross(left))));
}

/// The clearest of those that count in this face, the coarsest first, in an order of our own: the detector
/// gathers from its threads in any order.
void choose(std::vector<cv::KeyPoint>* points, const PolarExtent& extent, const Face& face)
{
    const double polar_min = std::max(extent.min, extent.valid_min) + kPoleMargin;
    const double polar_max = std::min(std::min(extent.max, extent.valid_max) - kPoleMargin, kNadirMask);
    points->erase(std::remove_if(points->begin(), points->end(),
                                 [&](const cv::KeyPoint& point) {
                                     const Eigen::Vector3d ray = keypointRay(face, point);
                                     const double polar = polarOf(ray);
                                     return !face.counts(ray) || polar < polar_min || polar > polar_max;
                                 }),
                  points->end());
    const auto sortBy = [points](float sign, float cv::KeyPoint::*first) {
        std::sort(points->begin(), points->end(), [&](const cv::KeyPoint& a, const cv::KeyPoint& b) {
            const auto key = [&](const cv::KeyPoint& p) {
                return std::make_tuple(sign * p.*first, -p.size, p.pt.y, p.pt.x, p.angle, p.response);
            };
            return key(a) < key(b);
        });
    };
    const std::size_t most = face.outer ? kFeaturesPerOuterFace : kFeaturesPerFace;
    sortBy(-1.f, &cv::KeyPoint::response);
    if (points->size() > most) points->resize(most);
    sortBy(-1.f, &cv::KeyPoint::size);
}

Features faceFeatures(const cv::Mat1b& gray, const EquirectGrid& grid, const PolarExtent& extent,
                      const Face& face)
{
    const auto sift = cv::SIFT::create(0, 3, 0.01, 12, 1.6);
    const cv::Mat1b picture = renderFace(gray, grid, face);
    std::vector<cv::KeyPoint> points;
    sift->detect(picture, points);
    choose(&points, extent, face);
    if (points.empty()) return {};
    cv::Mat1f descriptors;
    sift->compute(picture, points, descriptors);

    Features features;
    for (int i = 0; i < int(points.size()); ++i) {
        const cv::KeyPoint& point = points[std::size_t(i)];
        const Eigen::Vector3d bearing = keypointRay(face, point).normalized();
        std::array<std::uint8_t, 128> bytes;
        rootSift(descriptors[i], bytes.data());
        features.descriptors.insert(features.descriptors.end(), bytes.begin(), bytes.end());
        features.bearings.push_back(bearing.cast<float>().normalized());
        features.ranges_m.push_back(0.f);
        features.scales.push_back(float(point.size / face.focal * std::pow(bearing.dot(face.forward), 1.5)));
        features.angles_rad.push_back(uprightAngle(face, point, bearing));
    }
    return features;
}

template <class T>
void append(std::vector<T>& all, const std::vector<T>& part)
{
    all.insert(all.end(), part.begin(), part.end());
}

} // namespace

void rootSift(const float* sift, std::uint8_t* bytes)
{
    float sum = 0.f;
    for (int i = 0; i < 128; ++i)
        sum += std::max(0.f, sift[i]);
    const float scale = sum > 0.f ? 1.f / sum : 0.f;
    for (int i = 0; i < 128; ++i) {
        const float value = kRootSiftScale * std::sqrt(std::max(0.f, sift[i]) * scale) + 0.5f;
        bytes[i] = std::uint8_t(std::min(127.f, value));
    }
}

Features extractFeatures(const cv::Mat1b& gray, const PolarExtent& extent)
{
    return extractFeatures(gray, extent, buildingDirection(gray, extent).value_or(0.0));
}

Features extractFeatures(const cv::Mat1b& gray, const PolarExtent& extent, double yaw)
{
    const EquirectGrid grid{gray.cols, gray.rows, extent.min, extent.max};
    const auto faces = cubeFaces(std::clamp(gray.cols / 4, 64, 2048), yaw);
    std::vector<Features> parts(faces.size());
    cv::parallel_for_(cv::Range(0, int(faces.size())), [&](const cv::Range& range) {
        for (int i = range.start; i < range.end; ++i)
            parts[std::size_t(i)] = faceFeatures(gray, grid, extent, faces[std::size_t(i)]);
    });
    Features features;
    for (const Features& part : parts) {
        append(features.descriptors, part.descriptors);
        append(features.bearings, part.bearings);
        append(features.ranges_m, part.ranges_m);
        append(features.scales, part.scales);
        append(features.angles_rad, part.angles_rad);
    }
    return features;
}

} // namespace nexomap
