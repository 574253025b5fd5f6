// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <array>

/// Camera over a point cloud: parallel projection, no depth. Where a point of the scene stands in the widget,
/// and the matrix that draws it there. Plain numbers, no drawing. Angles in radians, z up.
namespace cloud {

constexpr double kPi = 3.141592653589793;
constexpr double kHalfPi = 1.5707963267948966;
constexpr double kFirstTilt = 0.5235987755982988;

/// Size of the view, pixels.
struct ViewSize
{
    int width = 542;
    int height = 463;
};

struct Camera
{
    double rotation = 0.0;    ///< about the vertical axis; at 0 the scene's +x points up in the view
    double tilt = kFirstTilt; ///< 0 looks straight down, pi/2 horizontally
    double zoom = 1.0;        ///< in [0.1, 1]
    double pan_x = 0.0;       ///< scene point in the middle of the view
    double pan_y = 0.0;
    double scale = 100.0; ///< pixels per scene unit at zoom 1: horizontal steps of the cloud per scene unit

    double pixelsPerUnit() const { return zoom * scale; }
};

struct ScenePoint
{
    double x = 0.0, y = 0.0, z = 0.0;
};

/// Column and row of a pixel of the widget, or a place between: origin in the top-left corner, y down.
struct Pixel
{
    int x = 0, y = 0;
};
struct PixelPlace
{
    double x = 0.0, y = 0.0;
};

/// The point's place in the widget, half a pixel to the right of and below where it would stand by the middle
/// of the view alone, so that the whole part is its pixel.
PixelPlace placeOf(ScenePoint point, const Camera& camera, ViewSize size);

/// The point's pixel in the widget: the place with its fraction cut off (toward 0). Places beyond the range
/// of whole numbers are brought to its ends.
Pixel pixelOf(ScenePoint point, const Camera& camera, ViewSize size);

/// The matrix that takes scene points to normalised device coordinates, z flattened to 0: 4 x 4, single
/// precision, column-major.
std::array<float, 16> cameraMatrix(const Camera& camera, ViewSize size);

} // namespace cloud
