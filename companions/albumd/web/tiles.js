// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Tiles on their way from the service to the graphics card: the most wanted first, a few at a time.

const MOST_LOADING = 6;
const MOST_KEPT = 480;

export class Tiles {
    /// @param upload   (image) => texture
    /// @param release  (texture) => nothing
    /// @param changed  called when a tile has come or failed
    constructor(album, upload, release, changed) {
        this.album = album;
        this.upload = upload;
        this.release = release;
        this.changed = changed;
        this.known = new Map(); // address -> {texture, failed}, the last used at the end
        this.wanted = []; // addresses
        this.loading = 0;
    }

    address(panorama, tile) {
        return this.album + "/tile/" + tile.path + "?" + encodeURIComponent(panorama.stored);
    }

    /// Texture of a tile, or null while there is none.
    texture(panorama, tile) {
        const address = this.address(panorama, tile);
        const entry = this.known.get(address);
        if (!entry) return null;
        this.known.delete(address);
        this.known.set(address, entry);
        return entry.texture;
    }

    settled(panorama, tile) {
        return this.known.has(this.address(panorama, tile));
    }

    failed(panorama, tile) {
        const entry = this.known.get(this.address(panorama, tile));
        return entry !== undefined && entry.failed;
    }

    /// What is wanted from now on, the most wanted first; what was wanted before and is not under way is not.
    want(list) {
        this.wanted = list
            .map(({panorama, tile}) => this.address(panorama, tile))
            .filter((address) => !this.known.has(address));
        this.pump();
    }

    pump() {
        this.underWay = this.underWay || new Set();
        while (this.loading < MOST_LOADING && this.wanted.length > 0) {
            const address = this.wanted.shift();
            if (!this.underWay.has(address) && !this.known.has(address)) this.load(address);
        }
    }

    async load(address) {
        this.underWay.add(address);
        ++this.loading;
        const image = new Image();
        image.src = address;
        let texture = null;
        try {
            await image.decode();
            texture = this.upload(image);
        } catch (error) {
            texture = null; // the coarser tile stays in its place
        }
        this.underWay.delete(address);
        --this.loading;
        this.known.set(address, {texture, failed: texture === null});
        this.forgetOldest();
        this.changed();
        this.pump();
    }

    forgetOldest() {
        for (const [address, entry] of this.known) {
            if (this.known.size <= MOST_KEPT) return;
            this.known.delete(address);
            if (entry.texture) this.release(entry.texture);
        }
    }
}
