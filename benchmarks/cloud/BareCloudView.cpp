// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "benchmarks/cloud/BareCloudView.h"

#include <QOpenGLFunctions>

void BareCloudView::initializeGL()
{
    QOpenGLFunctions& gl = *context()->functions();
    m_program = std::make_unique<QOpenGLShaderProgram>();
    m_program->addShaderFromSourceCode(QOpenGLShader::Vertex,
                                       "attribute vec3 p; attribute vec3 c; uniform mat4 m; varying vec3 v;\n"
                                       "void main() { gl_Position = m * vec4(p, 1); v = c; }\n");
    m_program->addShaderFromSourceCode(QOpenGLShader::Fragment,
                                       "varying vec3 v; void main() { gl_FragColor = vec4(v, 1); }\n");
    m_program->bindAttributeLocation("p", 0);
    m_program->bindAttributeLocation("c", 1);
    m_program->link();
    m_buffers.resize(m_contents.size());
    gl.glGenBuffers(static_cast<GLsizei>(m_buffers.size()), m_buffers.data());
    for (std::size_t i = 0; i < m_buffers.size(); ++i) {
        gl.glBindBuffer(GL_ARRAY_BUFFER, m_buffers[i]);
        gl.glBufferData(GL_ARRAY_BUFFER,
                        static_cast<GLsizeiptr>(m_contents[i]->size() * sizeof(cloud::Vertex)),
                        m_contents[i]->data(), GL_STATIC_DRAW);
    }
    gl.glEnableVertexAttribArray(0);
    gl.glEnableVertexAttribArray(1);
    gl.glClearColor(0, 0, 0, 1);
}

void BareCloudView::paintGL()
{
    QOpenGLFunctions& gl = *context()->functions();
    gl.glClear(GL_COLOR_BUFFER_BIT);
    m_program->bind();
    gl.glUniformMatrix4fv(m_program->uniformLocation("m"), 1, GL_FALSE,
                          cloud::cameraMatrix(m_camera, {width(), height()}).data());
    for (std::size_t i = 0; i < m_buffers.size(); ++i) {
        gl.glBindBuffer(GL_ARRAY_BUFFER, m_buffers[i]);
        gl.glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, sizeof(cloud::Vertex), nullptr);
        gl.glVertexAttribPointer(1, 3, GL_FLOAT, GL_FALSE, sizeof(cloud::Vertex),
                                 reinterpret_cast<const void*>(12));
        gl.glDrawArrays(GL_POINTS, 0, static_cast<GLsizei>(m_contents[i]->size()));
    }
}
