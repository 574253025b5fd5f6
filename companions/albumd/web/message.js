// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Messages over the page. Text is set as text, never as markup.

import {texts} from "./texts.js";

/// A new element with a class, a text, and nothing else.
export function element(name, className, text = "") {
    const made = document.createElement(name);
    if (className) made.className = className;
    if (text) made.textContent = text;
    return made;
}

/// Instead of the tour: what is wrong, and a way to try again.
export function showError(message) {
    const box = element("div", "error");
    box.setAttribute("role", "alert");
    box.append(element("p", "", message));
    const retry = element("button", "", texts.retry);
    retry.addEventListener("click", () => location.reload());
    box.append(retry);
    document.body.append(box);
    retry.focus();
}

/// A line that goes away by itself.
export function showNote(message) {
    for (const earlier of document.querySelectorAll(".note")) earlier.remove();
    const note = element("div", "note", message);
    note.setAttribute("role", "status");
    note.addEventListener("animationend", () => note.remove());
    document.body.append(note);
}
