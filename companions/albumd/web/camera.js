// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The view into the sphere. Azimuth 0 is the picture's centre and grows to the left, polar angle 0 is the upper
// pole; at zoom 1 the larger side of the view spans 90 degrees. All angles in radians.

const LEAST_ZOOM = 0.5;
const POLE_MARGIN = 0.01;

export function wrapped(angle) {
    return angle - 2 * Math.PI * Math.floor((angle + Math.PI) / (2 * Math.PI));
}

/// Unit vector of a direction, z up.
export function direction(azimuth, polar) {
    return [
        Math.cos(azimuth) * Math.sin(polar),
        Math.sin(azimuth) * Math.sin(polar),
        Math.cos(polar),
    ];
}

export class Camera {
    constructor() {
        this.yaw = 0;
        this.polar = Math.PI / 2;
        this.zoom = 1;
        this.mostZoom = 1;
        this.width = 1;
        this.height = 1;
    }

    /// Half the larger side, CSS pixels.
    get half() {
        return Math.max(this.width, this.height) / 2;
    }

    resize(width, height, panoramaWidth) {
        this.width = Math.max(width, 1);
        this.height = Math.max(height, 1);
        this.mostZoom = Math.max(2, panoramaWidth / (this.half * 2 * Math.PI));
        this.zoomTo(this.zoom);
    }

    look(yaw, polar) {
        this.yaw = wrapped(yaw);
        this.polar = Math.min(Math.max(polar, POLE_MARGIN), Math.PI - POLE_MARGIN);
    }

    zoomTo(zoom) {
        this.zoom = Math.min(Math.max(zoom, LEAST_ZOOM), this.mostZoom);
    }

    /// Place on the view in CSS pixels; null behind the viewer.
    project(azimuth, polar) {
        const p = direction(azimuth, polar);
        const x = p[0] * Math.cos(this.yaw) + p[1] * Math.sin(this.yaw);
        const y = p[1] * Math.cos(this.yaw) - p[0] * Math.sin(this.yaw);
        const depth = x * Math.sin(this.polar) + p[2] * Math.cos(this.polar);
        if (depth <= 1e-6) return null;
        const scale = (this.zoom / depth) * this.half;
        return {
            x: (this.width - 1) / 2 - y * scale,
            y: (this.height - 1) / 2 - (p[2] * Math.sin(this.polar) - x * Math.cos(this.polar)) * scale,
        };
    }

    /// Direction under a place on the view: {azimuth, polar}.
    unproject(x, y) {
        const left = -(x - (this.width - 1) / 2) / this.half / this.zoom;
        const up = -(y - (this.height - 1) / 2) / this.half / this.zoom;
        const s = Math.sin(this.polar);
        const c = Math.cos(this.polar);
        const ahead = s - up * c;
        const vx = ahead * Math.cos(this.yaw) - left * Math.sin(this.yaw);
        const vy = ahead * Math.sin(this.yaw) + left * Math.cos(this.yaw);
        return {azimuth: Math.atan2(vy, vx), polar: Math.atan2(Math.hypot(vx, vy), c + up * s)};
    }

    /// Turns so that what was under one place is under another, as far as the poles let it.
    drag(from, to) {
        const grabbed = this.unproject(from.x, from.y);
        for (let round = 0; round < 4; ++round) {
            const now = this.unproject(to.x, to.y);
            const turn = wrapped(grabbed.azimuth - now.azimuth);
            this.look(
                this.yaw + Math.min(Math.max(turn, -0.5), 0.5),
                this.polar + grabbed.polar - now.polar,
            );
        }
    }

    /// Rows: ahead, left, up of the view, in the panorama's frame.
    rotation() {
        const e = Math.PI / 2 - this.polar;
        const [c, s, ce, se] = [Math.cos(this.yaw), Math.sin(this.yaw), Math.cos(e), Math.sin(e)];
        return [c * ce, s * ce, se, -s, c, 0, -c * se, -s * se, ce];
    }

    /// Angle between the view's middle and its farthest corner.
    get reach() {
        return Math.atan(Math.hypot(this.width, this.height) / 2 / this.half / this.zoom);
    }
}
