// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/include/NexomapLib.h"

#include <string>
#include <vector>

/// A link as the library's functions tell it; units and meaning as in NexomapLib.h.
struct LibraryLink
{
    std::string id_0, id_1;
    double values[8] = {}; ///< in the order of NexomapGetPanoMatchParas
    int mode = 0;
    double reliability = 0.0;

    double rot_0() const { return values[0]; }
    double rot_1() const { return values[1]; }
    double spacing() const { return values[7]; }
};

/// All links that the library holds now.
inline std::vector<LibraryLink> libraryLinks()
{
    std::vector<LibraryLink> links;
    for (int k = 0; k < NexomapGetPanoMatchNum(); ++k) {
        char id_0[16], id_1[16];
        LibraryLink link;
        double* const v = link.values;
        if (NexomapGetPanoMatchParas(id_0, id_1, v, v + 1, v + 2, v + 3, v + 4, v + 5, v + 6, v + 7,
                                     &link.mode, &link.reliability, k))
            continue;
        link.id_0 = id_0;
        link.id_1 = id_1;
        links.push_back(link);
    }
    return links;
}
