// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A point cloud as a picture from above: of the points over a pixel the highest one shows.

#include "companions/lumiscope/tour/MapPicture.h"

#include "views/cloud/PointCloudFile.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace lumiscope {

namespace {

constexpr double kSide = 1024.0; ///< pixels of the larger side

struct Bounds
{
    unsigned left = cloud::kQuantisedValues, right = 0, bottom = cloud::kQuantisedValues, top = 0;
};

Bounds boundsOf(const cloud::PointCloud& points)
{
    Bounds bounds;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const unsigned x = points.x(i), y = points.y(i);
        bounds.left = std::min(bounds.left, x);
        bounds.right = std::max(bounds.right, x);
        bounds.bottom = std::min(bounds.bottom, y);
        bounds.top = std::max(bounds.top, y);
    }
    return bounds;
}

} // namespace

MapPicture cloudPicture(const QString& plan, const QString& path)
{
    MapPicture map;
    map.plan = plan;
    cloud::PointCloud points;
    if (cloud::readPointCloud(path, &points) != cloud::ReadStatus::Ok || points.size() == 0) return map;

    const cloud::Quantisation scene(points.header());
    const Bounds bounds = boundsOf(points);
    const double extent = std::max(bounds.right - bounds.left, bounds.top - bounds.bottom) + 1.0;
    const double pixelsPerStep = std::min(kSide / extent, 1.0); // finer ones would leave holes
    map.size = QSize(static_cast<int>(std::ceil((bounds.right - bounds.left + 1) * pixelsPerStep)),
                     static_cast<int>(std::ceil((bounds.top - bounds.bottom + 1) * pixelsPerStep)));
    map.image = QImage(map.size, QImage::Format_ARGB32);
    if (map.image.isNull()) return map;
    map.image.fill(Qt::transparent);

    std::vector<int> height(static_cast<std::size_t>(map.size.width() * map.size.height()), -1);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const int x = static_cast<int>((points.x(i) - bounds.left) * pixelsPerStep);
        const int y = static_cast<int>((bounds.top - points.y(i)) * pixelsPerStep);
        int& highest = height[static_cast<std::size_t>(y * map.size.width() + x)];
        if (static_cast<int>(points.z(i)) <= highest) continue;
        highest = static_cast<int>(points.z(i));
        map.image.setPixel(x, y, qRgb(points.red(i), points.green(i), points.blue(i)));
    }

    PlanarFit fit;
    fit.a = pixelsPerStep * scene.steps;
    const QPointF corner = fit.pixel({scene.x(bounds.left), scene.y(bounds.top)});
    fit.shift = QPointF(0.5, 0.5) * pixelsPerStep - corner; // a step's middle lies half a step inside
    map.pixelFromWorld = fit;
    return map;
}

} // namespace lumiscope
