// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/CloudPoints.h"

#include "views/cloud/LargePages.h"
#include "views/cloud/VertexDecoder.h"
#include "views/gl/GlView.h"
#include "views/gl/ShaderProgram.h"
#include "views/gl/ShaderSources.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <cstddef>

namespace {

/// Lets `write` fill a static buffer where it lies, which spares a second copy of a large cloud.
/// @return whether the content is there; a buffer that got no memory has none and counts as written
template <class Write>
bool fillBuffer(QOpenGLContext& context, GLuint buffer, std::size_t points, GLsizei* written, Write write)
{
    // Of OpenGL 1.5, but missing from the toolkit's functions.
    using Map = void*(QOPENGLF_APIENTRYP)(GLenum, GLenum);
    using Unmap = GLboolean(QOPENGLF_APIENTRYP)(GLenum);
    const auto map = reinterpret_cast<Map>(context.getProcAddress("glMapBuffer"));
    const auto unmap = reinterpret_cast<Unmap>(context.getProcAddress("glUnmapBuffer"));
    QOpenGLFunctions& gl = *context.functions();

    *written = 0;
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
    gl.glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(points * sizeof(cloud::Vertex)), nullptr,
                    GL_STATIC_DRAW);
    bool intact = true;
    if (points > 0 && map && unmap) {
        constexpr GLenum kWriteOnly = 0x88B9;
        if (void* memory = map(GL_ARRAY_BUFFER, kWriteOnly)) {
            cloud::preferLargePages(memory, points * sizeof(cloud::Vertex)); // where it is the system's
            write(static_cast<cloud::Vertex*>(memory));
            intact = unmap(GL_ARRAY_BUFFER) == GL_TRUE;
            *written = intact ? static_cast<GLsizei>(points) : 0;
        }
    }
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    return intact;
}

const void* bufferOffset(std::size_t bytes)
{
    return reinterpret_cast<const void*>(bytes);
}

} // namespace

void CloudPoints::initialise(QOpenGLFunctions& gl)
{
    m_program = BuildShaderProgram(gl, shaders::kPointVertex, shaders::kPointFragment);
    m_all = m_thinned = {};
    gl.glGenBuffers(1, &m_all.name);
    gl.glGenBuffers(1, &m_thinned.name);
}

void CloudPoints::release(QOpenGLFunctions& gl)
{
    gl.glDeleteProgram(m_program);
    gl.glDeleteBuffers(1, &m_all.name);
    gl.glDeleteBuffers(1, &m_thinned.name);
}

bool CloudPoints::upload(QOpenGLContext& context, const cloud::PointCloud& cloud,
                         const cloud::PointSet& thinned)
{
    const cloud::VertexDecoder decoder(cloud);
    const bool all = fillBuffer(context, m_all.name, cloud.size(), &m_all.points,
                                [&](cloud::Vertex* vertices) { decoder.decodeAll(vertices); });
    return fillBuffer(context, m_thinned.name, thinned.size(), &m_thinned.points,
                      [&](cloud::Vertex* vertices) { decoder.decode(thinned, vertices); }) &&
           all;
}

void CloudPoints::draw(QOpenGLFunctions& gl, const Matrix4& mvp, bool thinnedFirst)
{
    if (m_program == 0) return;
    gl.glUseProgram(m_program);
    gl.glUniformMatrix4fv(gl.glGetUniformLocation(m_program, "u_mvpMatrix"), 1, GL_FALSE, mvp.data());
    UseOpaqueBlending(gl);
    if (thinnedFirst) drawBuffer(gl, m_thinned);
    drawBuffer(gl, m_all);
}

void CloudPoints::drawBuffer(QOpenGLFunctions& gl, const Buffer& buffer)
{
    if (buffer.points == 0) return;
    const auto position = static_cast<GLuint>(gl.glGetAttribLocation(m_program, "a_position"));
    const auto colour = static_cast<GLuint>(gl.glGetAttribLocation(m_program, "a_color"));
    constexpr GLsizei stride = sizeof(cloud::Vertex);
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffer.name);
    gl.glVertexAttribPointer(position, 3, GL_FLOAT, GL_FALSE, stride,
                             bufferOffset(offsetof(cloud::Vertex, x)));
    gl.glVertexAttribPointer(colour, 3, GL_FLOAT, GL_FALSE, stride,
                             bufferOffset(offsetof(cloud::Vertex, red)));
    gl.glEnableVertexAttribArray(position);
    gl.glEnableVertexAttribArray(colour);
    gl.glDrawArrays(GL_POINTS, 0, buffer.points);
    gl.glDisableVertexAttribArray(position);
    gl.glDisableVertexAttribArray(colour);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
}
