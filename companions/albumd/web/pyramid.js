// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Where the tiles of a panorama lie on the sphere. Columns run from the picture's right edge to its left.

import {direction} from "./camera.js";

const TILE = 256;
export const BASE_LEVEL = 0;
const MIDDLE_LEVEL = 4;

function tileAt(panorama, level, column, row) {
    const {width, height} = panorama.levels[level];
    const left = width - TILE * (column + 1);
    const top = TILE * row;
    const from = Math.max(left, 0); // what reaches over the picture's edges shows nothing
    const bottom = Math.min(top + TILE, height);
    if (from >= left + TILE || top >= bottom) return null;
    const azimuth = (x) => Math.PI - (2 * Math.PI * x) / width;
    const polar = (y) => panorama.polarMin + ((panorama.polarMax - panorama.polarMin) * y) / height;
    const tile = {
        level,
        path: panorama.id + "/" + level + "/" + column + "/" + row,
        azimuths: [azimuth(from), azimuth(left + TILE)],
        polars: [polar(top), polar(bottom)],
        us: [(from - left) / TILE, 1],
        vs: [0, (bottom - top) / TILE],
    };
    const middle = [(tile.azimuths[0] + tile.azimuths[1]) / 2, (tile.polars[0] + tile.polars[1]) / 2];
    tile.middle = direction(middle[0], middle[1]);
    tile.radius = Math.hypot(tile.azimuths[0] - tile.azimuths[1], tile.polars[1] - tile.polars[0]) / 2;
    return tile;
}

/// All tiles of a level, made once.
export function tilesOf(panorama, level) {
    panorama.tiles = panorama.tiles || [];
    if (!panorama.tiles[level]) {
        const {columns, rows} = panorama.levels[level];
        const all = [];
        for (let row = 0; row < rows; ++row)
            for (let column = 0; column < columns; ++column) all.push(tileAt(panorama, level, column, row));
        panorama.tiles[level] = all.filter((tile) => tile);
    }
    return panorama.tiles[level];
}

/// The levels that a view needs, coarse to fine. Levels double with every second step; those between are left.
export function levelsFor(panorama, pixelsPerRadian) {
    const top = panorama.levels.length - 1;
    let level = BASE_LEVEL;
    while (level + 2 <= top && panorama.levels[level].width / (2 * Math.PI) < 0.8 * pixelsPerRadian) level += 2;
    return [BASE_LEVEL, MIDDLE_LEVEL, level].filter((each, i, all) => each <= level && all.indexOf(each) === i);
}

/// Tiles of a level that the camera may see, those in the middle first.
export function visibleTiles(panorama, level, camera) {
    const ahead = direction(camera.yaw, camera.polar);
    const off = (tile) =>
        Math.acos(Math.min(1, Math.max(-1, ahead[0] * tile.middle[0] + ahead[1] * tile.middle[1] + ahead[2] * tile.middle[2])));
    return tilesOf(panorama, level)
        .map((tile) => ({tile, off: off(tile)}))
        .filter((each) => each.off < camera.reach + each.tile.radius)
        .sort((one, other) => one.off - other.off)
        .map((each) => each.tile);
}
