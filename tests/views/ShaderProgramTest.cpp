// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/gl/ShaderProgram.h"

#include "tests/views/GlFixture.h"
#include "views/gl/ShaderSources.h"

class ShaderProgram : public GlFixture
{
protected:
    static constexpr const char* kPlainVertex = "void main() { gl_Position = gl_Vertex; }\n";
    static constexpr const char* kPlainFragment = "void main() { gl_FragColor = vec4(1.0); }\n";
};

TEST_F(ShaderProgram, EveryProgramOfTheViewsBuilds)
{
    EXPECT_NE(BuildShaderProgram(*gl, shaders::kSphereVertex, shaders::kTextureFragment), 0u);
    EXPECT_NE(BuildShaderProgram(*gl, shaders::kPointVertex, shaders::kPointFragment), 0u);
    EXPECT_NE(BuildShaderProgram(*gl, shaders::kOverlayVertex, shaders::kTextureFragment), 0u);
    EXPECT_NE(BuildShaderProgram(*gl, shaders::kLineVertex, shaders::kLineFragment), 0u);
}

TEST_F(ShaderProgram, ABuiltProgramKeepsNoShader)
{
    const GLuint program = BuildShaderProgram(*gl, kPlainVertex, kPlainFragment);
    ASSERT_NE(program, 0u);
    GLint attached = -1, linked = 0;
    gl->glGetProgramiv(program, GL_ATTACHED_SHADERS, &attached);
    gl->glGetProgramiv(program, GL_LINK_STATUS, &linked);
    EXPECT_EQ(attached, 0);
    EXPECT_EQ(linked, GL_TRUE);
    // Names are handed out in order: the two shaders were made just before the program.
    EXPECT_FALSE(gl->glIsShader(program - 1));
    EXPECT_FALSE(gl->glIsShader(program - 2));
}

TEST_F(ShaderProgram, AVertexShaderThatDoesNotCompileGivesZero)
{
    EXPECT_EQ(BuildShaderProgram(*gl, "void main() { gl_Position = nonsense; }\n", kPlainFragment), 0u);
}

TEST_F(ShaderProgram, AFragmentShaderThatDoesNotCompileGivesZero)
{
    EXPECT_EQ(BuildShaderProgram(*gl, kPlainVertex, "void main() { gl_FragColor = 1 }\n"), 0u);
}

TEST_F(ShaderProgram, ShadersThatDoNotLinkGiveZero)
{
    EXPECT_EQ(BuildShaderProgram(*gl,
                                 "varying vec2 v_place;\n"
                                 "void main() { v_place = vec2(1.0); gl_Position = gl_Vertex; }\n",
                                 "varying vec3 v_place;\n"
                                 "void main() { gl_FragColor = vec4(v_place, 1.0); }\n"),
              0u);
}

TEST_F(ShaderProgram, AMereWarningInTheLogGivesZero)
{
    const char* warned = "void main() { vec4 c; gl_FragColor = c; }\n";
    const GLuint shader = gl->glCreateShader(GL_FRAGMENT_SHADER);
    gl->glShaderSource(shader, 1, &warned, nullptr);
    gl->glCompileShader(shader);
    GLint compiled = 0, logLength = 0;
    gl->glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    gl->glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &logLength);
    ASSERT_EQ(compiled, GL_TRUE);
    if (logLength == 0) GTEST_SKIP() << "this driver does not warn of an unset variable";

    EXPECT_EQ(BuildShaderProgram(*gl, kPlainVertex, warned), 0u);
}

TEST_F(ShaderProgram, AFailedBuildLeavesItsShaders)
{
    const GLuint before = gl->glCreateShader(GL_VERTEX_SHADER);
    EXPECT_EQ(BuildShaderProgram(*gl, "not a shader", kPlainFragment), 0u);
    EXPECT_TRUE(gl->glIsShader(before + 1));
    EXPECT_TRUE(gl->glIsShader(before + 2));
}
