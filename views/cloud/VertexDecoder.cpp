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

Vertex VertexDecoder::vertex(std::size_t point) const
{
    return {m_x[m_cloud.x(point)],        m_y[m_cloud.y(point)],          m_z[m_cloud.z(point)],
            m_colour[m_cloud.red(point)], m_colour[m_cloud.green(point)], m_colour[m_cloud.blue(point)]};
}

void VertexDecoder::decodeAll(Vertex* vertices) const
{
    forEachRange(rangeBorders(m_cloud.size(), kLeastPoints),
                 [&](std::size_t, std::size_t first, std::size_t last) {
                     for (std::size_t point = first; point < last; ++point)
                         vertices[point] = vertex(point);
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
        Vertex* out = begin[part];
        for (std::size_t word = firstWord; word < lastWord; ++word) {
            std::size_t point = word * PointSet::kWordPoints;
            for (std::uint64_t bits = words[word]; bits != 0; bits >>= 1, ++point) {
                if (bits & 1) *out++ = vertex(point);
            }
        }
    });
}

} // namespace cloud
