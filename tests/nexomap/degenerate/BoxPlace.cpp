// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/nexomap/degenerate/BoxPlace.h"

#include "nexomap/src/pair/Sphere.h"

#include <opencv2/imgproc.hpp>

#include <cmath>

using namespace nexomap;

namespace {

constexpr int kBounces = 4; // mirrors and panes that a ray passes

std::uint32_t lotOf(std::uint32_t a, std::uint32_t b)
{
    std::uint32_t h = a * 0x9e3779b1u ^ b * 0x85ebca77u;
    h = (h ^ (h >> 15)) * 0x2c1b3c6du;
    h = (h ^ (h >> 12)) * 0x297a2d39u;
    return h ^ (h >> 15);
}

double unitOf(std::uint32_t lot)
{
    return double(lot >> 8) / double(1 << 24);
}

/// Four uniform numbers are near enough to a bell of deviation 1.
double bellOf(std::uint32_t lot)
{
    double sum = 0.0;
    for (std::uint32_t k = 1; k <= 4; ++k)
        sum += unitOf(lotOf(lot, k)) - 0.5;
    return sum / 0.577;
}

struct Meeting
{
    double distance = 1e30;
    int solid = -1, side = 0; ///< side: -x, +x, -y, +y, -z, +z
};

Meeting nearest(const std::vector<BoxPlace::Solid>& solids, const Eigen::Vector3d& from,
                const Eigen::Vector3d& ray)
{
    const Eigen::Array3d inverse = ray.array().inverse();
    Meeting meeting;
    for (std::size_t i = 0; i < solids.size(); ++i) {
        const Eigen::Array3d a = (solids[i].low - from).array() * inverse,
                             b = (solids[i].high - from).array() * inverse;
        int axis = 0;
        const double in = a.min(b).maxCoeff(&axis), out = a.max(b).minCoeff();
        if (in < out && in > 1e-6 && in < meeting.distance)
            meeting = {in, int(i), 2 * axis + (ray[axis] < 0.0 ? 1 : 0)};
    }
    return meeting;
}

cv::Vec3b paintOf(const BoxPlace::Solid& solid, Eigen::Vector3d point, int side, double blankness)
{
    point -= solid.origin;
    if (solid.fold != BoxPlace::Fold::None && point.x() < 0.0) {
        point.x() = -point.x();
        if (side / 2 == 0) side ^= 1;
        if (solid.fold == BoxPlace::Fold::HalfTurn) {
            point.y() = -point.y();
            if (side / 2 == 1) side ^= 1;
        }
    }
    const int axis = side / 2;
    return paintAt(point[(axis + 1) % 3], point[(axis + 2) % 3], solid.key * 10 + std::uint32_t(side),
                   blankness);
}

} // namespace

BoxPlace::Solid& BoxPlace::box(const Eigen::Vector3d& low, const Eigen::Vector3d& high, std::uint32_t key,
                               Kind kind)
{
    solids.push_back({low, high, key, origin, kind, fold});
    return solids.back();
}

void BoxPlace::room(const Eigen::Vector3d& low, const Eigen::Vector3d& high, std::uint32_t key)
{
    constexpr double kThick = 0.1;
    for (int axis = 0; axis < 3; ++axis)
        for (int end = 0; end < 2; ++end) {
            Eigen::Vector3d from = low, to = high;
            (end ? from : to)[axis] = (end ? high : low)[axis];
            (end ? to : from)[axis] += end ? kThick : -kThick;
            box(from, to,
                key + std::uint32_t(fold == Fold::None ? 2 * axis + end : 2 * axis + (axis == 2 ? end : 0)));
        }
}

MadeUpRoom::Shot BoxPlace::shoot(const RigidPose& world_from_pano, int width) const
{
    const EquirectGrid grid{width, width / 2};
    MadeUpRoom::Shot shot{cv::Mat3b(grid.height, grid.width), cv::Mat1w(grid.height, grid.width, ushort(0))};
    const std::uint32_t camera = std::uint32_t(std::lround(1000.0 * world_from_pano.t.sum()));
    cv::parallel_for_(cv::Range(0, grid.height), [&](const cv::Range& rows) {
        for (int y = rows.start; y < rows.end; ++y)
            for (int x = 0; x < width; ++x) {
                Eigen::Vector3d from = world_from_pano.t,
                                ray = world_from_pano.R * grid.direction(x + 0.5, y + 0.5);
                const std::uint32_t lot = lotOf(camera, std::uint32_t(y * width + x));
                double way = 0.0, pane = 0.0;
                cv::Vec3b colour(200, 200, 200);
                for (int bounce = 0; bounce < kBounces; ++bounce) {
                    const Meeting meeting = nearest(solids, from, ray);
                    if (meeting.solid < 0) break;
                    const Solid& solid = solids[std::size_t(meeting.solid)];
                    way += meeting.distance;
                    from += meeting.distance * ray;
                    if (solid.kind == Kind::Painted) {
                        colour = paintOf(solid, from, meeting.side, blankness);
                        const double range = (pane > 0.0 ? pane : way) + noise_m * bellOf(lot);
                        shot.range_mm(y, x) = ushort(std::clamp(std::lround(range * 1000.0), 0L, 60000L));
                        break;
                    }
                    if (solid.kind == Kind::Mirror)
                        ray[meeting.side / 2] = -ray[meeting.side / 2];
                    else if (pane == 0.0 && unitOf(lotOf(lot, 77)) < 0.125)
                        pane = way;
                }
                shot.picture(y, x) = colour;
            }
    });
    return shot;
}

void expose(MadeUpRoom::Shot& shot, double stops)
{
    cv::Mat1b curve(1, 256);
    for (int v = 0; v < 256; ++v) // cameras store about the square root of the light
        curve(0, v) =
            cv::saturate_cast<uchar>(255.0 * std::sqrt(std::pow(v / 255.0, 2.0) * std::exp2(stops)));
    cv::LUT(shot.picture, curve, shot.picture);
}

void turnToNight(MadeUpRoom::Shot& shot)
{
    for (int y = 0; y < shot.picture.rows; ++y)
        for (int x = 0; x < shot.picture.cols; ++x) {
            const double light = 0.45 + 0.3 * std::cos(2.0 * kPi * x / shot.picture.cols);
            const double noise = 5.0 * bellOf(lotOf(std::uint32_t(x), std::uint32_t(y)));
            cv::Vec3b& pixel = shot.picture(y, x);
            const double tint[3] = {0.6, 0.85, 1.0};
            for (int c = 0; c < 3; ++c)
                pixel[c] = cv::saturate_cast<uchar>(light * tint[c] * pixel[c] + noise);
        }
}

void takeColourAway(MadeUpRoom::Shot& shot)
{
    cv::Mat1b grey;
    cv::cvtColor(shot.picture, grey, cv::COLOR_BGR2GRAY);
    cv::cvtColor(grey, shot.picture, cv::COLOR_GRAY2BGR);
}
