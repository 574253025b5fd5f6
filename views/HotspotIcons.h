// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/IconLayer.h"
#include "views/MarkerImages.h"

class HotSpotOwner;
struct PanoNode;

/// The photo and text hotspots of a panorama. Photos are drawn before texts and taken before texts, each in
/// list order; at most one hotspot is selected.
class HotspotIcons : public IconLayer
{
public:
    void setUp(HotSpotOwner* owner, const MarkerImages& markers);
    void show(PanoNode* panorama) { m_panorama = panorama; }
    const PanoNode* panorama() const { return m_panorama; }

    /// Selects one hotspot by its index, or none with -1; what was selected before no longer is.
    void selectPhoto(int index);
    void selectInfo(int index);
    int selectedPhoto() const { return m_selectedPhoto; }
    int selectedInfo() const { return m_selectedInfo; }

    bool hasContent() const override { return m_panorama != nullptr; }
    std::vector<const QImage*> images() const override;
    std::vector<IconQuad> place(const sphere::Camera& camera, sphere::ViewSize size) override;
    bool isOver(QPoint cursor) const override;
    std::optional<sphere::PixelPoint> grab(QPoint cursor) override;
    void moveGrabbed(sphere::SpherePoint point) override;

private:
    HotSpotOwner* m_owner = nullptr;
    MarkerImages m_markers;
    PanoNode* m_panorama = nullptr;
    int m_selectedPhoto = -1;
    int m_selectedInfo = -1;
};
