// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

class QImage;

/// The pictures that a panorama view draws on its sphere, bytes in R, G, B, A order. All are held by the
/// owner and outlive the view; a mode uses only its own and the others are null.
struct MarkerImages
{
    const QImage* photo = nullptr;
    const QImage* photoSelected = nullptr;
    const QImage* info = nullptr;
    const QImage* infoSelected = nullptr;
    const QImage* link = nullptr;
    const QImage* cross = nullptr;
    const QImage* crossSelected = nullptr;
    const QImage* digits = nullptr; ///< ten glyphs side by side, 0 to 9
    const QImage* digitsSelected = nullptr;
};
