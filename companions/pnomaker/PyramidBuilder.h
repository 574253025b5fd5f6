// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace pnomaker {

class ContentHash;
class PnoWriter;
class RowSource;
class WorkerPool;
struct Pyramid;

/// What the pyramid's building takes along; nothing is owned.
struct PyramidJob
{
    const Pyramid& pyramid;
    int quality;
    double polar_min; ///< what the source's rows cover, radians
    double polar_max;
    ContentHash* hash;                      ///< fed with the source's rows; may be null
    std::vector<std::uint8_t>* keptPicture; ///< receives a whole level, RGB; may be null
    int keptLevel;
    const std::function<void(double)>& progress;
};

/// Reads the source once and writes the tiles of all levels, in an order that depends on the picture alone.
/// @return empty on success, else one line
std::string buildPyramid(RowSource& source, const PyramidJob& job, WorkerPool& pool, PnoWriter& writer);

} // namespace pnomaker
