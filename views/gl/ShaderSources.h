// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

/// The GLSL 1.10 texts of the views. Attribute and uniform locations are looked up by name at every paint.
namespace shaders {

/// Textured geometry in space: a_position (3), a_texCoord (2), u_mvpMatrix; with `kTextureFragment`.
extern const char* const kSphereVertex;
/// Colour of the texture, u_sampler; for spheres and overlays.
extern const char* const kTextureFragment;

/// Coloured points in space: a_position (3), a_color (3), u_mvpMatrix.
extern const char* const kPointVertex;
extern const char* const kPointFragment;

/// Textured rectangles on the screen: a_position (2), a_texCoord (2); with `kTextureFragment`. The 2D
/// programs draw at the far end of the depth range; no view tests depth.
extern const char* const kOverlayVertex;

/// Lines on the screen: a_position (2), light blue.
extern const char* const kLineVertex;
extern const char* const kLineFragment;

} // namespace shaders
