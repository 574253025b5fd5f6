// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/tour/MapSheet.h"

#include <QRectF>

#include <algorithm>
#include <cmath>

namespace lumiscope {

namespace {

constexpr double kUnitsPerMetre = 100.0;
constexpr double kMargin_m = 1.0;

QPointF positionOf(const PanoNode& node)
{
    return {node.position_x, node.position_y};
}

std::vector<QPointF> positions(const WalkTour& tour)
{
    std::vector<QPointF> all;
    for (const Station& station : tour.stations)
        all.push_back(positionOf(station.node));
    const bool apart = std::any_of(all.begin(), all.end(), [&](QPointF p) { return p != all.front(); });
    if (apart) return all;
    const int columns = static_cast<int>(std::ceil(std::sqrt(double(all.size()))));
    for (int i = 0; i < static_cast<int>(all.size()); ++i)
        all[static_cast<std::size_t>(i)] = QPointF(2.0 * (i % columns), -2.0 * (i / columns));
    return all;
}

} // namespace

MapSheet mapSheet(const WalkTour& tour, const MapPicture& map)
{
    MapSheet sheet;
    sheet.picture = map.image;
    sheet.size = map.size;
    std::vector<std::pair<QPointF, QPointF>> pairs;
    for (const Station& station : tour.stations) {
        const PanoNode& node = station.node;
        sheet.places.emplace_back();
        if (node.plan_src != map.plan) continue;
        const QPointF place = map.pixelFromWorld ? map.pixelFromWorld->pixel(positionOf(node))
                                                 : QPointF(node.plan_center_x, node.plan_center_y);
        sheet.places.back() = place;
        pairs.emplace_back(positionOf(node), place);
    }
    if (map.pixelFromWorld)
        sheet.fit = *map.pixelFromWorld;
    else if (const auto fit = fitPlan(pairs))
        sheet.fit = *fit;
    return sheet;
}

MapSheet stationSheet(const WalkTour& tour)
{
    MapSheet sheet;
    const std::vector<QPointF> world = positions(tour);
    double left = 1e30, right = -1e30, bottom = 1e30, top = -1e30;
    for (const QPointF& place : world) {
        left = std::min(left, place.x());
        right = std::max(right, place.x());
        bottom = std::min(bottom, place.y());
        top = std::max(top, place.y());
    }
    sheet.fit.a = kUnitsPerMetre;
    sheet.fit.shift = {(kMargin_m - left) * kUnitsPerMetre, (kMargin_m + top) * kUnitsPerMetre};
    sheet.size = QSizeF(right - left + 2 * kMargin_m, top - bottom + 2 * kMargin_m) * kUnitsPerMetre;
    for (const QPointF& place : world)
        sheet.places.emplace_back(sheet.fit.pixel(place));
    return sheet;
}

} // namespace lumiscope
