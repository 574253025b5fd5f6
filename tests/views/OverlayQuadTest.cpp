// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/gl/OverlayQuad.h"

#include "tests/views/GlFixture.h"
#include "views/gl/ShaderProgram.h"
#include "views/gl/ShaderSources.h"
#include "views/gl/Texture.h"

TEST(OverlayQuadVertices, UseTheInclusiveEdgesInStripOrder)
{
    const auto quad = OverlayQuad(QRect(100, 50, 28, 28), {400, 200});
    EXPECT_FLOAT_EQ(quad[0].x, 2.0f * 100 / 400 - 1);
    EXPECT_FLOAT_EQ(quad[0].y, -(2.0f * 50 / 200 - 1));
    EXPECT_FLOAT_EQ(quad[3].x, 2.0f * 127 / 400 - 1);
    EXPECT_FLOAT_EQ(quad[3].y, -(2.0f * 77 / 200 - 1));
    const float texture[4][2] = {{0, 0}, {0, 1}, {1, 0}, {1, 1}};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(quad[i].u, texture[i][0]) << i;
        EXPECT_EQ(quad[i].v, texture[i][1]) << i;
    }
    EXPECT_EQ(quad[1].x, quad[0].x);
    EXPECT_EQ(quad[2].y, quad[0].y);
}

TEST(OverlayQuadVertices, ASpanTakesAPartOfTheTexture)
{
    const auto quad = OverlayQuad(QRect(0, 0, 11, 16), {400, 200}, {0.3f, 0.4f});
    EXPECT_EQ(quad[0].u, 0.3f);
    EXPECT_EQ(quad[1].u, 0.3f);
    EXPECT_EQ(quad[2].u, 0.4f);
    EXPECT_EQ(quad[3].u, 0.4f);
}

class OverlayDrawing : public GlFixture
{};

TEST_F(OverlayDrawing, TheFirstScanLineLiesAtTheTop)
{
    QImage halves(2, 2, QImage::Format_ARGB32);
    halves.fill(Qt::green);
    halves.setPixelColor(0, 0, Qt::red);
    halves.setPixelColor(1, 0, Qt::red);
    const GLuint texture = UploadTexture(*gl, halves.rgbSwapped(), GL_RGBA);
    const GLuint program = BuildShaderProgram(*gl, shaders::kOverlayVertex, shaders::kTextureFragment);

    drawInto({100, 80});
    gl->glUseProgram(program);
    // 21 pixels between the inclusive edges 30 and 50.
    DrawOverlayQuad(*gl, program, QRect(30, 20, 21, 41), {100, 80}, texture);
    const QImage picture = drawn();
    EXPECT_EQ(picture.pixelColor(40, 22), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(40, 58), QColor(Qt::green));
    EXPECT_EQ(picture.pixelColor(30, 22), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(49, 22), QColor(Qt::red));
    for (const QPoint outside : {QPoint(29, 40), QPoint(50, 40), QPoint(40, 19), QPoint(40, 60)})
        EXPECT_EQ(picture.pixelColor(outside), QColor(Qt::black)) << outside.x() << ',' << outside.y();
    EXPECT_EQ(gl->glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(OverlayDrawing, LeavesBothArraysDisabled)
{
    const GLuint program = BuildShaderProgram(*gl, shaders::kOverlayVertex, shaders::kTextureFragment);
    drawInto({100, 80});
    gl->glUseProgram(program);
    DrawOverlayQuad(*gl, program, QRect(0, 0, 5, 5), {100, 80}, 0);
    for (const char* name : {"a_position", "a_texCoord"}) {
        GLint enabled = -1;
        gl->glGetVertexAttribiv(static_cast<GLuint>(gl->glGetAttribLocation(program, name)),
                                GL_VERTEX_ATTRIB_ARRAY_ENABLED, &enabled);
        EXPECT_EQ(enabled, 0) << name;
    }
}
