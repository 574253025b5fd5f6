// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/FeaturePairIcons.h"

namespace {

constexpr int kIconSize = 42;

enum Image
{
    Cross,
    CrossSelected,
    Digits,
    DigitsSelected
};

IconQuad digitQuad(sphere::PixelPoint crossCentre, int place, int digit, Image strip)
{
    const float left = static_cast<float>(digit) * 0.1f;
    return {toRect(sphere::digitRect(crossCentre, kIconSize, place)), strip, {left, left + 0.1f}};
}

} // namespace

void FeaturePairIcons::setUp(const MarkerImages& markers, int side)
{
    m_markers = markers;
    m_side = side;
}

std::vector<const QImage*> FeaturePairIcons::images() const
{
    return {m_markers.cross, m_markers.crossSelected, m_markers.digits, m_markers.digitsSelected};
}

std::vector<IconQuad> FeaturePairIcons::place(const sphere::Camera& camera, sphere::ViewSize size)
{
    std::vector<IconQuad> quads;
    for (int i = 0; i < static_cast<int>(m_pairs->list.size()); ++i) {
        FeaturePair& pair = m_pairs->list[static_cast<std::size_t>(i)];
        const bool selected = i == m_pairs->selected;
        const auto centre = sphere::pixelFromSphere(m_side == 0 ? pair.point_0 : pair.point_1, camera, size);
        QRect& marker = m_side == 0 ? pair.marker_0 : pair.marker_1;
        marker = toRect(sphere::iconRect(centre, kIconSize, kIconSize));
        quads.push_back({marker, selected ? CrossSelected : Cross, {}});
        const Image strip = selected ? DigitsSelected : Digits;
        quads.push_back(digitQuad(centre, 0, i / 10, strip));
        quads.push_back(digitQuad(centre, 1, i % 10, strip));
    }
    return quads;
}

int FeaturePairIcons::hit(QPoint cursor) const
{
    for (std::size_t i = 0; i < m_pairs->list.size(); ++i) {
        const FeaturePair& pair = m_pairs->list[i];
        if ((m_side == 0 ? pair.marker_0 : pair.marker_1).contains(cursor)) return static_cast<int>(i);
    }
    return -1;
}

std::optional<sphere::PixelPoint> FeaturePairIcons::grab(QPoint cursor)
{
    const int index = hit(cursor);
    if (index < 0) return {};
    m_pairs->select(index);
    const FeaturePair& pair = m_pairs->list[static_cast<std::size_t>(index)];
    const QRect& marker = m_side == 0 ? pair.marker_0 : pair.marker_1;
    return sphere::PixelPoint{double(marker.left() + kIconSize / 2), double(marker.top() + kIconSize / 2)};
}

void FeaturePairIcons::moveGrabbed(sphere::SpherePoint point)
{
    if (m_pairs->selected < 0 || m_pairs->selected >= static_cast<int>(m_pairs->list.size())) return;
    FeaturePair& pair = m_pairs->list[static_cast<std::size_t>(m_pairs->selected)];
    (m_side == 0 ? pair.point_0 : pair.point_1) = point;
}
