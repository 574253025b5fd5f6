// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/cloud/PointCloud.h"
#include "views/cloud/PointSet.h"
#include "views/gl/Matrix4.h"

#include <qopengl.h>

class QOpenGLContext;
class QOpenGLFunctions;

/// A cloud's points as GL objects: program, buffer of all points, buffer of the thinned ones. Every call
/// wants the context current in which `initialise` was called.
class CloudPoints
{
public:
    /// Makes the program and buffers without points, anew when the context is another one.
    void initialise(QOpenGLFunctions& gl);
    void release(QOpenGLFunctions& gl);

    /// Replaces all points. Points for which the driver has no memory are not drawn.
    /// @return false when the driver lost what was written to it: try again
    [[nodiscard]] bool upload(QOpenGLContext& context, const cloud::PointCloud& cloud,
                              const cloud::PointSet& thinned);

    /// Draws all points over what is there, before them, if wanted, the thinned ones. Without a program it
    /// draws nothing.
    void draw(QOpenGLFunctions& gl, const Matrix4& mvp, bool thinnedFirst);

private:
    struct Buffer
    {
        GLuint name = 0;
        GLsizei points = 0;
    };
    void drawBuffer(QOpenGLFunctions& gl, const Buffer& buffer);

    GLuint m_program = 0;
    Buffer m_all, m_thinned;
};
