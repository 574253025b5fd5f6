// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Picture.h"

#include "companions/samplescene/Random.h"

namespace samplescene {
namespace {

std::uint8_t encode(float linear)
{
    return static_cast<std::uint8_t>(std::sqrt(clamp01(linear)) * 255.0f + 0.5f);
}

float decode(std::uint8_t v)
{
    const float f = static_cast<float>(v) * (1.0f / 255.0f);
    return f * f;
}

Vec3 pixel(const std::uint8_t* p)
{
    return {decode(p[0]), decode(p[1]), decode(p[2])};
}

} // namespace

Picture::Picture(int width, int height, Vec3 color)
    : m_levels(1)
{
    m_levels[0].width = width;
    m_levels[0].height = height;
    m_levels[0].rgb.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            set(x, y, color);
}

void Picture::set(int x, int y, Vec3 color)
{
    Level& l = m_levels[0];
    if (x < 0 || y < 0 || x >= l.width || y >= l.height) return;
    std::uint8_t* p = &l.rgb[(static_cast<std::size_t>(y) * static_cast<std::size_t>(l.width) +
                              static_cast<std::size_t>(x)) *
                             3];
    p[0] = encode(color.x);
    p[1] = encode(color.y);
    p[2] = encode(color.z);
}

void Picture::rectangle(Vec2 center, Vec2 half, float angle, Vec3 color)
{
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    const float reachX = std::fabs(c) * half.x + std::fabs(s) * half.y + 1;
    const float reachY = std::fabs(s) * half.x + std::fabs(c) * half.y + 1;
    for (int y = static_cast<int>(center.y - reachY); y <= static_cast<int>(center.y + reachY); ++y) {
        for (int x = static_cast<int>(center.x - reachX); x <= static_cast<int>(center.x + reachX); ++x) {
            const float dx = static_cast<float>(x) + 0.5f - center.x;
            const float dy = static_cast<float>(y) + 0.5f - center.y;
            if (std::fabs(c * dx + s * dy) <= half.x && std::fabs(c * dy - s * dx) <= half.y)
                set(x, y, color);
        }
    }
}

void Picture::ellipse(Vec2 center, Vec2 half, Vec3 color)
{
    for (int y = static_cast<int>(center.y - half.y); y <= static_cast<int>(center.y + half.y); ++y) {
        for (int x = static_cast<int>(center.x - half.x); x <= static_cast<int>(center.x + half.x); ++x) {
            const float dx = (static_cast<float>(x) + 0.5f - center.x) / half.x;
            const float dy = (static_cast<float>(y) + 0.5f - center.y) / half.y;
            if (dx * dx + dy * dy <= 1) set(x, y, color);
        }
    }
}

void Picture::line(Vec2 from, Vec2 to, float thickness, Vec3 color)
{
    const float dx = to.x - from.x;
    const float dy = to.y - from.y;
    rectangle({(from.x + to.x) / 2, (from.y + to.y) / 2}, {std::sqrt(dx * dx + dy * dy) / 2, thickness / 2},
              std::atan2(dy, dx), color);
}

void Picture::writing(Vec2 start, float length, float size, std::uint32_t seed, Vec3 color)
{
    Random random(seed);
    const float stroke = std::max(1.0f, size * 0.15f);
    for (float x = start.x; x < start.x + length; x += size * 0.75f) {
        if (random.chance(0.15f)) continue; // a gap between words
        for (int i = 0; i < 3; ++i) {
            const Vec2 a{x + random.uniform() * size * 0.55f, start.y + random.uniform() * size};
            const Vec2 b{x + random.uniform() * size * 0.55f, start.y + random.uniform() * size};
            line(a, b, stroke, color);
        }
    }
}

void Picture::finish()
{
    while (m_levels.back().width > 1 && m_levels.back().height > 1) {
        const Level& big = m_levels.back();
        Level small;
        small.width = big.width / 2;
        small.height = big.height / 2;
        small.rgb.reserve(static_cast<std::size_t>(small.width) * static_cast<std::size_t>(small.height) * 3);
        for (int y = 0; y < small.height; ++y) {
            for (int x = 0; x < small.width; ++x) {
                const std::uint8_t* top =
                    &big.rgb[(static_cast<std::size_t>(2 * y) * static_cast<std::size_t>(big.width) +
                              static_cast<std::size_t>(2 * x)) *
                             3];
                const std::uint8_t* below = top + big.width * 3;
                const Vec3 sum = pixel(top) + pixel(top + 3) + pixel(below) + pixel(below + 3);
                small.rgb.push_back(encode(sum.x / 4));
                small.rgb.push_back(encode(sum.y / 4));
                small.rgb.push_back(encode(sum.z / 4));
            }
        }
        m_levels.push_back(std::move(small));
    }
}

Vec3 Picture::bilinear(const Level& l, Vec2 p)
{
    const float fx = clamp01(p.x) * static_cast<float>(l.width) - 0.5f;
    const float fy = clamp01(p.y) * static_cast<float>(l.height) - 0.5f;
    const float bx = std::floor(fx);
    const float by = std::floor(fy);
    const auto at = [&](int x, int y) {
        x = std::clamp(x, 0, l.width - 1);
        y = std::clamp(y, 0, l.height - 1);
        return pixel(&l.rgb[(static_cast<std::size_t>(y) * static_cast<std::size_t>(l.width) +
                             static_cast<std::size_t>(x)) *
                            3]);
    };
    const int x = static_cast<int>(bx);
    const int y = static_cast<int>(by);
    return mix(mix(at(x, y), at(x + 1, y), fx - bx), mix(at(x, y + 1), at(x + 1, y + 1), fx - bx), fy - by);
}

Vec3 Picture::at(Vec2 p, float footprint) const
{
    const float level = std::log2(std::max(1.0f, footprint * static_cast<float>(height())));
    const auto last = static_cast<float>(m_levels.size() - 1);
    const float clipped = std::min(level, last);
    const auto lower = static_cast<std::size_t>(clipped);
    const std::size_t upper = std::min(lower + 1, m_levels.size() - 1);
    return mix(bilinear(m_levels[lower], p), bilinear(m_levels[upper], p),
               clipped - static_cast<float>(lower));
}

Vec3 Picture::mean() const
{
    return bilinear(m_levels.back(), {0.5f, 0.5f});
}

} // namespace samplescene
