// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The cloud as a solid thing to turn around in front of the view.

import {element} from "./message.js";
import {openOverlay} from "./overlay.js";
import {texts} from "./texts.js";

const VERTEX = `
attribute vec3 place;
attribute vec3 colour;
uniform vec3 scale, shift;
uniform mat4 camera;
uniform float size;
varying vec3 shown;
void main() {
    gl_Position = camera * vec4(place * scale + shift, 1.0);
    gl_PointSize = clamp(size / gl_Position.w, 1.5, 24.0);
    shown = colour;
}`;

const FRAGMENT = `
precision mediump float;
varying vec3 shown;
void main() { gl_FragColor = vec4(shown, 1.0); }`;

const POINT_BYTES = 10;
const FIELD = Math.PI / 4; // of view, upright
const KEY_TURN = Math.PI / 24;

function program(gl) {
    const made = gl.createProgram();
    for (const [kind, source] of [[gl.VERTEX_SHADER, VERTEX], [gl.FRAGMENT_SHADER, FRAGMENT]]) {
        const shader = gl.createShader(kind);
        gl.shaderSource(shader, source);
        gl.compileShader(shader);
        gl.attachShader(made, shader);
    }
    gl.bindAttribLocation(made, 0, "place");
    gl.bindAttribLocation(made, 1, "colour");
    gl.linkProgram(made);
    return gl.getProgramParameter(made, gl.LINK_STATUS) ? made : null;
}

/// Looks at the origin from an azimuth, an elevation and a distance; column by column.
function cameraMatrix(azimuth, elevation, distance, aspect) {
    const [c, s, ce, se] = [Math.cos(azimuth), Math.sin(azimuth), Math.cos(elevation), Math.sin(elevation)];
    const [right, up, back] = [[-s, c, 0], [-c * se, -s * se, ce], [c * ce, s * ce, se]];
    const f = 1 / Math.tan(FIELD / 2);
    const [near, far] = [distance / 100, distance * 10];
    const [a, b] = [(far + near) / (near - far), (2 * far * near) / (near - far)];
    const columns = [];
    for (let k = 0; k < 3; ++k) columns.push((f / aspect) * right[k], f * up[k], a * back[k], -back[k]);
    columns.push(0, 0, -a * distance + b, distance);
    return new Float32Array(columns);
}

class CloudView {
    /// @param points  ArrayBuffer: x, y, z as u16, red, green, blue, 0
    constructor(canvas, cloud, points) {
        const gl = canvas.getContext("webgl", {alpha: false});
        const made = gl && program(gl);
        if (!made) throw new Error(texts.noWebGl);
        Object.assign(this, {canvas, gl, count: Math.floor(points.byteLength / POINT_BYTES)});
        gl.useProgram(made);
        this.uniforms = {};
        for (const name of ["scale", "shift", "camera", "size"]) this.uniforms[name] = gl.getUniformLocation(made, name);
        gl.bindBuffer(gl.ARRAY_BUFFER, gl.createBuffer());
        gl.bufferData(gl.ARRAY_BUFFER, points, gl.STATIC_DRAW);
        gl.enableVertexAttribArray(0);
        gl.enableVertexAttribArray(1);
        gl.vertexAttribPointer(0, 3, gl.UNSIGNED_SHORT, false, POINT_BYTES, 0);
        gl.vertexAttribPointer(1, 3, gl.UNSIGNED_BYTE, true, POINT_BYTES, 6);
        gl.enable(gl.DEPTH_TEST);
        gl.clearColor(0.13, 0.13, 0.14, 1);
        this.measure(cloud, points);
        [this.azimuth, this.elevation, this.distance] = [-Math.PI / 2, 0.9, this.reach * 2];
        new ResizeObserver(() => this.draw()).observe(canvas);
    }

    /// The middle of what is there becomes the origin.
    measure(cloud, points) {
        const words = new Uint16Array(points, 0, this.count * (POINT_BYTES / 2));
        const low = [65535, 65535, 65535];
        const high = [0, 0, 0];
        for (let i = 0; i < words.length; i += POINT_BYTES / 2)
            for (let k = 0; k < 3; ++k) {
                low[k] = Math.min(low[k], words[i + k]);
                high[k] = Math.max(high[k], words[i + k]);
            }
        const steps = [cloud.step, cloud.step, cloud.stepZ];
        const extents = steps.map((step, k) => Math.max(high[k] - low[k], 1) * step);
        this.reach = Math.hypot(...extents) / 2;
        // Seen from above, points as dense as these leave no gaps.
        this.spacing = Math.sqrt((extents[0] * extents[1]) / Math.max(this.count, 1));
        this.gl.uniform3fv(this.uniforms.scale, steps);
        this.gl.uniform3fv(this.uniforms.shift, steps.map((step, k) => (-step * (low[k] + high[k])) / 2));
    }

    turn(left, up) {
        this.azimuth -= left;
        this.elevation = Math.min(Math.max(this.elevation + up, 0.05), Math.PI / 2 - 0.001);
        this.draw();
    }

    zoom(factor) {
        this.distance = Math.min(Math.max(this.distance / factor, this.reach * 0.1), this.reach * 4);
        this.draw();
    }

    draw() {
        if (this.waiting) return;
        this.waiting = true;
        requestAnimationFrame(() => {
            this.waiting = false;
            this.paint();
        });
    }

    paint() {
        const {gl, canvas} = this;
        const ratio = Math.min(window.devicePixelRatio || 1, 2);
        canvas.width = Math.max(Math.round(canvas.clientWidth * ratio), 1);
        canvas.height = Math.max(Math.round(canvas.clientHeight * ratio), 1);
        gl.viewport(0, 0, canvas.width, canvas.height);
        gl.clear(gl.COLOR_BUFFER_BIT | gl.DEPTH_BUFFER_BIT);
        const camera = cameraMatrix(this.azimuth, this.elevation, this.distance, canvas.width / canvas.height);
        gl.uniformMatrix4fv(this.uniforms.camera, false, camera);
        gl.uniform1f(this.uniforms.size, (this.spacing * 1.6 * canvas.height) / 2 / Math.tan(FIELD / 2));
        gl.drawArrays(gl.POINTS, 0, this.count);
        canvas.dataset.view = [this.azimuth, this.elevation, this.distance].join(" ");
    }
}

function listen(canvas, view) {
    const pointers = new Map();
    const spread = () => {
        const [one, other] = [...pointers.values()];
        return Math.hypot(one.clientX - other.clientX, one.clientY - other.clientY);
    };
    canvas.addEventListener("pointerdown", (event) => {
        pointers.set(event.pointerId, event);
        canvas.setPointerCapture(event.pointerId);
    });
    canvas.addEventListener("pointermove", (event) => {
        const from = pointers.get(event.pointerId);
        if (!from) return;
        const before = pointers.size === 2 ? spread() : 0;
        pointers.set(event.pointerId, event);
        const turn = Math.PI / Math.max(canvas.clientHeight, 1);
        if (pointers.size === 1) view.turn((event.clientX - from.clientX) * turn, (event.clientY - from.clientY) * turn);
        else if (before > 0) view.zoom(spread() / before);
    });
    for (const end of ["pointerup", "pointercancel"])
        canvas.addEventListener(end, (event) => pointers.delete(event.pointerId));
    canvas.addEventListener(
        "wheel",
        (event) => {
            event.preventDefault();
            view.zoom(event.deltaY < 0 ? 1.1 : 1 / 1.1);
        },
        {passive: false},
    );
    const keys = {
        ArrowLeft: () => view.turn(-KEY_TURN, 0),
        ArrowRight: () => view.turn(KEY_TURN, 0),
        ArrowUp: () => view.turn(0, KEY_TURN),
        ArrowDown: () => view.turn(0, -KEY_TURN),
        "+": () => view.zoom(1.1),
        "=": () => view.zoom(1.1),
        "-": () => view.zoom(1 / 1.1),
    };
    canvas.addEventListener("keydown", (event) => {
        if (!keys[event.key]) return;
        event.preventDefault();
        keys[event.key]();
    });
}

/// @param address  of the thinned points
export async function showCloud(address, cloud) {
    const canvas = element("canvas", "cloud");
    canvas.tabIndex = 0;
    canvas.setAttribute("aria-label", texts.cloudView);
    const frame = element("div", "frame");
    frame.append(canvas);
    openOverlay(frame, texts.cloud);
    canvas.focus();
    try {
        const reply = await fetch(address);
        if (!reply.ok) throw new Error(texts.noCloud);
        listen(canvas, new CloudView(canvas, cloud, await reply.arrayBuffer()));
    } catch (error) {
        frame.replaceChildren(element("p", "problem", error instanceof TypeError ? texts.noService : error.message));
    }
}
