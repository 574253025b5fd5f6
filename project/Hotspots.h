// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>
#include <QString>

/// A photo opened from a point of the panorama.
struct PhotoHotspot
{
    double sphere_x = 0.0;             ///< azimuth, radians
    double sphere_y = 1.5707963267949; ///< polar angle from the upper pole, radians
    qint32 photo_width = 0;            ///< pixels, 0 until the photo was loaded
    qint32 photo_height = 0;           ///< pixels, 0 until the photo was loaded
    QString caption;
    QString photo_path; ///< full path; a bare file name while a file is being read
    QRect marker;       ///< where the view last drew it, for picking; never saved
};

/// A text opened from a point of the panorama.
struct InfoHotspot
{
    double sphere_x = 0.0;             ///< azimuth, radians
    double sphere_y = 1.5707963267949; ///< polar angle from the upper pole, radians
    QString caption;
    QString content; ///< free text, any characters
    QRect marker;    ///< where the view last drew it, for picking; never saved
};
