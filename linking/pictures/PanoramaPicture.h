// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QImage>
#include <QString>

/// Draws the whole panorama, equirectangular, from its tiles: azimuth +pi at the left edge, -pi at the right,
/// the top row at the upper end of the file's polar extent. Decodes on all cores.
/// @param pnoPath  file to read
/// @param image    8192 (level 10) or 4096 (level 8) pixels wide, any height, best RGB888; of any other width
///                 it stays as it is. Squares whose tile cannot be read or decoded, or that the file's grid
///                 does not have, stay as they were; a tile that is not 256 x 256 is clipped to its square.
/// @return false when the file cannot be opened as a panorama; the image is untouched then
bool assemblePanorama(const QString& pnoPath, QImage* image);

/// Leaves nothing of what was in the image, without a pass over all of it first: where `assemblePanorama`
/// lets a square or the image as it was, it becomes `missing`.
bool assemblePanorama(const QString& pnoPath, QImage* image, const QColor& missing);
