// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Scene.h"

#include <cmath>
#include <numeric>
#include <optional>
#include <vector>

/// Small scenes and the way back from a panorama's pixels into the world.
namespace scenetest {

using samplescene::Options;
using samplescene::Rendering;
using samplescene::Scene;
using samplescene::Station;
using Point = std::array<double, 3>;

/// Few rooms and coarse light: made in a fraction of a second.
inline Options smallOptions(samplescene::Kind kind = samplescene::Kind::Flat, int count = 4)
{
    Options o;
    o.kind = kind;
    o.count = count;
    o.lightSpacing_m = 0.5;
    return o;
}

/// The same with a perfect scanner.
inline Options exactOptions(samplescene::Kind kind = samplescene::Kind::Flat, int count = 4)
{
    Options o = smallOptions(kind, count);
    o.rangeNoise_m = 0;
    o.dropOuts = 0;
    o.blindCone_deg = 0;
    return o;
}

inline Point toWorld(const Station& s, const Point& p)
{
    Point w;
    for (std::size_t i = 0; i < 3; ++i)
        w[i] = s.rotation[3 * i] * p[0] + s.rotation[3 * i + 1] * p[1] + s.rotation[3 * i + 2] * p[2] +
               s.position[i];
    return w;
}

inline Point toPanorama(const Station& s, const Point& w)
{
    Point p{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k < 3; ++k)
            p[i] += s.rotation[3 * k + i] * (w[k] - s.position[k]);
    return p;
}

inline double norm(const Point& p)
{
    return std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]);
}

/// Index of the pixel in which a direction of the panorama frame lies.
inline std::size_t pixelOf(const Rendering& r, const Point& p)
{
    constexpr double pi = 3.14159265358979323846;
    const double column = (pi - std::atan2(p[1], p[0])) / (2 * pi) * r.width;
    const double row = std::acos(p[2] / norm(p)) / pi * r.height;
    const int x = std::min(r.width - 1, static_cast<int>(column));
    const int y = std::min(r.height - 1, static_cast<int>(row));
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(r.width) + static_cast<std::size_t>(x);
}

/// Number of groups that the sight lines join the panoramas to.
inline int sightGroups(const Scene& scene)
{
    const int count = static_cast<int>(scene.stations.size());
    std::vector<int> group(scene.stations.size());
    std::iota(group.begin(), group.end(), 0);
    int groups = count;
    for (int i = 0; i < count; ++i) {
        for (int j = i + 1; j < count; ++j) {
            const int a = group[static_cast<std::size_t>(i)];
            const int b = group[static_cast<std::size_t>(j)];
            if (a == b || !samplescene::lineOfSight(scene, i, j).sees()) continue;
            for (int& g : group)
                if (g == b) g = a;
            --groups;
        }
    }
    return groups;
}

} // namespace scenetest
