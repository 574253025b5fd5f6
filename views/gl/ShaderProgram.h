// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <qopengl.h>

class QOpenGLFunctions;

/// Builds a program from two shader texts in the current context, which must be the one of `gl`.
/// Strict by intent: any text in the compiler's or linker's log, be it only a warning, fails the build,
/// whatever the status says. The log can be read in the logging category "tourwright.views.gl"; the user sees
/// nothing.
/// @return the program, owned by the caller; 0 when the build failed (the shader objects then stay as they
/// are)
GLuint BuildShaderProgram(QOpenGLFunctions& gl, const char* vertexSource, const char* fragmentSource);
