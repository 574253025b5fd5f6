// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/HotspotIcons.h"

#include "project/PanoNode.h"
#include "views/HotSpotOwner.h"

namespace {

constexpr int kIconSize = 28;

enum Image
{
    Photo,
    PhotoSelected,
    Info,
    InfoSelected
};

template <class Hotspot>
void placeAll(QList<Hotspot>& hotspots, int selected, Image normal, Image highlighted,
              const sphere::Camera& camera, sphere::ViewSize size, std::vector<IconQuad>& quads)
{
    for (int i = 0; i < hotspots.size(); ++i) {
        Hotspot& hotspot = hotspots[i];
        const auto centre = sphere::pixelFromSphere({hotspot.sphere_x, hotspot.sphere_y}, camera, size);
        hotspot.marker = toRect(sphere::iconRect(centre, kIconSize, kIconSize));
        quads.push_back({hotspot.marker, i == selected ? highlighted : normal, {}});
    }
}

/// Index of the first hotspot whose icon contains the cursor, or -1.
template <class Hotspot>
int hit(const QList<Hotspot>& hotspots, QPoint cursor)
{
    for (int i = 0; i < hotspots.size(); ++i) {
        if (hotspots[i].marker.contains(cursor)) return i;
    }
    return -1;
}

sphere::PixelPoint centreOf(const QRect& marker)
{
    return {double(marker.left() + kIconSize / 2), double(marker.top() + kIconSize / 2)};
}

template <class Hotspot>
void moveTo(Hotspot& hotspot, sphere::SpherePoint point)
{
    hotspot.sphere_x = point.azimuth;
    hotspot.sphere_y = point.polar;
}

} // namespace

void HotspotIcons::setUp(HotSpotOwner* owner, const MarkerImages& markers)
{
    m_owner = owner;
    m_markers = markers;
}

void HotspotIcons::selectPhoto(int index)
{
    m_selectedPhoto = index;
    m_selectedInfo = -1;
}

void HotspotIcons::selectInfo(int index)
{
    m_selectedInfo = index;
    m_selectedPhoto = -1;
}

std::vector<const QImage*> HotspotIcons::images() const
{
    return {m_markers.photo, m_markers.photoSelected, m_markers.info, m_markers.infoSelected};
}

std::vector<IconQuad> HotspotIcons::place(const sphere::Camera& camera, sphere::ViewSize size)
{
    std::vector<IconQuad> quads;
    placeAll(m_panorama->photos, m_selectedPhoto, Photo, PhotoSelected, camera, size, quads);
    placeAll(m_panorama->infos, m_selectedInfo, Info, InfoSelected, camera, size, quads);
    return quads;
}

bool HotspotIcons::isOver(QPoint cursor) const
{
    return hit(m_panorama->photos, cursor) >= 0 || hit(m_panorama->infos, cursor) >= 0;
}

std::optional<sphere::PixelPoint> HotspotIcons::grab(QPoint cursor)
{
    if (const int photo = hit(m_panorama->photos, cursor); photo >= 0) {
        selectPhoto(photo);
        if (m_owner) m_owner->selectPhotoRow(photo);
        return centreOf(m_panorama->photos[photo].marker);
    }
    if (const int info = hit(m_panorama->infos, cursor); info >= 0) {
        selectInfo(info);
        if (m_owner) m_owner->selectInfoRow(info);
        return centreOf(m_panorama->infos[info].marker);
    }
    return {};
}

void HotspotIcons::moveGrabbed(sphere::SpherePoint point)
{
    // The owner may have removed the hotspot, or shown another panorama, since it was taken.
    if (m_selectedPhoto >= 0 && m_selectedPhoto < m_panorama->photos.size())
        moveTo(m_panorama->photos[m_selectedPhoto], point);
    else if (m_selectedPhoto < 0 && m_selectedInfo >= 0 && m_selectedInfo < m_panorama->infos.size())
        moveTo(m_panorama->infos[m_selectedInfo], point);
    else
        return;
    if (m_owner) m_owner->markModified();
}
