// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// What a made-up place and its panoramas are to be like. The defaults are a lived-in flat and a good
/// scanner.
namespace samplescene {

enum class Kind
{
    Flat,
    Office,
    Street
};

enum class Texture
{
    Rich,  ///< worn surfaces, many pictures on the walls
    Plain, ///< freshly painted, hardly a picture
    Mixed  ///< every other room plain
};

enum class Nadir
{
    Clear,    ///< the floor, as if the stand had been painted out
    Patch,    ///< a round label below the camera
    Tripod,   ///< the legs of the stand
    Operator, ///< the stand, and a person who walks along with the camera
};

struct Options
{
    Kind kind = Kind::Flat;
    int count = 8; ///< panoramas, 1 to 1000
    std::uint32_t seed = 1;
    int rooms = 0; ///< 0: three rooms for five panoramas

    double lean_deg = 0.3;       ///< standard deviation of the camera's tilt about each level axis
    double exposureSteps = 0.15; ///< panoramas differ by up to this many stops either way

    int identicalRooms = 0;    ///< so many rooms are the same to the last book (flat, office)
    double mirrors = 0;        ///< share of the rooms with a large mirror on a wall, 0 to 1
    double glass = 0;          ///< share of the inner walls that are panes, 0 to 1
    double closedDoors = 0;    ///< share of the inner doors that are shut, 0 to 1
    double movedFurniture = 0; ///< share of the loose furniture that moved before the second half was taken
    Texture texture = Texture::Rich;
    Nadir nadir = Nadir::Clear;

    double pictureNoise = 1.5; ///< standard deviation at mid-grey, in steps of 255
    double interleavedNoise =
        0.0; ///< even and odd columns differ by a random offset of this deviation, by row

    bool lidar = true;
    double rangeNoise_m = 0.006; ///< standard deviation along the ray
    double rangeFill =
        1.0; ///< share of range pixels that are measured; less than 1: a comb, as of a coarser scan
    double dropOuts = 0.01;      ///< share of returns lost at random
    double maxRange_m = 40.0;    ///< no return from farther away
    double blindCone_deg = 20.0; ///< half angle of the cone below the scanner that it cannot see

    double lightSpacing_m = 0.08; ///< between the points where the light is worked out; tests take it coarser

    int threads = 0; ///< 0: as many as the machine runs at once; has no influence on the result
};

} // namespace samplescene
