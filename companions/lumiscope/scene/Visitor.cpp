// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/scene/Visitor.h"

#include "views/sphere/SphereZoom.h"

#include <algorithm>
#include <cmath>

namespace lumiscope {

namespace {

constexpr double kTurnStep = 0.06;   ///< radians at zoom 1
constexpr int kPanoramaWidth = 8192; ///< pixels of the sharpest picture
constexpr double kBeyondSharp = 2.0; ///< how far pictures may be magnified
constexpr double kLeastZoomLimit = 2.5;

} // namespace

sphere::Camera cameraAt(const Look& look, double direction)
{
    return {look.heading - direction, look.polar, look.zoom};
}

Look lookOf(const sphere::Camera& camera, double direction)
{
    return {camera.yaw + direction, camera.polar, camera.zoom};
}

Visitor::Visitor(const WalkTour* tour)
    : m_tour(tour)
    , m_station(tour->entry)
    , m_look(lookOf(tour->entryView, here().node.direction))
{
    m_look.polar = sphere::drawablePolar(m_look.polar);
}

sphere::Camera Visitor::cameraFor(int station) const
{
    return cameraAt(m_look, m_tour->stations[static_cast<std::size_t>(station)].node.direction);
}

double Visitor::zoomLimit() const
{
    return std::max(kLeastZoomLimit, kBeyondSharp * sphere::maxZoom(kPanoramaWidth, m_size.width));
}

void Visitor::resize(sphere::ViewSize size)
{
    m_size = {std::max(size.width, 1), std::max(size.height, 1)};
    m_look.zoom = sphere::clampZoom(m_look.zoom, zoomLimit());
}

void Visitor::turn(int left, int up)
{
    const double step = kTurnStep / m_look.zoom;
    m_look.heading += left * step;
    m_look.polar = sphere::drawablePolar(m_look.polar - up * step);
}

void Visitor::zoom(int steps)
{
    for (int i = std::abs(steps); i > 0; --i)
        m_look.zoom = sphere::zoomAfterWheel(m_look.zoom, steps, zoomLimit());
}

void Visitor::zoomBy(double factor)
{
    m_look.zoom = sphere::clampZoom(m_look.zoom * factor, zoomLimit());
}

void Visitor::beginDrag(sphere::PixelPoint cursor)
{
    m_drag.begin(sphere::screenFromPixel(cursor, m_size), camera());
}

void Visitor::drag(sphere::PixelPoint cursor)
{
    m_look = lookOf(m_drag.follow(sphere::screenFromPixel(cursor, m_size), camera()), here().node.direction);
    m_look.polar = sphere::drawablePolar(m_look.polar);
}

void Visitor::goTo(int station)
{
    m_station = station;
}

MarkerSpot Visitor::spot(const Neighbour& neighbour) const
{
    return markerSpot(neighbour.marker, camera(), m_size);
}

std::optional<int> Visitor::markerAt(sphere::PixelPoint pixel) const
{
    const QPoint cursor(qRound(pixel.x), qRound(pixel.y));
    std::optional<int> nearest;
    double least = 1e30;
    const auto& neighbours = here().neighbours;
    for (std::size_t i = 0; i < neighbours.size(); ++i) {
        const MarkerSpot seen = spot(neighbours[i]);
        const double away = std::hypot(seen.centre.x - pixel.x, seen.centre.y - pixel.y);
        if (!seen.target.contains(cursor) || away >= least) continue;
        least = away;
        nearest = static_cast<int>(i);
    }
    return nearest;
}

std::optional<int> Visitor::markerInView() const
{
    const sphere::Camera seen = camera();
    const double larger = std::max(m_size.width, m_size.height);
    double least = std::atan(m_size.width / (larger * seen.zoom));
    std::optional<int> nearest;
    const auto& neighbours = here().neighbours;
    for (std::size_t i = 0; i < neighbours.size(); ++i) {
        const double away =
            std::abs(std::remainder(neighbours[i].marker.azimuth - seen.yaw, 2.0 * sphere::kPi));
        if (away > least) continue;
        least = away;
        nearest = static_cast<int>(i);
    }
    return nearest;
}

} // namespace lumiscope
