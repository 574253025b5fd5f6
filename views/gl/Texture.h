// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <qopengl.h>
#include <QSize>

class QImage;
class QOpenGLFunctions;

/// Textures of the views: 2D, linear filter, clamped to the edge, no mipmaps. `format` is `GL_RGB` or
/// `GL_RGBA`.

/// Texture without content.
/// @return its name, owned by the caller
GLuint AllocateTexture(QOpenGLFunctions& gl, QSize size, GLenum format);

/// Texture with the picture's bytes as they lie in memory: for `GL_RGBA` in the order R, G, B, A (the owner
/// of an icon has passed it through QImage::rgbSwapped()), for `GL_RGB` three bytes a pixel. A picture of
/// another depth is converted first. A null picture gives an empty texture.
/// @return its name, owned by the caller
GLuint UploadTexture(QOpenGLFunctions& gl, const QImage& image, GLenum format);

/// Replaces the whole content of a `GL_RGB` texture of the picture's size.
void UpdateTexture(QOpenGLFunctions& gl, GLuint texture, const QImage& image);
