// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>

#include <memory>

/// A current OpenGL 2.1 context without a window.
class GlFixture : public testing::Test
{
protected:
    void SetUp() override
    {
        QSurfaceFormat format;
        format.setVersion(2, 1);
        m_context.setFormat(format);
        ASSERT_TRUE(m_context.create());
        m_surface.setFormat(m_context.format());
        m_surface.create();
        ASSERT_TRUE(m_context.makeCurrent(&m_surface));
        gl = m_context.functions();
    }

    /// Makes a picture of this size the target of drawing, black.
    void drawInto(QSize size)
    {
        m_target = std::make_unique<QOpenGLFramebufferObject>(size);
        m_target->bind();
        gl->glViewport(0, 0, size.width(), size.height());
        gl->glClearColor(0, 0, 0, 1);
        gl->glClear(GL_COLOR_BUFFER_BIT);
    }

    QImage drawn() const { return m_target->toImage(); }

    /// Content of a texture, four bytes a pixel in the order R, G, B, A.
    QByteArray bytesOf(GLuint texture, int pixels)
    {
        using GetTexImage = void(QOPENGLF_APIENTRYP)(GLenum, GLint, GLenum, GLenum, void*);
        const auto read = reinterpret_cast<GetTexImage>(m_context.getProcAddress("glGetTexImage"));
        QByteArray bytes(pixels * 4, '\0');
        gl->glBindTexture(GL_TEXTURE_2D, texture);
        read(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, bytes.data());
        return bytes;
    }

    GLint levelParameter(GLuint texture, GLenum name)
    {
        using GetLevel = void(QOPENGLF_APIENTRYP)(GLenum, GLint, GLenum, GLint*);
        const auto read = reinterpret_cast<GetLevel>(m_context.getProcAddress("glGetTexLevelParameteriv"));
        GLint value = -1;
        gl->glBindTexture(GL_TEXTURE_2D, texture);
        read(GL_TEXTURE_2D, 0, name, &value);
        return value;
    }

    QOpenGLFunctions* gl = nullptr;

private:
    QOpenGLContext m_context;
    QOffscreenSurface m_surface;
    std::unique_ptr<QOpenGLFramebufferObject> m_target;
};
