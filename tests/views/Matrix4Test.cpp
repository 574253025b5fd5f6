// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The small matrices against the toolkit's.

#include "views/gl/Matrix4.h"

#include <gtest/gtest.h>

#include <QMatrix4x4>

namespace {

void expectSame(const Matrix4& ours, const QMatrix4x4& theirs)
{
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_NEAR(ours[i], theirs.constData()[i], 1e-5f) << i;
}

Matrix4 numbered(float first)
{
    Matrix4 m;
    for (std::size_t i = 0; i < 16; ++i)
        m[i] = first + 0.37f * static_cast<float>(i * i % 7);
    return m;
}

} // namespace

TEST(Matrix4, LookAtIsTheUsualRightHandedViewMatrix)
{
    QMatrix4x4 theirs;
    theirs.lookAt({1, -2, 3}, {4, 5, 0.5f}, {0, 0, 1});
    expectSame(LookAt({1, -2, 3}, {4, 5, 0.5f}, {0, 0, 1}), theirs);
}

TEST(Matrix4, LookAtAlongXKeepsUpUpAndLeftLeft)
{
    const Matrix4 view = LookAt({0, 0, 0}, {1, 0, 0}, {0, 0, 1});
    // Column of y (left of the viewer) points to -x of the screen, z to +y of the screen, x away from the
    // eye.
    EXPECT_EQ(view[4], -1.0f);
    EXPECT_EQ(view[9], 1.0f);
    EXPECT_EQ(view[2], -1.0f);
}

TEST(Matrix4, MultiplyIsThePlainProductColumnByColumn)
{
    const Matrix4 a = numbered(1), b = numbered(-2);
    expectSame(Multiply(a, b), QMatrix4x4(a.data()).transposed() * QMatrix4x4(b.data()).transposed());
    EXPECT_EQ(Multiply(IdentityMatrix(), a), a);
    EXPECT_EQ(Multiply(a, IdentityMatrix()), a);
}
