// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Views of the sphere along the walls of a room.
#include "nexomap/src/pair/CubeFaces.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kInnerFov = 96.0 * kDegree; // overlap, so that no feature is lost on an edge
// Half of the view of a wider face: beyond it a pixel of the picture covers more than four of the face.
constexpr double kOuterReach = 62.0 * kDegree, kOuterRim = 1.5 * kDegree;
constexpr double kLevelRim = 46.5 * kDegree;
constexpr int kStep = 8; // pixels between the rays that are computed exactly

} // namespace

bool Face::counts(const Eigen::Vector3d& ray) const
{
    const double ahead = ray.dot(forward);
    if (!(ahead > 0.0)) return false;
    const double x = std::abs(ray.dot(right)) / ahead, y = std::abs(ray.dot(down)) / ahead;
    return x <= reach_x && y <= reach_y && (!outer || std::max(x, y) > 1.0);
}

std::vector<Face> cubeFaces(int size, double yaw)
{
    const double focal = 0.5 * size / std::tan(0.5 * kInnerFov);
    const Eigen::Vector3d up = Eigen::Vector3d::UnitZ();
    std::vector<Face> faces;
    const auto add = [&](const Eigen::Vector3d& forward, const Eigen::Vector3d& right,
                         const Eigen::Vector3d& down, bool level) {
        faces.push_back({forward, right, down, {size, size}, focal, 1.0, 1.0, false});
        Face outer = faces.back();
        outer.outer = true;
        outer.focal = 0.5 * focal;
        outer.reach_x = std::tan(kOuterReach);
        outer.size.width = int(2.0 * outer.focal * std::tan(kOuterReach + kOuterRim));
        // What stands above and below a level face is floor and ceiling: the other two show that straight.
        outer.reach_y = level ? 1.0 : outer.reach_x;
        outer.size.height = level ? int(2.0 * outer.focal * std::tan(kLevelRim)) : outer.size.width;
        faces.push_back(outer);
    };
    for (int i = 0; i < 4; ++i) {
        const Eigen::Vector3d forward = directionFromAngles(0.5 * kPi * i + yaw, 0.5 * kPi);
        add(forward, forward.cross(up), -up, true);
    }
    const Eigen::Vector3d x = directionFromAngles(yaw, 0.5 * kPi), y = up.cross(x);
    add(up, -y, x, false);
    add(-up, -y, -x, false);
    return faces;
}

cv::Mat1b renderFace(const cv::Mat1b& gray, const EquirectGrid& grid, const Face& face)
{
    // Between exact points the map runs straight enough, but for the surroundings of the poles.
    const auto exact = [&](int x, int y) { return grid.pixel(face.ray(x + 0.5, y + 0.5)); };
    cv::Mat1f map_x(face.size), map_y(face.size);
    const auto set = [&](int x, int y, const Eigen::Vector2d& pixel) {
        map_x(y, x) = float(pixel.x() - 0.5);
        map_y(y, x) = float(std::clamp(pixel.y() - 0.5, 0.0, grid.height - 1.0));
    };
    for (int y0 = 0; y0 < face.size.height; y0 += kStep)
        for (int x0 = 0; x0 < face.size.width; x0 += kStep) {
            const Eigen::Vector2d a = exact(x0, y0), b = exact(x0 + kStep, y0), c = exact(x0, y0 + kStep),
                                  d = exact(x0 + kStep, y0 + kStep);
            const auto x_range = std::minmax({a.x(), b.x(), c.x(), d.x()});
            const double polar = polarOf(face.ray(x0, y0));
            const bool straight = std::min(polar, kPi - polar) > 0.25 &&
                                  x_range.second - x_range.first < 0.5 * grid.width; // the seam
            for (int y = y0; y < std::min(y0 + kStep, face.size.height); ++y)
                for (int x = x0; x < std::min(x0 + kStep, face.size.width); ++x) {
                    const double u = double(x - x0) / kStep, v = double(y - y0) / kStep;
                    set(x, y,
                        straight ? Eigen::Vector2d((a * (1.0 - u) + b * u) * (1.0 - v) +
                                                   (c * (1.0 - u) + d * u) * v)
                                 : exact(x, y));
                }
        }
    cv::Mat1b picture;
    cv::remap(gray, picture, map_x, map_y, cv::INTER_LINEAR, cv::BORDER_WRAP);
    return picture;
}

} // namespace nexomap
