// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/gl/Matrix4.h"

#include <qopengl.h>
#include <QSize>

class QImage;
class QOpenGLFunctions;

/// The textured sphere as GL objects: program, buffers, panorama texture. Every call but `program` wants the
/// context current in which `initialise` was called.
class PanoramaSphere
{
public:
    /// Makes the objects, anew when the context is another one. The texture has no content yet.
    void initialise(QOpenGLFunctions& gl, QSize panoramaSize);
    /// Draws with the program and the mesh of another sphere of this context, which has to outlive this one:
    /// a driver compiles a program anew for each sphere that has its own, with its first frame.
    void initialiseLike(QOpenGLFunctions& gl, const PanoramaSphere& other, QSize panoramaSize);
    void release(QOpenGLFunctions& gl);

    /// Uploads the whole picture, RGB.
    void setPicture(QOpenGLFunctions& gl, const QImage& panorama);

    /// Uploads some rows of a picture, RGB888, so that a large one need not hold up a frame. The
    /// texture takes the picture's size with row 0.
    void setRows(QOpenGLFunctions& gl, const QImage& panorama, int first, int count);

    /// Draws the sphere over all that is there. Without a program it draws nothing.
    /// @param opacity  below 1 what is there shines through; wants GL_BLEND enabled
    void draw(QOpenGLFunctions& gl, const Matrix4& mvp, float opacity = 1.0f);

    /// Makes the program draw rectangles on the screen.
    void useForOverlays(QOpenGLFunctions& gl);

    /// 0 when the driver refused it: the view then stays empty.
    GLuint program() const { return m_program; }

private:
    GLuint m_program = 0;
    GLuint m_vertices = 0;
    GLuint m_indices = 0;
    GLsizei m_indexCount = 0;
    GLuint m_texture = 0;
    bool m_isShared = false; ///< program and mesh are another sphere's
    QSize m_textureSize;
};
