// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The map in the corner: the author's plan or the cloud from above where there is one, otherwise the places as
// they lie to each other.

import {showCloud} from "./cloud.js";
import {element} from "./message.js";
import {texts} from "./texts.js";

const SVG = "http://www.w3.org/2000/svg";
const MARGIN = 0.12; // of the plan's longer side

function svg(name, attributes) {
    const made = document.createElementNS(SVG, name);
    for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
    return made;
}

/// Turn, in radians, from map axes (x right, y up turned over) to the picture's, by least squares.
function turnOfPicture(places) {
    const mean = (key) => places.reduce((sum, each) => sum + each[key], 0) / places.length;
    const [mx, my, mu, mv] = ["x", "y", "u", "v"].map(mean);
    let [along, across] = [0, 0];
    for (const each of places) {
        const [x, y, u, v] = [each.x - mx, -(each.y - my), each.u - mu, each.v - mv];
        along += x * u + y * v;
        across += x * v - y * u;
    }
    return Math.atan2(across, along);
}

export class Plan {
    /// @param goTo  (id)
    constructor(parent, album, tour, goTo) {
        this.parent = parent;
        this.album = album;
        this.tour = tour;
        this.goTo = goTo;
        this.box = document.createElement("details");
        this.box.className = "plan";
        this.box.open = window.innerWidth > 700;
        const summary = document.createElement("summary");
        summary.textContent = texts.plan;
        this.box.append(summary);
        parent.append(this.box);
    }

    /// Shows the plan that this panorama stands on.
    async show(panorama) {
        this.current = panorama;
        const name = this.nameOf(panorama.location);
        if (name !== this.shown) {
            this.shown = name;
            const size = name ? await this.sizeOf(name) : null;
            if (this.shown !== name) return;
            this.draw(size ? name : "", size);
        }
        this.mark();
    }

    /// Of the map that a panorama stands on; "" without one, null without a place.
    nameOf(location) {
        if (!location) return null;
        return location.plan || (this.tour.clouds[location.cloud] && location.cloud) || "";
    }

    addressOf(name) {
        const cloud = this.tour.clouds[name];
        return this.album + (cloud ? "/cloud/" + name + "?" + encodeURIComponent(cloud.stored) : "/photo/" + name);
    }

    async sizeOf(name) {
        const image = new Image();
        image.src = this.addressOf(name);
        try {
            await image.decode();
            return {width: image.naturalWidth, height: image.naturalHeight};
        } catch (error) {
            return null; // the places alone, then
        }
    }

    /// Where a panorama stands on the map of that name.
    placeOn(name, location) {
        const cloud = this.tour.clouds[name];
        if (cloud) return {u: location.x * cloud.scale + cloud.left, v: cloud.top - location.y * cloud.scale};
        if (name) return {u: location.planX, v: location.planY};
        return {u: location.x, v: -location.y};
    }

    draw(name, size) {
        if (this.picture) this.picture.remove();
        if (this.solid) this.solid.remove();
        const places = this.tour.panoramas
            .filter((each) => each.location && (!name || this.nameOf(each.location) === name))
            .map((each) => ({
                id: each.id,
                x: each.location.x,
                y: each.location.y,
                ...this.placeOn(name, each.location),
            }));
        const extent = size ? {left: 0, top: 0, ...size} : this.extentOf(places);
        this.box.hidden = places.length === 0 || (!name && extent.width === 0);
        if (this.box.hidden) return;
        // A cloud lies as the world does; a plan's own places tell how it is turned.
        this.turn = places.length > 1 && !this.tour.clouds[name] ? turnOfPicture(places) : 0;
        this.unit = Math.max(extent.width, extent.height) / 100;
        this.picture = svg("svg", {
            viewBox: [extent.left, extent.top, extent.width, extent.height].join(" "),
            role: "group",
            "aria-label": texts.plan,
        });
        if (name)
            this.picture.append(
                svg("image", {href: this.addressOf(name), width: size.width, height: size.height}),
            );
        this.places = new Map(places.map((each) => [each.id, each]));
        if (!name) this.drawLinks();
        this.cone = svg("path", {class: "cone"});
        this.picture.append(this.cone);
        places.forEach((place, index) => this.drawPlace(place, index + 1));
        this.box.append(this.picture);
        this.offerSolid(name);
    }

    /// A cloud can be seen from all sides.
    offerSolid(name) {
        const cloud = this.tour.clouds[name];
        if (!cloud) return;
        this.solid = element("button", "solid", texts.threeD);
        this.solid.type = "button";
        this.solid.title = texts.cloud;
        const address = this.album + "/cloud/" + name + "/points?" + encodeURIComponent(cloud.stored);
        this.solid.addEventListener("click", () => showCloud(address, cloud));
        this.box.append(this.solid);
    }

    extentOf(places) {
        const us = places.map((each) => each.u);
        const vs = places.map((each) => each.v);
        const [left, top] = [Math.min(...us), Math.min(...vs)];
        const longer = Math.max(Math.max(...us) - left, Math.max(...vs) - top);
        if (!(longer > 0)) return {left: 0, top: 0, width: 0, height: 0};
        const edge = longer * MARGIN;
        const least = longer * 0.5; // a corridor is not to become a line
        const width = Math.max(Math.max(...us) - left, least);
        const height = Math.max(Math.max(...vs) - top, least);
        const middle = [(Math.max(...us) + left) / 2, (Math.max(...vs) + top) / 2];
        return {
            left: middle[0] - width / 2 - edge,
            top: middle[1] - height / 2 - edge,
            width: width + 2 * edge,
            height: height + 2 * edge,
        };
    }

    drawLinks() {
        for (const link of this.tour.links) {
            const [one, other] = [this.places.get(link.pano0), this.places.get(link.pano1)];
            if (!one || !other) continue;
            const line = svg("line", {class: "link", x1: one.u, y1: one.v, x2: other.u, y2: other.v});
            line.style.strokeWidth = this.unit;
            this.picture.append(line);
        }
    }

    drawPlace(place, number) {
        const spot = svg("circle", {
            class: "place",
            cx: place.u,
            cy: place.v,
            r: 3.2 * this.unit,
            tabindex: 0,
            role: "button",
            "aria-label": texts.goTo + " " + number,
            "data-target": place.id,
        });
        spot.style.strokeWidth = this.unit;
        const go = () => this.goTo(place.id);
        spot.addEventListener("click", go);
        spot.addEventListener("keydown", (event) => {
            if (event.key !== "Enter" && event.key !== " ") return;
            event.preventDefault();
            event.stopPropagation();
            go();
        });
        place.spot = spot;
        this.picture.append(spot);
    }

    mark() {
        if (!this.places || this.box.hidden) return;
        for (const place of this.places.values())
            place.spot.classList.toggle("here", place.id === this.current.id);
    }

    /// @param heading  of the view in the world, radians
    look(heading, halfAngle) {
        const place = this.places && !this.box.hidden && this.current && this.places.get(this.current.id);
        if (!place) return;
        const reach = 14 * this.unit;
        const corner = (angle) => {
            const at = -angle + this.turn;
            return place.u + reach * Math.cos(at) + "," + (place.v + reach * Math.sin(at));
        };
        const points = [-1, -0.5, 0, 0.5, 1].map((part) => corner(heading + part * halfAngle));
        this.cone.setAttribute("d", "M" + place.u + "," + place.v + "L" + points.join("L") + "Z");
    }
}
