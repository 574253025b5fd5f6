// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/pictures/LoadPlan.h"

#include <algorithm>

namespace lumiscope {

std::vector<PictureOrder> loadPlan(const WalkTour& tour, const LoadState& state)
{
    std::vector<PictureOrder> plan;
    const auto add = [&](int station, int width) {
        const PictureOrder order{station, width,
                                 tour.stations[static_cast<std::size_t>(station)].node.file_path};
        const bool known = std::find(plan.begin(), plan.end(), order) != plan.end();
        if (!order.path.isEmpty() && !known) plan.push_back(order);
    };
    const auto addBoth = [&](int station) {
        add(station, kCoarseWidth);
        if (state.sharp) add(station, kSharpWidth);
    };

    if (state.destination >= 0) add(state.destination, kCoarseWidth);
    addBoth(state.station);
    const int seen = state.destination >= 0 ? state.destination : state.station;
    addBoth(seen);
    int rank = 0;
    for (const Neighbour& neighbour : tour.stations[static_cast<std::size_t>(seen)].neighbours) {
        if (rank < kSharpNeighbours && state.sharp)
            add(neighbour.station, kSharpWidth);
        else if (rank < kSharpNeighbours + kCoarseNeighbours)
            add(neighbour.station, kCoarseWidth);
        ++rank;
    }
    return plan;
}

} // namespace lumiscope
