// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Options.h"
#include "companions/samplescene/World.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// A made-up building with panoramas in it whose every pose is known. For tests and for trying things out.
///
/// Frames: the world is right-handed, z up, metres, the floor at z = 0 indoors. A panorama's x points to
/// azimuth 0 (the middle column of its picture), y to azimuth +pi/2 (left of it), z to the upper pole.
namespace samplescene {

/// Where one panorama was taken.
struct Station
{
    std::string id;                   ///< 14 letters A-Z, unique
    std::array<double, 3> position{}; ///< world, metres
    std::array<double, 9> rotation{}; ///< row by row; X_world = rotation * X_panorama + position
    double cameraHeight = 0;          ///< metres above what the stand is on
    std::string room;
    int state = 0;       ///< 0: furniture as at first; 1: as moved before the second half
    double exposure = 0; ///< stops
};

struct Scene
{
    Options options;
    std::vector<Station> stations;
    /// The place in both states; the same one twice unless furniture moves.
    std::array<std::shared_ptr<const World>, 2> worlds;
    const World& worldOf(int station) const;
};

/// What two panoramas can see of each other.
struct Sight
{
    double distance = 0;       ///< metres between the cameras
    bool eyeFree = false;      ///< nothing, not even glass, between the cameras
    bool footFree = false;     ///< each sees the floor below the other
    bool throughGlass = false; ///< the cameras see each other through panes only
    double shareOf0 = 0;       ///< share of what panorama 0 sees that panorama 1 sees too, 0 to 1
    double shareOf1 = 0;
    bool sees() const { return eyeFree || footFree; }
};

/// Builds the place and puts the panoramas into it. Equal options give equal scenes, whatever the threads.
Scene makeScene(const Options& options);

/// All of `Sight` but the shares, which take thousands of rays.
/// @param station0, station1  indices into scene.stations
Sight lineOfSight(const Scene& scene, int station0, int station1);
/// With the shares.
Sight sightBetween(const Scene& scene, int station0, int station1);

struct Rendering
{
    int width = 0, height = 0;        ///< pixels; width = 2 * height
    std::vector<std::uint8_t> rgb;    ///< row by row, 3 bytes a pixel
    std::vector<std::uint16_t> range; ///< millimetres along the ray, 0 = no return; empty without lidar
};

/// Takes the picture and the range picture of one panorama.
/// @param width  pixels, even, at least 64
Rendering render(const Scene& scene, int station, int width);

/// Direction of a pixel's centre in the panorama frame.
std::array<double, 3> pixelDirection(double column, double row, int width, int height);

} // namespace samplescene
