// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/gl/Texture.h"

#include "tests/views/GlFixture.h"

class Texture : public GlFixture
{};

TEST_F(Texture, AnIconLiesInMemoryAsItsOwnerSwappedIt)
{
    QImage icon(2, 1, QImage::Format_ARGB32);
    icon.setPixelColor(0, 0, QColor(10, 20, 30, 40));
    icon.setPixelColor(1, 0, QColor(200, 150, 100, 255));
    const GLuint texture = UploadTexture(*gl, icon.rgbSwapped(), GL_RGBA);
    const QByteArray bytes = bytesOf(texture, 2);
    EXPECT_EQ(bytes, QByteArray("\x0a\x14\x1e\x28\xc8\x96\x64\xff", 8));
}

TEST_F(Texture, FiltersLinearlyAndClampsToTheEdge)
{
    const GLuint texture = UploadTexture(*gl, QImage(4, 4, QImage::Format_ARGB32), GL_RGBA);
    GLint bound = -1;
    gl->glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(bound, 0);
    gl->glBindTexture(GL_TEXTURE_2D, texture);
    const auto parameter = [this](GLenum name) {
        GLint value = 0;
        gl->glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
        return value;
    };
    EXPECT_EQ(parameter(GL_TEXTURE_MIN_FILTER), GL_LINEAR);
    EXPECT_EQ(parameter(GL_TEXTURE_MAG_FILTER), GL_LINEAR);
    EXPECT_EQ(parameter(GL_TEXTURE_WRAP_S), GL_CLAMP_TO_EDGE);
    EXPECT_EQ(parameter(GL_TEXTURE_WRAP_T), GL_CLAMP_TO_EDGE);
}

TEST_F(Texture, ANullImageGivesAnEmptyTexture)
{
    const GLuint texture = UploadTexture(*gl, QImage(), GL_RGBA);
    EXPECT_NE(texture, 0u);
    EXPECT_EQ(levelParameter(texture, 0x1000 /* GL_TEXTURE_WIDTH */), 0);
    EXPECT_EQ(gl->glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Texture, ThePanoramaIsAllocatedFirstAndFilledLater)
{
    const GLuint texture = AllocateTexture(*gl, {4, 2}, GL_RGB);
    EXPECT_EQ(levelParameter(texture, 0x1000), 4);
    EXPECT_EQ(levelParameter(texture, 0x1001 /* GL_TEXTURE_HEIGHT */), 2);

    QImage panorama(4, 2, QImage::Format_RGB888);
    panorama.fill(Qt::blue);
    panorama.setPixelColor(0, 0, QColor(1, 2, 3));
    panorama.setPixelColor(3, 1, QColor(7, 8, 9));
    UpdateTexture(*gl, texture, panorama);
    const QByteArray bytes = bytesOf(texture, 8);
    EXPECT_EQ(bytes.mid(0, 3), QByteArray("\x01\x02\x03"));
    EXPECT_EQ(bytes.mid(28, 3), QByteArray("\x07\x08\x09"));
    EXPECT_EQ(gl->glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Texture, APictureWithTooFewBytesAPixelIsConvertedNotReadBeyondItsEnd)
{
    QImage grey(64, 64, QImage::Format_Grayscale8);
    grey.fill(120);
    const GLuint icon = UploadTexture(*gl, grey, GL_RGBA);
    EXPECT_EQ(static_cast<unsigned char>(bytesOf(icon, 64 * 64).at(4 * 64 * 64 - 2)), 120);
    const GLuint panorama = UploadTexture(*gl, grey, GL_RGB);
    EXPECT_EQ(static_cast<unsigned char>(bytesOf(panorama, 64 * 64).at(4 * 64 * 64 - 2)), 120);
}
