// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Vec.h"

#include <cstdint>
#include <vector>

/// A printed picture with its halved copies, looked up at the size that a pixel covers (Williams 1983,
/// "Pyramidal Parametrics"). Colours are linear light in gamma 2 bytes.
namespace samplescene {

class Picture
{
public:
    Picture(int width, int height, Vec3 color);

    int width() const { return m_levels[0].width; }
    int height() const { return m_levels[0].height; }
    void set(int x, int y, Vec3 color); ///< outside: ignored
    void rectangle(Vec2 center, Vec2 half, float angle_rad, Vec3 color);
    void ellipse(Vec2 center, Vec2 half, Vec3 color);
    void line(Vec2 from, Vec2 to, float thickness, Vec3 color);
    /// A line of made-up writing: `size` is the height of its letters, pixels.
    void writing(Vec2 start, float length, float size, std::uint32_t seed, Vec3 color);

    void finish(); ///< builds the halved copies; drawing ends here

    /// @param p          0 to 1 from the left and from the top
    /// @param footprint  share of the picture's height that a pixel covers
    Vec3 at(Vec2 p, float footprint) const;
    Vec3 mean() const; ///< needs finish()

private:
    struct Level
    {
        int width = 0, height = 0;
        std::vector<std::uint8_t> rgb;
    };
    static Vec3 bilinear(const Level& level, Vec2 p);
    std::vector<Level> m_levels;
};

/// Kinds of printed pictures.
enum class Print
{
    Poster,    ///< shapes, a title
    Landscape, ///< hills, sky, sun
    Collage,   ///< many small photographs
    Text,      ///< a notice or the page of a book
    Calendar,
    Map,
    Screen, ///< windows of a desktop
    Rug,
    Graffiti ///< loose strokes for a wall outdoors
};

/// Paints a picture; equal seeds give equal pictures.
Picture paintPrint(Print kind, int width, int height, std::uint32_t seed);

} // namespace samplescene
