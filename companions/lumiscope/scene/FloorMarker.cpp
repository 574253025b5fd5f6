// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/scene/FloorMarker.h"

#include <algorithm>
#include <cmath>

namespace lumiscope {

namespace {

constexpr double kNearestHorizon = sphere::kHalfPi + 0.06; ///< about 27 m away for eyes at 1.6 m
constexpr double kRadius = 0.2;                            ///< about 0.3 m
constexpr double kGrowsBeyond = 4.0;                       ///< distance in heights of the camera
constexpr int kOutlinePoints = 16;
constexpr int kAboveEdge = 30; ///< pixels

double onTheFloor(double polar)
{
    return std::clamp(polar, kNearestHorizon, sphere::kPi);
}

bool inFront(sphere::SpherePoint point, const sphere::Camera& camera)
{
    return sphere::screenFromSphere(point, camera).u != sphere::kBehindViewer;
}

sphere::SpherePoint seenFromEye(double x, double y)
{
    return {std::atan2(y, x), std::atan2(std::hypot(x, y), -1.0)};
}

QRect atLeastTarget(const QRect& rectangle)
{
    const int width = std::max(rectangle.width(), kTargetWidth);
    const int height = std::max(rectangle.height(), kTargetHeight);
    const QPoint centre = rectangle.center();
    return {centre.x() - width / 2, centre.y() - height / 2, width, height};
}

QRect outline(const FloorMarker& marker, const sphere::Camera& camera, sphere::ViewSize size)
{
    double left = 1e9, right = -1e9, top = 1e9, bottom = -1e9;
    for (int i = 0; i < kOutlinePoints; ++i) {
        const double turn = 2.0 * sphere::kPi * i / kOutlinePoints;
        const auto point =
            seenFromEye(marker.x + marker.radius * std::cos(turn), marker.y + marker.radius * std::sin(turn));
        if (!inFront(point, camera)) continue;
        const auto pixel = sphere::pixelFromSphere(point, camera, size);
        left = std::min(left, pixel.x);
        right = std::max(right, pixel.x);
        top = std::min(top, pixel.y);
        bottom = std::max(bottom, pixel.y);
    }
    if (left > right) return QRect();
    // A mark right below the visitor may reach far out of the picture.
    const QRectF seen = QRectF(QPointF(left, top), QPointF(right, bottom)) &
                        QRectF(-size.width, -size.height, 3.0 * size.width, 3.0 * size.height);
    return seen.toAlignedRect();
}

/// Where the line from the horizon down to the point crosses a row of the picture.
sphere::PixelPoint crossing(sphere::SpherePoint point, double row, const sphere::Camera& camera,
                            sphere::ViewSize size)
{
    double above = 0.0, below = point.polar;
    for (int i = 0; i < 40; ++i) {
        const double middle = (above + below) / 2.0;
        const sphere::SpherePoint tried{point.azimuth, middle};
        const bool isAbove = inFront(tried, camera) ? sphere::pixelFromSphere(tried, camera, size).y < row
                                                    : middle < camera.polar;
        (isAbove ? above : below) = middle;
    }
    return sphere::pixelFromSphere({point.azimuth, above}, camera, size);
}

} // namespace

FloorMarker floorMarker(sphere::SpherePoint floorPoint)
{
    const double distance = std::tan(sphere::kPi - onTheFloor(floorPoint.polar));
    return {distance * std::cos(floorPoint.azimuth), distance * std::sin(floorPoint.azimuth),
            kRadius * std::max(1.0, distance / kGrowsBeyond)};
}

std::array<Vector3, 4> FloorMarker::corners() const
{
    const double distance = std::hypot(x, y);
    const double ahead_x = distance > 1e-9 ? x / distance : 1.0;
    const double ahead_y = distance > 1e-9 ? y / distance : 0.0;
    const auto corner = [&](double ahead, double left) {
        return Vector3{static_cast<float>(x + radius * (ahead * ahead_x - left * ahead_y)),
                       static_cast<float>(y + radius * (ahead * ahead_y + left * ahead_x)), -1.0f};
    };
    return {corner(1, 1), corner(-1, 1), corner(1, -1), corner(-1, -1)};
}

MarkerSpot markerSpot(sphere::SpherePoint floorPoint, const sphere::Camera& camera, sphere::ViewSize size)
{
    const sphere::SpherePoint point{floorPoint.azimuth, onTheFloor(floorPoint.polar)};
    MarkerSpot spot;
    spot.centre = sphere::pixelFromSphere(point, camera, size);
    const double edge = size.height - kAboveEdge;
    const bool front = inFront(point, camera);
    const bool ahead = std::cos(point.azimuth - camera.yaw) > 0.0;
    if (ahead && camera.polar < point.polar && (!front || spot.centre.y > edge)) {
        spot.centre = crossing(point, edge, camera, size);
        spot.atEdge = true;
        const QPoint centre(static_cast<int>(std::clamp(spot.centre.x, -1e6, 1e6)),
                            static_cast<int>(std::clamp(spot.centre.y, -1e6, 1e6)));
        spot.target = atLeastTarget(QRect(centre, QSize(1, 1)));
    } else if (front) {
        spot.target = atLeastTarget(outline(floorMarker(floorPoint), camera, size));
    }
    if (!spot.target.intersects(QRect(0, 0, size.width, size.height))) spot.target = QRect();
    return spot;
}

} // namespace lumiscope
