// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/FeaturePair.h"
#include "views/IconLayer.h"
#include "views/MarkerImages.h"

/// The numbered crosses of the link editor on one of its two sides. The number is the pair's place in the
/// list, two digits from 00 on; from the hundredth pair on the tens digit repeats the strip's last column.
class FeaturePairIcons : public IconLayer
{
public:
    void setUp(const MarkerImages& markers, int side);
    void show(FeaturePairs* pairs) { m_pairs = pairs; }

    bool hasContent() const override { return m_pairs != nullptr; }
    std::vector<const QImage*> images() const override;
    std::vector<IconQuad> place(const sphere::Camera& camera, sphere::ViewSize size) override;
    bool isOver(QPoint cursor) const override { return hit(cursor) >= 0; }
    std::optional<sphere::PixelPoint> grab(QPoint cursor) override;
    void moveGrabbed(sphere::SpherePoint point) override;

private:
    /// Index of the first pair whose cross on this side contains the cursor, or -1.
    int hit(QPoint cursor) const;

    MarkerImages m_markers;
    int m_side = 0;
    FeaturePairs* m_pairs = nullptr;
};
