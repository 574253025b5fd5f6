// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/LinkIcon.h"

#include "project/PanoLink.h"
#include "views/HotSpotOwner.h"

#include <algorithm>

namespace {

const QRect& iconOf(const PanoLink& link, int side)
{
    return side == 0 ? link.icon_0 : link.icon_1;
}

} // namespace

sphere::SpherePoint linkMarkerPoint(const PanoLink& link, int side)
{
    if (side == 0) return {-link.rot_0, link.icon_y1};
    return {-link.rot_1 - sphere::kPi, link.icon_y0};
}

void moveLinkMarker(PanoLink& link, int side, sphere::SpherePoint point)
{
    const double polar = std::max(point.polar, sphere::kFloorMarkerMinPolar);
    if (side == 0) {
        link.rot_0 = -point.azimuth;
        link.icon_y1 = polar;
    } else {
        link.rot_1 = -point.azimuth - sphere::kPi;
        link.icon_y0 = polar;
    }
}

void LinkIcon::setUp(HotSpotOwner* owner, const MarkerImages& markers, int side)
{
    m_owner = owner;
    m_markers = markers;
    m_side = side;
}

std::vector<const QImage*> LinkIcon::images() const
{
    return {m_markers.link};
}

std::vector<IconQuad> LinkIcon::place(const sphere::Camera& camera, sphere::ViewSize size)
{
    const sphere::SpherePoint point = linkMarkerPoint(*m_link, m_side);
    const auto centre = sphere::pixelFromSphere(point, camera, size);
    QRect& icon = m_side == 0 ? m_link->icon_0 : m_link->icon_1;
    icon = toRect(sphere::floorMarkerRect(centre, point.polar));
    return {{icon, 0, {}}};
}

bool LinkIcon::isOver(QPoint cursor) const
{
    return m_link->mode == LinkByHand && iconOf(*m_link, m_side).contains(cursor);
}

std::optional<sphere::PixelPoint> LinkIcon::grab(QPoint cursor)
{
    if (!isOver(cursor)) return {};
    const QPoint centre = iconOf(*m_link, m_side).center();
    return sphere::PixelPoint{double(centre.x()), double(centre.y())};
}

void LinkIcon::moveGrabbed(sphere::SpherePoint point)
{
    moveLinkMarker(*m_link, m_side, point);
    if (m_owner) m_owner->markModified();
}
