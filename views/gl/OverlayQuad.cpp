// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/gl/OverlayQuad.h"

#include <QOpenGLFunctions>

std::array<OverlayVertex, 4> OverlayQuad(const QRect& rectangle, QSize widgetSize, TextureSpan span)
{
    const float width = static_cast<float>(widgetSize.width());
    const float height = static_cast<float>(widgetSize.height());
    const float left = 2.0f * static_cast<float>(rectangle.left()) / width - 1.0f;
    const float right = 2.0f * static_cast<float>(rectangle.right()) / width - 1.0f;
    const float top = -(2.0f * static_cast<float>(rectangle.top()) / height - 1.0f);
    const float bottom = -(2.0f * static_cast<float>(rectangle.bottom()) / height - 1.0f);
    return {{{left, top, span.left, 0.0f},
             {left, bottom, span.left, 1.0f},
             {right, top, span.right, 0.0f},
             {right, bottom, span.right, 1.0f}}};
}

void DrawOverlayQuad(QOpenGLFunctions& gl, GLuint program, const QRect& rectangle, QSize widgetSize,
                     GLuint texture, TextureSpan span)
{
    const auto vertices = OverlayQuad(rectangle, widgetSize, span);
    const auto position = static_cast<GLuint>(gl.glGetAttribLocation(program, "a_position"));
    const auto texCoord = static_cast<GLuint>(gl.glGetAttribLocation(program, "a_texCoord"));
    constexpr GLsizei stride = sizeof(OverlayVertex);

    // Client-side arrays: a bound buffer would turn the pointers into offsets.
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    gl.glVertexAttribPointer(position, 2, GL_FLOAT, GL_FALSE, stride, &vertices[0].x);
    gl.glVertexAttribPointer(texCoord, 2, GL_FLOAT, GL_FALSE, stride, &vertices[0].u);
    gl.glEnableVertexAttribArray(position);
    gl.glEnableVertexAttribArray(texCoord);
    gl.glActiveTexture(GL_TEXTURE0);
    gl.glBindTexture(GL_TEXTURE_2D, texture);
    gl.glUniform1i(gl.glGetUniformLocation(program, "u_sampler"), 0);
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    gl.glDisableVertexAttribArray(position);
    gl.glDisableVertexAttribArray(texCoord);
}
