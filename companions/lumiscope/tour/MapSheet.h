// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the navigation map shows: a picture, and where the stations stand on it.

#pragma once

#include "companions/lumiscope/tour/MapPicture.h"
#include "companions/lumiscope/tour/WalkTour.h"

#include <QPointF>
#include <QSizeF>

#include <optional>
#include <vector>

namespace lumiscope {

struct MapSheet
{
    QImage picture;                             ///< fills `size`; null: stations and links alone
    QSizeF size;                                ///< of the sheet; its unit is a pixel of the plan
    std::vector<std::optional<QPointF>> places; ///< of each station; none where it is not on this sheet
    PlanarFit fit;                              ///< turns headings of the world into those on the sheet
};

/// The sheet of a plan: the stations that name it, where they say they stand, or where a cloud puts them.
MapSheet mapSheet(const WalkTour& tour, const MapPicture& map);

/// Without a plan: all stations by their positions in the world, seen from above; side by side where the
/// tour gives them none.
MapSheet stationSheet(const WalkTour& tour);

} // namespace lumiscope
