// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A photo or a text in front of the view. Escape, the button and a click beside it close it.

import {element} from "./message.js";
import {texts} from "./texts.js";

export function openOverlay(content, title) {
    const dialog = element("dialog", "overlay");
    const close = element("button", "close", "×");
    close.setAttribute("aria-label", texts.close);
    close.addEventListener("click", () => dialog.close());
    if (title) {
        const heading = element("h2", "", title);
        heading.id = "overlay-title";
        dialog.setAttribute("aria-labelledby", heading.id);
        dialog.append(heading);
    }
    dialog.append(content, close);
    dialog.addEventListener("click", (event) => {
        if (event.target === dialog) dialog.close();
    });
    dialog.addEventListener("close", () => dialog.remove());
    document.body.append(dialog);
    dialog.showModal();
}

export function showPhoto(address, caption) {
    const frame = element("div", "frame");
    const image = element("img", "");
    image.alt = caption || texts.photo;
    image.addEventListener("error", () => frame.replaceChildren(element("p", "problem", texts.noPhoto)));
    image.src = address;
    frame.append(image);
    openOverlay(frame, caption);
}

export function showText(caption, content) {
    openOverlay(element("div", "words", content), caption);
}
