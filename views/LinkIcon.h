// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/IconLayer.h"
#include "views/MarkerImages.h"

class HotSpotOwner;
struct PanoLink;

/// Where one side of a link shows the floor point below the other panorama. Each side shows the icon height
/// of the other end: side 0 looks at azimuth -rot_0 with icon_y1, side 1 at azimuth -rot_1 - pi with icon_y0.
sphere::SpherePoint linkMarkerPoint(const PanoLink& link, int side);

/// Turns and lowers the marker of one side; the mark stays on the floor, well below the horizon.
void moveLinkMarker(PanoLink& link, int side, sphere::SpherePoint point);

/// The floor marker of a link on one of its sides. Only the marker of a link made by hand can be moved.
class LinkIcon : public IconLayer
{
public:
    void setUp(HotSpotOwner* owner, const MarkerImages& markers, int side);
    void show(PanoLink* link) { m_link = link; }
    const PanoLink* link() const { return m_link; }

    bool hasContent() const override { return m_link != nullptr; }
    std::vector<const QImage*> images() const override;
    std::vector<IconQuad> place(const sphere::Camera& camera, sphere::ViewSize size) override;
    bool isOver(QPoint cursor) const override;
    std::optional<sphere::PixelPoint> grab(QPoint cursor) override;
    void moveGrabbed(sphere::SpherePoint point) override;

private:
    HotSpotOwner* m_owner = nullptr;
    MarkerImages m_markers;
    int m_side = 0;
    PanoLink* m_link = nullptr;
};
