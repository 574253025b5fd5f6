// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/gl/Matrix4.h"

#include <cmath>

namespace {

float dot(const Vector3& a, const Vector3& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector3 cross(const Vector3& a, const Vector3& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Vector3 normalised(const Vector3& a)
{
    const float length = std::sqrt(dot(a, a));
    return {a[0] / length, a[1] / length, a[2] / length};
}

} // namespace

Matrix4 IdentityMatrix()
{
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
}

Matrix4 LookAt(const Vector3& eye, const Vector3& centre, const Vector3& up)
{
    const Vector3 f = normalised({centre[0] - eye[0], centre[1] - eye[1], centre[2] - eye[2]});
    const Vector3 s = normalised(cross(f, up));
    const Vector3 u = cross(s, f);
    return {s[0],         u[0],         -f[0],       0.0f, //
            s[1],         u[1],         -f[1],       0.0f, //
            s[2],         u[2],         -f[2],       0.0f, //
            -dot(s, eye), -dot(u, eye), dot(f, eye), 1.0f};
}

Matrix4 Multiply(const Matrix4& a, const Matrix4& b)
{
    Matrix4 product{};
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row) {
            float sum = 0.0f;
            for (std::size_t k = 0; k < 4; ++k)
                sum += a[4 * k + row] * b[4 * column + k];
            product[4 * column + row] = sum;
        }
    }
    return product;
}
