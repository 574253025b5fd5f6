// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/StippledOutline.h"

#include "views/gl/OverlayQuad.h"

#include <QOpenGLFunctions>

void DrawStippledOutline(QOpenGLFunctions& gl, GLuint program, const QRect& rectangle, QSize widgetSize)
{
    if (program == 0) return;
    const auto corners = OverlayQuad(rectangle, widgetSize); // of a strip; the loop goes round
    const GLfloat loop[] = {corners[0].x, corners[0].y, corners[1].x, corners[1].y,
                            corners[3].x, corners[3].y, corners[2].x, corners[2].y};
    gl.glUseProgram(program);
    // The system's own functions: the toolkit's are those that OpenGL ES has as well, and it has no stipple.
    ::glEnable(GL_LINE_STIPPLE);
    ::glLineStipple(1, 0x0F0F);
    const auto position = static_cast<GLuint>(gl.glGetAttribLocation(program, "a_position"));
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0); // client-side array
    gl.glVertexAttribPointer(position, 2, GL_FLOAT, GL_FALSE, 0, loop);
    gl.glEnableVertexAttribArray(position);
    gl.glDrawArrays(GL_LINE_LOOP, 0, 4);
    gl.glDisableVertexAttribArray(position);
    ::glDisable(GL_LINE_STIPPLE);
}
