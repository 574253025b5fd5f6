// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/gl/Texture.h"

#include <QImage>
#include <QOpenGLFunctions>

namespace {

// The bytes go to GL unseen: a picture with fewer of them than the format needs would be read beyond its end.
QImage withBytesFor(GLenum format, const QImage& image)
{
    if (image.isNull()) return image;
    if (format == GL_RGBA) return image.depth() == 32 ? image : image.convertToFormat(QImage::Format_ARGB32);
    return image.depth() == 24 ? image : image.convertToFormat(QImage::Format_RGB888);
}

GLuint makeTexture(QOpenGLFunctions& gl, QSize size, GLenum format, const void* bytes)
{
    GLuint texture = 0;
    gl.glGenTextures(1, &texture);
    gl.glBindTexture(GL_TEXTURE_2D, texture);
    gl.glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), size.width(), size.height(), 0, format,
                    GL_UNSIGNED_BYTE, bytes);
    gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    gl.glBindTexture(GL_TEXTURE_2D, 0);
    return texture;
}

} // namespace

GLuint AllocateTexture(QOpenGLFunctions& gl, QSize size, GLenum format)
{
    return makeTexture(gl, size, format, nullptr);
}

GLuint UploadTexture(QOpenGLFunctions& gl, const QImage& image, GLenum format)
{
    const QImage source = withBytesFor(format, image);
    return makeTexture(gl, source.size(), format, source.constBits());
}

void UpdateTexture(QOpenGLFunctions& gl, GLuint texture, const QImage& image)
{
    const QImage source = withBytesFor(GL_RGB, image);
    gl.glBindTexture(GL_TEXTURE_2D, texture);
    gl.glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, source.width(), source.height(), GL_RGB, GL_UNSIGNED_BYTE,
                       source.constBits());
    gl.glBindTexture(GL_TEXTURE_2D, 0);
}
