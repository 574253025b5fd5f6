// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/window/FloorQuad.h"

#include <QOpenGLFunctions>

namespace lumiscope {

void drawFloorQuad(QOpenGLFunctions& gl, GLuint program, const Matrix4& mvp, const FloorMarker& marker,
                   GLuint texture)
{
    static constexpr GLfloat kTextureCorners[] = {0, 0, 0, 1, 1, 0, 1, 1};
    const auto corners = marker.corners();
    gl.glUseProgram(program);
    gl.glUniformMatrix4fv(gl.glGetUniformLocation(program, "u_mvpMatrix"), 1, GL_FALSE, mvp.data());
    gl.glUniform1i(gl.glGetUniformLocation(program, "u_sampler"), 0);
    const auto position = static_cast<GLuint>(gl.glGetAttribLocation(program, "a_position"));
    const auto texCoord = static_cast<GLuint>(gl.glGetAttribLocation(program, "a_texCoord"));
    gl.glVertexAttribPointer(position, 3, GL_FLOAT, GL_FALSE, 0, corners.data());
    gl.glVertexAttribPointer(texCoord, 2, GL_FLOAT, GL_FALSE, 0, kTextureCorners);
    gl.glEnableVertexAttribArray(position);
    gl.glEnableVertexAttribArray(texCoord);
    gl.glActiveTexture(GL_TEXTURE0);
    gl.glBindTexture(GL_TEXTURE_2D, texture);
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    gl.glDisableVertexAttribArray(position);
    gl.glDisableVertexAttribArray(texCoord);
}

} // namespace lumiscope
