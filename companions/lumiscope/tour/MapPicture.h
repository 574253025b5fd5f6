// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The picture of a navigation map, seen from above.

#pragma once

#include "companions/lumiscope/tour/PlanarFit.h"

#include <QImage>
#include <QMetaType>
#include <QSize>
#include <QString>

#include <optional>

namespace lumiscope {

struct MapPicture
{
    QString plan; ///< name by which the stations on it know it
    QImage image; ///< may be smaller than the plan; null when there is none to show
    QSize size;   ///< of the plan, in whose pixels the stations' places are given
    /// Of a cloud, where the world's places lie on it; a plan's own stations tell it.
    std::optional<PlanarFit> pixelFromWorld;
};

/// A plan picture in bounded memory.
MapPicture planPicture(const QString& plan, const QString& path);

/// A point-cloud file from above. Its picture is null when it cannot be shown.
MapPicture cloudPicture(const QString& plan, const QString& path);

} // namespace lumiscope

Q_DECLARE_METATYPE(lumiscope::MapPicture)
