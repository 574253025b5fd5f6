// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/cloud/VertexDecoder.h"

#include "views/cloud/Ranges.h"

namespace cloud {
namespace {
constexpr std::size_t kLeastPoints = 1 << 16; // of a thread
}

VertexDecoder::VertexDecoder(const PointCloud& cloud)
    : m_cloud(cloud)
    , m_x(kQuantisedValues)
    , m_y(kQuantisedValues)
    , m_z(kQuantisedValues)
{
    const Quantisation scene(cloud.header());
    for (unsigned value = 0; value < kQuantisedValues; ++value) {
        m_x[value] = static_cast<float>(scene.x(value));
        m_y[value] = static_cast<float>(scene.y(value));
        m_z[value] = static_cast<float>(scene.z(value));
    }
    for (std::size_t value = 0; value < m_colour.size(); ++value)
        m_colour[value] = static_cast<float>(double(value) * 0.00392156862745098);
}

// The planes and tables in registers: through the cloud, their places would be looked up anew for each point.
struct VertexDecoder::Reader
{
    const std::uint8_t *x0, *x1, *y0, *y1, *z0, *z1, *blue, *green, *red;
    const float *x, *y, *z, *colour;

    explicit Reader(const VertexDecoder& decoder)
        : x0(decoder.m_cloud.plane(0))
        , x1(decoder.m_cloud.plane(1))
        , y0(decoder.m_cloud.plane(2))
        , y1(decoder.m_cloud.plane(3))
        , z0(decoder.m_cloud.plane(4))
        , z1(decoder.m_cloud.plane(5))
        , blue(decoder.m_cloud.plane(6))
        , green(decoder.m_cloud.plane(7))
        , red(decoder.m_cloud.plane(8))
        , x(decoder.m_x.data())
        , y(decoder.m_y.data())
        , z(decoder.m_z.data())
        , colour(decoder.m_colour.data())
    {}
    Vertex vertex(std::size_t i) const
    {
        return {x[x0[i] + 256u * x1[i]], y[y0[i] + 256u * y1[i]], z[z0[i] + 256u * z1[i]],
                colour[red[i]],          colour[green[i]],        colour[blue[i]]};
    }
};

void VertexDecoder::decodeAll(Vertex* vertices) const
{
    forEachRange(rangeBorders(m_cloud.size(), kLeastPoints),
                 [&](std::size_t, std::size_t first, std::size_t last) {
                     const Reader reader(*this);
                     for (std::size_t point = first; point < last; ++point)
                         vertices[point] = reader.vertex(point);
                 });
}

void VertexDecoder::decode(const PointSet& points, Vertex* vertices) const
{
    const auto& words = points.words();
    const auto borders = rangeBorders(words.size(), kLeastPoints / PointSet::kWordPoints);
    std::vector<Vertex*> begin{vertices};
    for (std::size_t part = 0; part + 1 < borders.size(); ++part)
        begin.push_back(begin.back() + points.countIn(borders[part], borders[part + 1]));
    forEachRange(borders, [&](std::size_t part, std::size_t firstWord, std::size_t lastWord) {
        const Reader reader(*this);
        Vertex* out = begin[part];
        for (std::size_t word = firstWord; word < lastWord; ++word) {
            std::size_t point = word * PointSet::kWordPoints;
            for (std::uint64_t bits = words[word]; bits != 0; bits >>= 1, ++point) {
                if (bits & 1) *out++ = reader.vertex(point);
            }
        }
    });
}

} // namespace cloud
