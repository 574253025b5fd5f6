// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/gl/ShaderSources.h"

namespace shaders {

const char* const kSphereVertex = "attribute vec3 a_position;\n"
                                  "attribute vec2 a_texCoord;\n"
                                  "uniform mat4 u_mvpMatrix;\n"
                                  "varying vec2 v_texCoord;\n"
                                  "void main() {\n"
                                  "    gl_Position = u_mvpMatrix * vec4(a_position, 1);\n"
                                  "    v_texCoord = a_texCoord;\n"
                                  "}\n";

const char* const kTextureFragment = "uniform sampler2D u_sampler;\n"
                                     "varying vec2 v_texCoord;\n"
                                     "void main() {\n"
                                     "  gl_FragColor = texture2D(u_sampler, v_texCoord);\n"
                                     "}\n";

const char* const kPointVertex = "attribute vec3 a_position;\n"
                                 "attribute vec3 a_color;\n"
                                 "uniform mat4 u_mvpMatrix;\n"
                                 "varying vec3 v_color;\n"
                                 "void main() {\n"
                                 "    gl_Position = u_mvpMatrix * vec4(a_position, 1);\n"
                                 "    v_color = a_color;\n"
                                 "    gl_PointSize = 1.0;\n"
                                 "}\n";

const char* const kPointFragment = "varying vec3 v_color;\n"
                                   "void main() {\n"
                                   "  gl_FragColor = vec4(v_color, 1);\n"
                                   "}\n";

const char* const kOverlayVertex = "attribute vec2 a_position;\n"
                                   "attribute vec2 a_texCoord;\n"
                                   "varying vec2 v_texCoord;\n"
                                   "void main() {\n"
                                   "    gl_Position = vec4(a_position, 1, 1);\n"
                                   "    v_texCoord = a_texCoord;\n"
                                   "}\n";

const char* const kLineVertex = "attribute vec2 a_position;\n"
                                "void main() {\n"
                                "    gl_Position = vec4(a_position, 1, 1);\n"
                                "}\n";

const char* const kLineFragment = "void main() {\n"
                                  "  gl_FragColor = vec4(0.0, 0.5, 1.0, 1.0);\n"
                                  "}\n";

} // namespace shaders
