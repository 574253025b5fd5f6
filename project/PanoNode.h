// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "project/Hotspots.h"
#include "project/PnoImageInfo.h"

#include <QImage>
#include <QList>
#include <QString>

/// One imported panorama. Frames and units: world frame right-handed, z up, metres.
struct PanoNode
{
    quint64 id = 0;            ///< identity number, unique within the project
    PnoImageInfo parameters{}; ///< copied unchanged from the panorama file
    bool lidar = false;        ///< carries lidar data
    double position_x = 0.0;   ///< world position, metres
    double position_y = 0.0;
    double position_z = 0.0;
    double vertex_x = 0.0; ///< marker on the plan, metres
    double vertex_y = 0.0;
    double direction = 0.0;   ///< heading of azimuth 0 in the world, radians
    qint32 plan_center_x = 0; ///< pixel on the plan image
    qint32 plan_center_y = 0;
    QString plan_src;  ///< full path of the plan image in the working folder, or empty
    QString base_name; ///< file name without folder and ending
    QString file_path; ///< full path of the panorama file
    QImage thumbnail;  ///< 256 x 96; an image, not a pixmap, so that no display is needed
    QList<PhotoHotspot> photos;
    QList<InfoHotspot> infos;

    /// The identity text (14 characters) as the file holds it.
    QByteArray name() const { return QByteArray(parameters.identity); }
};
