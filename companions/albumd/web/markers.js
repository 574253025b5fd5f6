// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What can be clicked in the view: rings on the floor, photos, texts. Buttons, so that Tab and readers find them.

import {element} from "./message.js";
import {texts} from "./texts.js";

const RING = 112; // pixels across, seen from above
const LEAST_WIDTH = 48;
const LEAST_HEIGHT = 19;

function ringSize(polar) {
    const c = Math.max(Math.cos(Math.PI - polar), 0);
    return [Math.max(RING * c, LEAST_WIDTH), Math.max(RING * c * c, LEAST_HEIGHT)];
}

export class Markers {
    /// @param focused  (azimuth, polar): a marker got the keyboard's focus
    constructor(parent, focused) {
        this.box = element("div", "markers");
        parent.append(this.box);
        this.focused = focused;
        this.all = [];
    }

    clear() {
        this.box.replaceChildren();
        this.all = [];
    }

    addWay(way, number, act) {
        const button = this.add("ring", texts.walkOn + " " + number, way.azimuth, way.polar, act);
        const [width, height] = ringSize(way.polar);
        button.style.width = width + "px";
        button.style.height = height + "px";
        button.dataset.target = way.target;
    }

    addHotspot(hotspot, act) {
        const isPhoto = hotspot.photo !== undefined;
        const name = hotspot.caption || (isPhoto ? texts.photo : texts.text);
        const button = this.add(isPhoto ? "photo" : "text", name, hotspot.x, hotspot.y, act);
        button.append(element("span", "", name));
    }

    add(kind, name, azimuth, polar, act) {
        const button = element("button", "marker " + kind);
        button.type = "button";
        button.setAttribute("aria-label", name);
        button.addEventListener("click", act);
        button.addEventListener("focus", () => {
            if (button.matches(":focus-visible")) this.focused(azimuth, polar);
        });
        this.box.append(button);
        this.all.push({button, azimuth, polar, act, kind});
        return button;
    }

    place(camera) {
        for (const marker of this.all) {
            const at = camera.project(marker.azimuth, marker.polar);
            const seen =
                at && at.x > -RING && at.y > -RING && at.x < camera.width + RING && at.y < camera.height + RING;
            marker.button.classList.toggle("away", !seen);
            marker.at = seen ? at : null;
            const shown = seen ? at : {x: 0, y: 0};
            marker.button.style.transform = `translate(${shown.x}px, ${shown.y}px) translate(-50%, -50%)`;
        }
    }

    /// The ring nearest to the middle of the view; null when none is in it.
    wayAhead(camera) {
        let best = null;
        let least = Infinity;
        for (const marker of this.all) {
            if (marker.kind !== "ring" || !marker.at) continue;
            if (marker.at.x < 0 || marker.at.x > camera.width) continue;
            const off = Math.abs(marker.at.x - camera.width / 2);
            if (off < least) [best, least] = [marker, off];
        }
        return best;
    }
}
