// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/lumiscope/scene/FloorMarker.h"

#include <qopengl.h>

class QOpenGLFunctions;

namespace lumiscope {

/// Draws a marker lying on the floor, in perspective, with the sphere program and the current blending.
/// @param mvp  of the panorama's frame
void drawFloorQuad(QOpenGLFunctions& gl, GLuint program, const Matrix4& mvp, const FloorMarker& marker,
                   GLuint texture);

} // namespace lumiscope
