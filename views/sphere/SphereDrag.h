// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/sphere/SphereCamera.h"

namespace sphere {

/// Turns the view so that a grabbed point of the sphere stays under the cursor: a coarse-to-fine search over
/// yaw and polar angle, nine candidates a round, the step halved until it is below half a thousandth of a
/// radian.
class ViewDrag
{
public:
    /// Grabs the point under the cursor. `camera` is the camera of the picture that the user sees.
    void begin(ScreenPoint cursor, const Camera& camera);

    /// Camera that brings the grabbed point under the cursor, searched from `target`. Only yaw and polar
    /// angle change; the polar angle stays within [0.001, 3.1405926535897932]. `target.zoom` is the zoom of
    /// the picture that the user sees.
    Camera follow(ScreenPoint cursor, Camera target);

    SpherePoint grabbed() const { return m_grabbed; }

private:
    ScreenPoint m_last;
    SpherePoint m_grabbed;
};

} // namespace sphere
