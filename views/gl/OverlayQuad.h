// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <qopengl.h>
#include <QRect>
#include <QSize>

#include <array>

class QOpenGLFunctions;

struct OverlayVertex
{
    GLfloat x, y; ///< normalised device coordinates
    GLfloat u, v; ///< texture coordinates; v 0 is the picture's first scan line
};
static_assert(sizeof(OverlayVertex) == 16, "the stride of the arrays");

/// Part of a texture to draw, from its left edge (0) to its right edge (1).
struct TextureSpan
{
    float left = 0.0f;
    float right = 1.0f;
};

/// Corners of a rectangle of widget pixels as a triangle strip: top left, bottom left, top right, bottom
/// right. The edges are QRect's inclusive ones.
std::array<OverlayVertex, 4> OverlayQuad(const QRect& rectangle, QSize widgetSize, TextureSpan span = {});

/// Draws a rectangle of widget pixels on top of the scene with the current program, which has the attributes
/// a_position and a_texCoord and the sampler u_sampler.
void DrawOverlayQuad(QOpenGLFunctions& gl, GLuint program, const QRect& rectangle, QSize widgetSize,
                     GLuint texture, TextureSpan span = {});
