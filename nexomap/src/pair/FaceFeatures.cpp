// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Features of an equirectangular picture, found where it is not distorted.
#include "nexomap/src/pair/FaceFeatures.h"

#include <opencv2/features2d.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <tuple>

namespace nexomap {
namespace {

constexpr double kFaceFov = 96.0 * kDegree; // overlap, so that no feature is lost on an edge
constexpr int kFeaturesPerFace = 1500;
constexpr double kPoleMargin = 2.0 * kDegree; // filled-in rows are blurred into the picture this far
constexpr double kNadirMask = 2.6;            // the tripod stands in every picture's own frame
// The detector doubles the picture first and halves its coordinates without the half pixel between the two
// grids: its keypoints lie a quarter of a pixel too far right and down.
constexpr double kDetectorShift = 0.25;
constexpr float kRootSiftScale = 256.f; // components of root-SIFT above 0.5 do not occur in pictures

/// A pinhole view of the sphere.
struct Face
{
    Eigen::Vector3d forward, right, down;
    int size = 0;
    double focal = 0.0;

    Eigen::Vector3d ray(double x, double y) const
    {
        return forward + right * ((x - 0.5 * size) / focal) + down * ((y - 0.5 * size) / focal);
    }
};

std::array<Face, 6> cubeFaces(int size)
{
    const double focal = 0.5 * size / std::tan(0.5 * kFaceFov);
    const Eigen::Vector3d up = Eigen::Vector3d::UnitZ();
    std::array<Face, 6> faces;
    for (int i = 0; i < 4; ++i) {
        const Eigen::Vector3d forward = directionFromAngles(0.5 * kPi * i, 0.5 * kPi);
        faces[i] = {forward, forward.cross(up), -up, size, focal};
    }
    const Eigen::Vector3d x = Eigen::Vector3d::UnitX(), y = Eigen::Vector3d::UnitY();
    faces[4] = {up, -y, x, size, focal};
    faces[5] = {-up, -y, -x, size, focal};
    return faces;
}

cv::Mat1b renderFace(const cv::Mat1b& gray, const EquirectGrid& grid, const Face& face)
{
    cv::Mat1f map_x(face.size, face.size), map_y(face.size, face.size);
    for (int y = 0; y < face.size; ++y)
        for (int x = 0; x < face.size; ++x) {
            const Eigen::Vector2d pixel = grid.pixel(face.ray(x + 0.5, y + 0.5));
            map_x(y, x) = float(pixel.x() - 0.5);
            map_y(y, x) = float(std::clamp(pixel.y() - 0.5, 0.0, grid.height - 1.0));
        }
    cv::Mat1b picture;
    cv::remap(gray, picture, map_x, map_y, cv::INTER_LINEAR, cv::BORDER_WRAP);
    return picture;
}

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

Features faceFeatures(const cv::Mat1b& gray, const EquirectGrid& grid, const PolarExtent& extent,
                      const Face& face)
{
    std::vector<cv::KeyPoint> points;
    cv::Mat1f descriptors;
    cv::SIFT::create(kFeaturesPerFace, 3, 0.01, 12, 1.6)
        ->detectAndCompute(renderFace(gray, grid, face), cv::noArray(), points, descriptors);

    // The detector gathers from its threads in any order.
    std::vector<int> order(points.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = int(i);
    std::sort(order.begin(), order.end(), [&](int a, int b) {
        const auto key = [&](int i) {
            const cv::KeyPoint& p = points[i];
            return std::make_tuple(-p.size, p.pt.y, p.pt.x, p.angle, p.response, i);
        };
        return key(a) < key(b);
    });

    const double polar_min = std::max(extent.min, extent.valid_min) + kPoleMargin;
    const double polar_max = std::min(std::min(extent.max, extent.valid_max) - kPoleMargin, kNadirMask);
    Features features;
    for (const int i : order) {
        const Eigen::Vector3d bearing = keypointRay(face, points[i]).normalized();
        const double axis_cosine = bearing.dot(face.forward);
        if (axis_cosine < bearing.cwiseAbs().maxCoeff() - 1e-12) continue; // another face sees it straighter
        const double polar = polarOf(bearing);
        if (polar < polar_min || polar > polar_max) continue;
        std::array<std::uint8_t, 128> bytes;
        rootSift(descriptors[i], bytes.data());
        features.descriptors.insert(features.descriptors.end(), bytes.begin(), bytes.end());
        features.bearings.push_back(bearing.cast<float>().normalized());
        features.ranges_m.push_back(0.f);
        features.scales.push_back(float(points[i].size / face.focal * std::pow(axis_cosine, 1.5)));
        features.angles_rad.push_back(uprightAngle(face, points[i], bearing));
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
    const EquirectGrid grid{gray.cols, gray.rows, extent.min, extent.max};
    const auto faces = cubeFaces(std::clamp(gray.cols / 4, 64, 2048));
    std::array<Features, 6> parts;
    cv::parallel_for_(cv::Range(0, 6), [&](const cv::Range& range) {
        for (int i = range.start; i < range.end; ++i)
            parts[i] = faceFeatures(gray, grid, extent, faces[i]);
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
