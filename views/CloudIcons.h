// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>

/// Where the point-cloud view shows its icons, widget pixels.

constexpr int kCloudIconSize = 28;
constexpr QRect kBoxSelectIcon(kCloudIconSize / 2, kCloudIconSize / 2, kCloudIconSize, kCloudIconSize);
constexpr QRect kRemoveIcon(2 * kCloudIconSize, kCloudIconSize / 2, kCloudIconSize, kCloudIconSize);

/// The selection of which nothing has been drawn yet: it holds no pixel.
constexpr QRect kNoSelection(-1, -1, 0, 0);
