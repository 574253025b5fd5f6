// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Mouse, touch, pen, wheel and keys, turned into what the visitor wants.

const CLICK_SLACK = 4; // pixels a press may move and still be none of a drag
const KEY_TURN = Math.PI / 36;
const KEY_ZOOM = 1.1;

export function listen(view, camera, actions) {
    const pointers = new Map();

    const at = (event) => {
        const box = view.getBoundingClientRect();
        return {x: event.clientX - box.left, y: event.clientY - box.top};
    };
    const spread = () => {
        const [one, other] = [...pointers.values()];
        return Math.hypot(one.x - other.x, one.y - other.y);
    };

    view.addEventListener("pointerdown", (event) => {
        if (event.target.closest("button, a, summary, details") || event.button !== 0) return;
        pointers.set(event.pointerId, at(event));
        view.setPointerCapture(event.pointerId);
        actions.touched();
    });
    view.addEventListener("pointermove", (event) => {
        const from = pointers.get(event.pointerId);
        if (!from) return;
        const to = at(event);
        if (pointers.size === 2) {
            const before = spread();
            pointers.set(event.pointerId, to);
            if (before > CLICK_SLACK) camera.zoomTo(camera.zoom * (spread() / before));
        } else {
            pointers.set(event.pointerId, to);
            camera.drag(from, to);
        }
        actions.moved();
    });
    for (const end of ["pointerup", "pointercancel"])
        view.addEventListener(end, (event) => pointers.delete(event.pointerId));

    view.addEventListener(
        "wheel",
        (event) => {
            if (event.target.closest(".plan") || event.deltaY === 0) return;
            event.preventDefault();
            camera.zoomTo(camera.zoom * (event.deltaY < 0 ? KEY_ZOOM : 1 / KEY_ZOOM));
            actions.moved();
        },
        {passive: false},
    );

    const turn = (left, down) => {
        const step = KEY_TURN / camera.zoom;
        camera.look(camera.yaw + left * step, camera.polar + down * step);
    };
    const keys = {
        ArrowLeft: () => turn(1, 0),
        ArrowRight: () => turn(-1, 0),
        ArrowUp: () => turn(0, -1),
        ArrowDown: () => turn(0, 1),
        "+": () => camera.zoomTo(camera.zoom * KEY_ZOOM),
        "=": () => camera.zoomTo(camera.zoom * KEY_ZOOM),
        "-": () => camera.zoomTo(camera.zoom / KEY_ZOOM),
    };
    document.addEventListener("keydown", (event) => {
        if (event.ctrlKey || event.altKey || event.metaKey || document.querySelector("dialog[open]")) return;
        const onButton = event.target.closest && event.target.closest("button, summary");
        if (event.key === "Enter" && !onButton) {
            event.preventDefault();
            actions.enter();
        } else if (keys[event.key]) {
            event.preventDefault();
            actions.touched();
            keys[event.key]();
            actions.moved();
        }
    });
}
