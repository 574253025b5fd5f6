// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Start of the page: fetches what the album is, and lets the visitor walk through it.

import {showError} from "./message.js";
import {texts} from "./texts.js";
import {Walk} from "./walk.js";

async function fetchTour(album) {
    const reply = await fetch(album + "/tour");
    if (!reply.ok) throw new Error(texts.noTour);
    const tour = await reply.json();
    if (tour.panoramas.length === 0) throw new Error(texts.emptyTour);
    return tour;
}

async function start() {
    const view = document.getElementById("view");
    try {
        const album = document.body.dataset.album;
        const walk = new Walk(view, album, await fetchTour(album));
        await walk.begin();
    } catch (error) {
        showError(error instanceof TypeError ? texts.noService : error.message);
    }
}

start();
