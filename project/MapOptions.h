// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

/// The author's choices for the navigation map.
struct MapOptions
{
    enum Mode
    {
        Plan2D,
        Cloud3D
    };
    enum Scene
    {
        Outdoor,
        Indoor
    }; ///< indoor: ceiling removed, cloud interpolated
    enum Density
    {
        Low,
        Mid,
        High
    };

    Mode mode = Cloud3D;
    Scene scene = Indoor;
    Density density = High;
    bool fullCloud = false;   ///< also write the merged cloud as PTS text
    bool binaryCloud = false; ///< also write the merged cloud in binary form
};
