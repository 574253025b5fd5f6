// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/gl/ShaderProgram.h"

#include <QByteArray>
#include <QLoggingCategory>
#include <QOpenGLFunctions>

namespace {

// Warnings and above only: silent for the user, to be switched on for diagnosis.
Q_LOGGING_CATEGORY(lcGl, "tourwright.views.gl", QtWarningMsg)

bool compiles(QOpenGLFunctions& gl, GLuint shader, const char* source)
{
    gl.glShaderSource(shader, 1, &source, nullptr);
    gl.glCompileShader(shader);
    GLint status = 0, logLength = 0;
    gl.glGetShaderiv(shader, GL_COMPILE_STATUS, &status);
    gl.glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &logLength);
    if (logLength <= 0) return true;

    QByteArray log(logLength, '\0');
    gl.glGetShaderInfoLog(shader, logLength, nullptr, log.data());
    qCDebug(lcGl, "shader, status %d: %s", status, log.constData());
    return false;
}

bool links(QOpenGLFunctions& gl, GLuint program)
{
    gl.glLinkProgram(program);
    GLint status = 0, logLength = 0;
    gl.glGetProgramiv(program, GL_LINK_STATUS, &status);
    gl.glGetProgramiv(program, GL_INFO_LOG_LENGTH, &logLength);
    if (logLength <= 0) return true;

    QByteArray log(logLength, '\0');
    gl.glGetProgramInfoLog(program, logLength, nullptr, log.data());
    qCDebug(lcGl, "program, status %d: %s", status, log.constData());
    return false;
}

} // namespace

GLuint BuildShaderProgram(QOpenGLFunctions& gl, const char* vertexSource, const char* fragmentSource)
{
    const GLuint vertexShader = gl.glCreateShader(GL_VERTEX_SHADER);
    const GLuint fragmentShader = gl.glCreateShader(GL_FRAGMENT_SHADER);
    if (!compiles(gl, vertexShader, vertexSource)) return 0;
    if (!compiles(gl, fragmentShader, fragmentSource)) return 0;

    const GLuint program = gl.glCreateProgram();
    gl.glAttachShader(program, vertexShader);
    gl.glAttachShader(program, fragmentShader);
    if (!links(gl, program)) return 0;

    gl.glDetachShader(program, vertexShader);
    gl.glDetachShader(program, fragmentShader);
    gl.glDeleteShader(vertexShader);
    gl.glDeleteShader(fragmentShader);
    return program;
}
