// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/cloud/CloudCamera.h"
#include "views/cloud/VertexDecoder.h"

#include <QOpenGLShaderProgram>
#include <QOpenGLWidget>

#include <memory>
#include <vector>

/// What anybody would write to draw these points, nothing else: one buffer after the other.
class BareCloudView : public QOpenGLWidget
{
public:
    /// @param buffers  drawn in this order; outlive the first painting
    void show(std::vector<const std::vector<cloud::Vertex>*> buffers) { m_contents = std::move(buffers); }
    void look(const cloud::Camera& camera) { m_camera = camera; }

protected:
    void initializeGL() override;
    void paintGL() override;

private:
    std::vector<const std::vector<cloud::Vertex>*> m_contents;
    std::vector<GLuint> m_buffers;
    std::unique_ptr<QOpenGLShaderProgram> m_program;
    cloud::Camera m_camera;
};
