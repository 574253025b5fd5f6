// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <qopengl.h>
#include <QRect>
#include <QSize>

class QOpenGLFunctions;

/// Draws a rectangle's four edges as a dashed line of one pixel, four pixels on and four off, with a program
/// that has the attribute a_position. Nothing without a program. The edges are QRect's inclusive ones.
void DrawStippledOutline(QOpenGLFunctions& gl, GLuint program, const QRect& rectangle, QSize widgetSize);
