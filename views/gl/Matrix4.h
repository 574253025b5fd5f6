// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <array>

/// 4 x 4, single precision, column-major, as glUniformMatrix4fv takes it without transposing.
using Matrix4 = std::array<float, 16>;
using Vector3 = std::array<float, 3>;

Matrix4 IdentityMatrix();

/// Right-handed view matrix: looks from `eye` to `centre`; `up` must not lie along that line.
Matrix4 LookAt(const Vector3& eye, const Vector3& centre, const Vector3& up);

/// The product a * b: what b does first, a does after.
Matrix4 Multiply(const Matrix4& a, const Matrix4& b);
