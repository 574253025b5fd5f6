// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/sphere/SphereCamera.h"

#include <QRect>

#include <vector>

/// Two directions that show the same feature of the scene, one seen from each panorama of a link.
struct FeaturePair
{
    sphere::SpherePoint point_0; ///< on panorama 0, radians
    sphere::SpherePoint point_1; ///< on panorama 1, radians
    QRect marker_0;              ///< where view 0 last drew the cross, for picking
    QRect marker_1;
};

/// The pairs of the link editor, shared by both views, and which one is selected.
struct FeaturePairs
{
    std::vector<FeaturePair> list;
    int selected = -1; ///< -1: none

    /// Any index outside the list selects none.
    void select(int index) { selected = index >= 0 && index < static_cast<int>(list.size()) ? index : -1; }
};
