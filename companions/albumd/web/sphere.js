// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Draws tiles onto the inside of a sphere: each tile is a patch of a fine grid, coarse levels below sharp ones.

import {texts} from "./texts.js";

const VERTEX = `
attribute vec2 grid;
uniform vec2 azimuths, polars, us, vs, scale;
uniform mat3 rotation;
varying vec2 place;
void main() {
    float azimuth = mix(azimuths.x, azimuths.y, grid.x);
    float polar = mix(polars.x, polars.y, grid.y);
    vec3 seen = rotation * vec3(cos(azimuth) * sin(polar), sin(azimuth) * sin(polar), cos(polar));
    place = vec2(mix(us.x, us.y, grid.x), mix(vs.x, vs.y, grid.y));
    gl_Position = vec4(-seen.y * scale.x, seen.z * scale.y, seen.x - 0.02, seen.x);
}`;

const FRAGMENT = `
precision mediump float;
uniform sampler2D picture;
uniform float opacity;
varying vec2 place;
void main() { gl_FragColor = vec4(texture2D(picture, place).rgb, opacity); }`;

const FINE = 48; // cells per side of a patch that may span the whole sphere
const COARSE = 12; // of one that spans 90 degrees at most
const FIRST_SMALL_LEVEL = 4;

function compiled(gl, kind, source) {
    const shader = gl.createShader(kind);
    gl.shaderSource(shader, source);
    gl.compileShader(shader);
    return shader;
}

function patch(gl, cells) {
    const corners = [];
    for (let row = 0; row <= cells; ++row)
        for (let column = 0; column <= cells; ++column) corners.push(column / cells, row / cells);
    const triangles = [];
    for (let row = 0; row < cells; ++row)
        for (let column = 0; column < cells; ++column) {
            const at = row * (cells + 1) + column;
            triangles.push(at, at + cells + 1, at + 1, at + 1, at + cells + 1, at + cells + 2);
        }
    const made = {points: gl.createBuffer(), indices: gl.createBuffer(), count: triangles.length};
    gl.bindBuffer(gl.ARRAY_BUFFER, made.points);
    gl.bufferData(gl.ARRAY_BUFFER, new Float32Array(corners), gl.STATIC_DRAW);
    gl.bindBuffer(gl.ELEMENT_ARRAY_BUFFER, made.indices);
    gl.bufferData(gl.ELEMENT_ARRAY_BUFFER, new Uint16Array(triangles), gl.STATIC_DRAW);
    return made;
}

export class Sphere {
    /// Throws an error with a readable message where there is no WebGL.
    constructor(canvas) {
        const gl = canvas.getContext("webgl", {alpha: false, antialias: false, depth: false});
        if (!gl) throw new Error(texts.noWebGl);
        this.gl = gl;
        this.canvas = canvas;
        const program = gl.createProgram();
        gl.attachShader(program, compiled(gl, gl.VERTEX_SHADER, VERTEX));
        gl.attachShader(program, compiled(gl, gl.FRAGMENT_SHADER, FRAGMENT));
        gl.bindAttribLocation(program, 0, "grid");
        gl.linkProgram(program);
        if (!gl.getProgramParameter(program, gl.LINK_STATUS)) throw new Error(texts.noWebGl);
        gl.useProgram(program);
        this.places = {};
        for (const name of ["azimuths", "polars", "us", "vs", "scale", "rotation", "opacity"])
            this.places[name] = gl.getUniformLocation(program, name);
        this.fine = patch(gl, FINE);
        this.coarse = patch(gl, COARSE);
        gl.enableVertexAttribArray(0);
        gl.blendFunc(gl.SRC_ALPHA, gl.ONE_MINUS_SRC_ALPHA);
        gl.clearColor(0.13, 0.13, 0.14, 1);
        canvas.addEventListener("webglcontextlost", () => location.reload());
    }

    upload(image) {
        const gl = this.gl;
        const texture = gl.createTexture();
        gl.bindTexture(gl.TEXTURE_2D, texture);
        gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGB, gl.RGB, gl.UNSIGNED_BYTE, image);
        gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_WRAP_S, gl.CLAMP_TO_EDGE);
        gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_WRAP_T, gl.CLAMP_TO_EDGE);
        gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MIN_FILTER, gl.LINEAR);
        gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MAG_FILTER, gl.LINEAR);
        return texture;
    }

    release(texture) {
        this.gl.deleteTexture(texture);
    }

    begin(camera, pixelRatio) {
        const gl = this.gl;
        const [width, height] = [Math.round(camera.width * pixelRatio), Math.round(camera.height * pixelRatio)];
        if (this.canvas.width !== width || this.canvas.height !== height) {
            this.canvas.width = width;
            this.canvas.height = height;
        }
        gl.viewport(0, 0, width, height);
        gl.clear(gl.COLOR_BUFFER_BIT);
        const scale = 2 * camera.half * camera.zoom;
        gl.uniform2f(this.places.scale, scale / camera.width, scale / camera.height);
    }

    /// @param layers  coarse to fine: arrays of {tile, texture}
    draw(camera, layers, opacity) {
        const gl = this.gl;
        const r = camera.rotation();
        const columns = [r[0], r[3], r[6], r[1], r[4], r[7], r[2], r[5], r[8]];
        gl.uniformMatrix3fv(this.places.rotation, false, columns);
        gl.uniform1f(this.places.opacity, opacity);
        if (opacity < 1) gl.enable(gl.BLEND);
        else gl.disable(gl.BLEND);
        for (const layer of layers)
            for (const {tile, texture} of layer) {
                const mesh = tile.level < FIRST_SMALL_LEVEL ? this.fine : this.coarse;
                gl.bindBuffer(gl.ARRAY_BUFFER, mesh.points);
                gl.bindBuffer(gl.ELEMENT_ARRAY_BUFFER, mesh.indices);
                gl.vertexAttribPointer(0, 2, gl.FLOAT, false, 0, 0);
                gl.bindTexture(gl.TEXTURE_2D, texture);
                gl.uniform2fv(this.places.azimuths, tile.azimuths);
                gl.uniform2fv(this.places.polars, tile.polars);
                gl.uniform2fv(this.places.us, tile.us);
                gl.uniform2fv(this.places.vs, tile.vs);
                gl.drawElements(gl.TRIANGLES, mesh.count, gl.UNSIGNED_SHORT, 0);
            }
    }
}
