// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/pnomaker/Pictures.h"

#include <cmath>

namespace pnotest {

PaintedPicture::PaintedPicture(int width, int height, Paint paint)
    : m_width(width)
    , m_height(height)
    , m_paint(std::move(paint))
{}

bool PaintedPicture::readRows(std::uint8_t* rgb, int count)
{
    for (int i = 0; i < count; ++i, ++m_nextRow) {
        if (m_nextRow >= m_height || m_nextRow == failAtRow) return false;
        for (int x = 0; x < m_width; ++x, rgb += 3) {
            const Rgb colour = m_paint(x, m_nextRow);
            rgb[0] = colour[0];
            rgb[1] = colour[1];
            rgb[2] = colour[2];
        }
    }
    return true;
}

bool PaintedPicture::rewind()
{
    m_nextRow = 0;
    ++passes;
    return true;
}

PaintedPicture gradient(int width, int height)
{
    return {width, height, [width, height](int x, int y) -> Rgb {
                return {static_cast<std::uint8_t>(255.0 * x / width),
                        static_cast<std::uint8_t>(255.0 * y / height), 100};
            }};
}

PaintedPicture patch(int width, int height, double azimuth, double polar, double polar_min, double polar_max)
{
    return {width, height, [=](int x, int y) -> Rgb {
                const double a = pno::kPi - (x + 0.5) / width * 2 * pno::kPi;
                const double p = polar_min + (y + 0.5) / height * (polar_max - polar_min);
                const bool inside = std::fabs(std::remainder(a - azimuth, 2 * pno::kPi)) < 0.02 &&
                                    std::fabs(p - polar) < 0.02;
                return inside ? Rgb{250, 20, 20} : Rgb{90, 90, 90};
            }};
}

PaintedPicture noise(int width, int height)
{
    return {width, height, [](int x, int y) -> Rgb {
                std::uint32_t h =
                    static_cast<std::uint32_t>(x) * 0x9E3779B1u ^ static_cast<std::uint32_t>(y) * 0x85EBCA77u;
                h = (h ^ (h >> 15)) * 0x2C1B3C6Du;
                h = (h ^ (h >> 12)) * 0x297A2D39u;
                h ^= h >> 15;
                return {static_cast<std::uint8_t>(h), static_cast<std::uint8_t>(h >> 8),
                        static_cast<std::uint8_t>(h >> 16)};
            }};
}

} // namespace pnotest
