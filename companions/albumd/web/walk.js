// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The walk: which panorama is shown, and from it to the next.

import {Camera} from "./camera.js";
import {listen} from "./input.js";
import {Markers} from "./markers.js";
import {element, showNote} from "./message.js";
import {showPhoto, showText} from "./overlay.js";
import {Plan} from "./plan.js";
import {BASE_LEVEL, levelsFor, tilesOf, visibleTiles} from "./pyramid.js";
import {Sphere} from "./sphere.js";
import {texts} from "./texts.js";
import {Tiles} from "./tiles.js";
import {turnBetween, waysFrom} from "./ways.js";

const BLEND_MS = 350;
const AHEAD_LEVELS = [BASE_LEVEL, 4]; // of the neighbours, loaded before the visitor goes there
const MOST_RATIO = 2; // screen pixels per CSS pixel that are worth their tiles

export class Walk {
    constructor(view, album, tour) {
        this.view = view;
        this.album = album;
        this.tour = tour;
        this.panoramas = new Map(tour.panoramas.map((each) => [each.id, each]));
        this.camera = new Camera();
        const canvas = element("canvas", "");
        view.append(canvas);
        view.setAttribute("aria-label", texts.view);
        this.sphere = new Sphere(canvas);
        this.tiles = new Tiles(
            album,
            (image) => this.sphere.upload(image),
            (texture) => this.sphere.release(texture),
            () => this.arrived(),
        );
        this.markers = new Markers(view, (azimuth, polar) => this.turnTo(azimuth, polar));
        this.buildFrame();
        this.plan = new Plan(view, album, tour, (id) => this.goTo(id));
        listen(view, this.camera, {
            moved: () => this.redraw(),
            touched: () => this.hint.classList.add("gone"),
            enter: () => this.enter(),
        });
        new ResizeObserver(() => this.resized()).observe(view);
    }

    buildFrame() {
        this.view.append(element("h1", "title", this.tour.name));
        this.hint = element("p", "hint", texts.hint);
        const bar = element("div", "bar");
        const button = (name, kind, act) => {
            const made = element("button", kind);
            made.type = "button";
            made.title = name;
            made.setAttribute("aria-label", name);
            made.addEventListener("click", act);
            bar.append(made);
        };
        const zoomBy = (factor) => () => {
            this.camera.zoomTo(this.camera.zoom * factor);
            this.redraw();
        };
        button(texts.zoomIn, "closer", zoomBy(1.25));
        button(texts.zoomOut, "farther", zoomBy(0.8));
        if (document.fullscreenEnabled)
            button(texts.fullScreen, "full", () =>
                document.fullscreenElement ? document.exitFullscreen() : document.documentElement.requestFullscreen(),
            );
        this.view.append(this.hint, bar);
    }

    async begin() {
        const entry = this.panoramas.get(this.tour.entry) || this.tour.panoramas[0];
        this.camera.look(this.tour.direction, this.tour.elevation);
        this.camera.zoom = 1 / Math.tan(Math.min(Math.max(this.tour.viewAngle, 0.3), 2.2) / 2);
        await this.show(entry, this.camera.yaw);
    }

    neighbours() {
        return waysFrom(this.tour, this.current.id).filter((way) => this.panoramas.has(way.target));
    }

    /// Waits for the coarse picture, so that nobody walks into the dark.
    async show(panorama, yaw) {
        const call = (this.call = (this.call || 0) + 1);
        const [base] = tilesOf(panorama, BASE_LEVEL);
        this.awaited = {panorama, base};
        this.want();
        await new Promise((resolve) => {
            this.onArrival = () => this.tiles.settled(panorama, base) && resolve();
            this.onArrival();
        });
        if (call !== this.call) return;
        this.awaited = null;
        if (this.tiles.failed(panorama, base)) showNote(texts.noPanorama);
        this.startBlend();
        this.current = panorama;
        this.camera.look(yaw, this.camera.polar);
        this.resized();
        this.placeMarkers();
        await this.plan.show(panorama);
        this.redraw();
    }

    startBlend() {
        if (!this.current || matchMedia("(prefers-reduced-motion: reduce)").matches) return;
        const camera = Object.assign(new Camera(), this.camera);
        this.leaving = {panorama: this.current, camera, until: performance.now() + BLEND_MS};
    }

    placeMarkers() {
        const hadFocus = this.markers.box.contains(document.activeElement);
        this.markers.clear();
        this.neighbours().forEach((way, index) => this.markers.addWay(way, index + 1, () => this.walk(way)));
        for (const hotspot of this.current.hotspots)
            this.markers.addHotspot(hotspot, () =>
                hotspot.photo === undefined
                    ? showText(hotspot.caption, hotspot.text)
                    : showPhoto(this.album + "/photo/" + hotspot.photo, hotspot.caption),
            );
        if (hadFocus) this.view.focus({preventScroll: true});
    }

    walk(way) {
        this.hint.classList.add("gone");
        return this.show(this.panoramas.get(way.target), this.camera.yaw + way.turn);
    }

    goTo(id) {
        if (id === this.current.id) return;
        const way = this.neighbours().find((each) => each.target === id);
        if (way) return this.walk(way);
        const panorama = this.panoramas.get(id);
        return this.show(panorama, this.camera.yaw + turnBetween(this.current, panorama));
    }

    enter() {
        const marker = this.markers.wayAhead(this.camera);
        if (marker) marker.act();
    }

    turnTo(azimuth, polar) {
        this.camera.look(azimuth, Math.min(Math.max(polar, 1.0), 2.1));
        this.redraw();
    }

    resized() {
        const widest = this.current ? this.current.levels[this.current.levels.length - 1].width : 8192;
        this.camera.resize(this.view.clientWidth, this.view.clientHeight, widest);
        this.redraw();
    }

    arrived() {
        if (this.onArrival) this.onArrival();
        this.redraw();
    }

    redraw() {
        if (this.waiting) return;
        this.waiting = true;
        requestAnimationFrame(() => {
            this.waiting = false;
            if (this.current) this.draw();
        });
    }

    get ratio() {
        return Math.min(window.devicePixelRatio || 1, MOST_RATIO);
    }

    levels(panorama) {
        return levelsFor(panorama, this.camera.half * this.camera.zoom * this.ratio);
    }

    layers(panorama, camera) {
        return this.levels(panorama).map((level) =>
            visibleTiles(panorama, level, camera)
                .map((tile) => ({tile, texture: this.tiles.texture(panorama, tile)}))
                .filter((each) => each.texture),
        );
    }

    /// What the service is to send, the most wanted first: what is seen, coarse to fine, then the neighbours.
    want() {
        const list = [];
        const add = (panorama, tiles) => tiles.forEach((tile) => list.push({panorama, tile}));
        if (this.awaited) add(this.awaited.panorama, [this.awaited.base]);
        if (this.current) {
            for (const level of this.levels(this.current))
                add(this.current, visibleTiles(this.current, level, this.camera));
            this.view.dataset.sharp = list.every(({panorama, tile}) => this.tiles.settled(panorama, tile)) ? "yes" : "no";
            for (const level of AHEAD_LEVELS)
                for (const way of this.neighbours()) {
                    const panorama = this.panoramas.get(way.target);
                    add(panorama, tilesOf(panorama, level));
                }
        }
        this.tiles.want(list);
    }

    draw() {
        const {camera, current} = this;
        this.want();
        this.sphere.begin(camera, this.ratio);
        this.sphere.draw(camera, this.layers(current, camera), 1);
        const left = this.leaving ? (this.leaving.until - performance.now()) / BLEND_MS : 0;
        if (left > 0) {
            this.sphere.draw(this.leaving.camera, this.layers(this.leaving.panorama, this.leaving.camera), left);
            this.redraw();
        } else {
            this.leaving = null;
        }
        this.markers.place(camera);
        this.plan.look(camera.yaw + (current.location ? current.location.direction : 0), Math.atan(camera.width / 2 / camera.half / camera.zoom));
        this.view.dataset.panorama = current.id;
        this.view.dataset.yaw = camera.yaw;
        this.view.dataset.polar = camera.polar;
        this.view.dataset.zoom = camera.zoom;
        this.view.dataset.blending = left > 0 ? "yes" : "no";
    }
}
