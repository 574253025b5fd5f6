// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/PanoramaSphere.h"

#include "views/gl/GlView.h"
#include "views/gl/ShaderProgram.h"
#include "views/gl/ShaderSources.h"
#include "views/gl/Texture.h"
#include "views/sphere/SphereMesh.h"

#include <QImage>
#include <QOpenGLFunctions>

namespace {

template <class Element>
GLuint staticBuffer(QOpenGLFunctions& gl, GLenum target, const std::vector<Element>& content)
{
    GLuint buffer = 0;
    gl.glGenBuffers(1, &buffer);
    gl.glBindBuffer(target, buffer);
    gl.glBufferData(target, static_cast<GLsizeiptr>(content.size() * sizeof(Element)), content.data(),
                    GL_STATIC_DRAW);
    gl.glBindBuffer(target, 0);
    return buffer;
}

const void* bufferOffset(std::size_t bytes)
{
    return reinterpret_cast<const void*>(bytes);
}

} // namespace

void PanoramaSphere::initialise(QOpenGLFunctions& gl, QSize panoramaSize)
{
    m_program = BuildShaderProgram(gl, shaders::kSphereVertex, shaders::kTextureFragment);
    m_vertices = staticBuffer(gl, GL_ARRAY_BUFFER, sphere::meshVertices());
    const auto indices = sphere::meshIndices();
    m_indices = staticBuffer(gl, GL_ELEMENT_ARRAY_BUFFER, indices);
    m_indexCount = static_cast<GLsizei>(indices.size());
    m_texture = AllocateTexture(gl, panoramaSize, GL_RGB);
    m_textureSize = panoramaSize;
}

void PanoramaSphere::initialiseLike(QOpenGLFunctions& gl, const PanoramaSphere& other, QSize panoramaSize)
{
    m_program = other.m_program;
    m_vertices = other.m_vertices;
    m_indices = other.m_indices;
    m_indexCount = other.m_indexCount;
    m_isShared = true;
    m_texture = AllocateTexture(gl, panoramaSize, GL_RGB);
    m_textureSize = panoramaSize;
}

void PanoramaSphere::release(QOpenGLFunctions& gl)
{
    if (!m_isShared) {
        gl.glDeleteProgram(m_program);
        gl.glDeleteBuffers(1, &m_vertices);
        gl.glDeleteBuffers(1, &m_indices);
    }
    gl.glDeleteTextures(1, &m_texture);
}

void PanoramaSphere::setPicture(QOpenGLFunctions& gl, const QImage& panorama)
{
    if (panorama.size() != m_textureSize) {
        gl.glDeleteTextures(1, &m_texture);
        m_texture = UploadTexture(gl, panorama, GL_RGB);
        m_textureSize = panorama.size();
        return;
    }
    UpdateTexture(gl, m_texture, panorama);
}

void PanoramaSphere::setRows(QOpenGLFunctions& gl, const QImage& panorama, int first, int count)
{
    if (first == 0 && panorama.size() != m_textureSize) {
        gl.glDeleteTextures(1, &m_texture);
        m_texture = AllocateTexture(gl, panorama.size(), GL_RGB);
        m_textureSize = panorama.size();
    }
    gl.glBindTexture(GL_TEXTURE_2D, m_texture);
    gl.glTexSubImage2D(GL_TEXTURE_2D, 0, 0, first, panorama.width(), count, GL_RGB, GL_UNSIGNED_BYTE,
                       panorama.constScanLine(first));
    gl.glBindTexture(GL_TEXTURE_2D, 0);
}

void PanoramaSphere::draw(QOpenGLFunctions& gl, const Matrix4& mvp, float opacity)
{
    if (m_program == 0) return;
    gl.glUseProgram(m_program);
    gl.glUniformMatrix4fv(gl.glGetUniformLocation(m_program, "u_mvpMatrix"), 1, GL_FALSE, mvp.data());
    gl.glUniform1i(gl.glGetUniformLocation(m_program, "u_sampler"), 0);
    if (opacity < 1.0f) {
        gl.glBlendColor(0, 0, 0, opacity);
        gl.glBlendFunc(GL_CONSTANT_ALPHA, GL_ONE_MINUS_CONSTANT_ALPHA);
    } else {
        UseOpaqueBlending(gl);
    }

    const auto position = static_cast<GLuint>(gl.glGetAttribLocation(m_program, "a_position"));
    const auto texCoord = static_cast<GLuint>(gl.glGetAttribLocation(m_program, "a_texCoord"));
    constexpr GLsizei stride = sizeof(sphere::MeshVertex);
    gl.glBindBuffer(GL_ARRAY_BUFFER, m_vertices);
    gl.glVertexAttribPointer(position, 3, GL_FLOAT, GL_FALSE, stride,
                             bufferOffset(offsetof(sphere::MeshVertex, x)));
    gl.glVertexAttribPointer(texCoord, 2, GL_FLOAT, GL_FALSE, stride,
                             bufferOffset(offsetof(sphere::MeshVertex, u)));
    gl.glEnableVertexAttribArray(position);
    gl.glEnableVertexAttribArray(texCoord);
    gl.glActiveTexture(GL_TEXTURE0);
    gl.glBindTexture(GL_TEXTURE_2D, m_texture);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_indices);
    gl.glDrawElements(GL_TRIANGLES, m_indexCount, GL_UNSIGNED_SHORT, nullptr);

    gl.glDisableVertexAttribArray(position);
    gl.glDisableVertexAttribArray(texCoord);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void PanoramaSphere::useForOverlays(QOpenGLFunctions& gl)
{
    gl.glUseProgram(m_program);
    gl.glUniformMatrix4fv(gl.glGetUniformLocation(m_program, "u_mvpMatrix"), 1, GL_FALSE,
                          IdentityMatrix().data());
}
