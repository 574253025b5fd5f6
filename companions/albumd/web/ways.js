// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The ways out of a panorama: where the floor marker of each neighbour stands, and how the heading carries over.

/// @return [{target, azimuth, polar, turn}]: the neighbour's id, the marker's direction, and what a view's yaw
/// gains on the way there, so that it looks the same way in the world.
export function waysFrom(tour, id) {
    const ways = [];
    for (const link of tour.links) {
        // Each panorama's marker has the height that the other one's record gives.
        if (link.pano0 === id)
            ways.push({target: link.pano1, azimuth: -link.rot0, polar: link.iconY1, turn: link.rot0 - link.rot1});
        if (link.pano1 === id)
            ways.push({
                target: link.pano0,
                azimuth: -link.rot1 - Math.PI,
                polar: link.iconY0,
                turn: link.rot1 - link.rot0,
            });
    }
    return ways;
}

/// The gain of yaw between panoramas that no link joins, from where they stand; 0 where that is not known.
export function turnBetween(from, to) {
    return from.location && to.location ? from.location.direction - to.location.direction : 0;
}
