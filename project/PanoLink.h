// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>
#include <QString>

/// How a link came to be. Stored in files: never renumber.
enum PanoLinkMode : qint32
{
    LinkMatched = 0, ///< found by the linking library, with match files
    LinkByHand = 1,  ///< made by hand, no match files
    LinkByPose = 2,  ///< found by the library from the poses alone, no match files
};

/// A link between two panoramas, named by identity, never by list index. Defaults are those of a link made by
/// hand without lidar.
struct PanoLink
{
    qint64 id_0 = 0; ///< identity number of panorama 0
    qint64 id_1 = 0;
    char name_0[16] = {}; ///< identity text of panorama 0, zero-terminated
    char name_1[16] = {};
    double rot_0 = 1.5707963267948966; ///< minus the azimuth of station 1 in panorama 0, radians
    double rot_1 = 1.5707963267948966; ///< minus the azimuth of station 0 in panorama 1, minus pi, radians
    double tilt_x0 = 0.0;              ///< rotation of panorama 0 about the link's axis, radians
    double tilt_x1 = 0.0;
    double tilt_y0 = 0.0;               ///< elevation of station 1 seen from station 0, radians
    double icon_y0 = 2.356194490192345; ///< polar angle, from panorama 1, of the floor below station 0
    double icon_y1 = 2.356194490192345; ///< polar angle, from panorama 0, of the floor below station 1
    double spacing = 2.0;               ///< distance of the stations, metres
    qint32 mode = LinkByHand;           ///< a `PanoLinkMode`; kept as a number because files may hold others
    double reliability = 0.0;           ///< probability that the relative pose is right, 0 to 1
    QString match_path_0;               ///< "..._0.dat" in the working folder, or empty
    QString match_path_1;               ///< "..._1.dat" in the working folder, or empty
    QRect icon_0;                       ///< where the views last drew the marker; never saved
    QRect icon_1;
};
