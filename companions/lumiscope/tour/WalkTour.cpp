// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/tour/WalkTour.h"

#include "views/LinkIcon.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace lumiscope {

namespace {

/// View angles that no window can span count as the usual right angle.
double zoomOf(double viewAngle)
{
    const bool possible = viewAngle > 0.01 && viewAngle < sphere::kPi - 0.01;
    return possible ? 1.0 / std::tan(viewAngle / 2.0) : 1.0;
}

double distanceOf(const PanoLink& link)
{
    return std::max(link.spacing, 0.0);
}

} // namespace

WalkTour walkTour(const RoamProject& project, const tourxml::EntryView& entryView)
{
    WalkTour tour;
    QHash<quint64, int> rows;
    for (const auto& node : project.panoramas) {
        const int row = static_cast<int>(tour.stations.size());
        if (!rows.contains(node->id)) rows.insert(node->id, row);
        tour.stations.push_back({*node, {}});
    }
    QSet<QPair<int, int>> known;
    for (const auto& link : project.links) {
        const int first = rows.value(static_cast<quint64>(link->id_0), -1);
        const int second = rows.value(static_cast<quint64>(link->id_1), -1);
        if (first < 0 || second < 0 || first == second) continue;
        const QPair<int, int> pair(std::min(first, second), std::max(first, second));
        if (known.contains(pair)) continue;
        known.insert(pair);
        tour.links.emplace_back(first, second);
        tour.stations[static_cast<std::size_t>(first)].neighbours.push_back(
            {second, linkMarkerPoint(*link, 0), distanceOf(*link)});
        tour.stations[static_cast<std::size_t>(second)].neighbours.push_back(
            {first, linkMarkerPoint(*link, 1), distanceOf(*link)});
    }
    for (Station& station : tour.stations)
        std::stable_sort(station.neighbours.begin(), station.neighbours.end(),
                         [](const Neighbour& a, const Neighbour& b) { return a.distance_m < b.distance_m; });
    const bool inList =
        project.entry_index >= 0 && project.entry_index < static_cast<int>(tour.stations.size());
    tour.entry = inList ? project.entry_index : 0;
    tour.entryView = {entryView.direction, std::clamp(entryView.elevation, 0.0, sphere::kPi),
                      zoomOf(entryView.view_angle)};
    return tour;
}

} // namespace lumiscope
