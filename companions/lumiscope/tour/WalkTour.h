// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A tour as a visitor walks through it: stations, and what each shows of the others.

#pragma once

#include "project/RoamProject.h"
#include "project/TourXmlReader.h"
#include "views/sphere/SphereCamera.h"

#include <QMetaType>
#include <QSize>

#include <utility>
#include <vector>

namespace lumiscope {

/// A linked station as one station sees it.
struct Neighbour
{
    int station = 0;
    sphere::SpherePoint marker; ///< the floor below it, in the panorama that shows it
    double distance_m = 0.0;
};

struct Station
{
    PanoNode node;                     ///< its file path is empty until its panorama is unpacked
    std::vector<Neighbour> neighbours; ///< the nearest first
};

struct WalkTour
{
    std::vector<Station> stations;
    std::vector<std::pair<int, int>> links;
    int entry = 0;
    sphere::Camera entryView; ///< in the entry panorama's frame; its zoom is not limited yet
};

/// Links to panoramas that are not there, of a panorama with itself and second links of the same two are left
/// out. Stands as long as the project's lists do.
WalkTour walkTour(const RoamProject& project, const tourxml::EntryView& entryView);

} // namespace lumiscope

Q_DECLARE_METATYPE(lumiscope::WalkTour)
