// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/cloud/PointCloud.h"
#include "views/cloud/PointSet.h"

#include <array>
#include <vector>

namespace cloud {

/// A point as it is drawn.
struct Vertex
{
    float x, y, z;          ///< scene units
    float red, green, blue; ///< 0 to 1
};
static_assert(sizeof(Vertex) == 24, "the stride of the buffers");

/// Turns planes into vertices. Every value that a byte or two can take is computed once.
class VertexDecoder
{
public:
    /// @param cloud  outlives the decoder
    explicit VertexDecoder(const PointCloud& cloud);

    /// All points, or those of a set, in the order of the file. Spreads over the cores.
    /// @param vertices  room for as many
    void decodeAll(Vertex* vertices) const;
    void decode(const PointSet& points, Vertex* vertices) const;

private:
    struct Reader;

    const PointCloud& m_cloud;
    std::vector<float> m_x, m_y, m_z; ///< by quantised coordinate
    std::array<float, 256> m_colour;
};

} // namespace cloud
