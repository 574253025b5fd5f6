// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// One room with a scanner in its middle: its true surfaces, its plan, and a perfect cloud of it.

#pragma once

#include "companions/batch/truth/PlanScore.h"

#include <cmath>

/// Between the wall faces x 0 to 4 m, y 0 to 3 m, z 0 to 2.6 m; walls of 0.2 m; a lamp of 0.4 m below the
/// ceiling, a pillar of furniture between x 3 and 3.4, y 2 and 2.4, up to 1.5 m.
struct MadeUpRoom
{
    TrueSurfaces surfaces;
    TrueStorey storey;
    std::vector<Pose> stations{{{2.0, 1.0, 1.5}, Eigen::Matrix3d::Identity()}};

    MadeUpRoom()
    {
        storey.ceiling = 2.6;
        storey.rooms.push_back({{0, 0}, {4, 3}});
        const auto block = [](double x0, double y0, double x1, double y1) {
            return PlanOutline{{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
        };
        storey.walls = {block(-0.2, -0.2, 4.2, 0), block(-0.2, 3, 4.2, 3.2), block(-0.2, 0, 0, 3),
                        block(4, 0, 4.2, 3)};
        storey.furniture = {block(3, 2, 3.4, 2.4)};
        quad({0, 0, 0}, {4, 0, 0}, {0, 3, 0}, TruePart::Floor);
        quad({0, 0, 2.6f}, {0, 3, 0}, {4, 0, 0}, TruePart::Ceiling);
        quad({0, 0, 0}, {0, 0, 2.6f}, {4, 0, 0}, TruePart::Wall);
        quad({0, 3, 0}, {4, 0, 0}, {0, 0, 2.6f}, TruePart::Wall);
        quad({0, 0, 0}, {0, 3, 0}, {0, 0, 2.6f}, TruePart::Wall);
        quad({4, 0, 0}, {0, 0, 2.6f}, {0, 3, 0}, TruePart::Wall);
        box({1.8f, 1.8f, 2.2f}, {2.2f, 2.2f, 2.6f}, TruePart::Lamp);
        box({3, 2, 0}, {3.4f, 2.4f, 1.5f}, TruePart::Furniture);
    }

    ScannerSight sight() const { return {surfaces, stations, {}}; }

    /// A point every centimetre on what is below the ceiling's last 5 cm, where `kept` says so.
    template <class Kept>
    std::vector<Eigen::Vector3f> cloud(const Kept& kept) const
    {
        std::vector<Eigen::Vector3f> points;
        for (std::size_t t = 0; t < surfaces.triangles.size(); t += 2) { // the quad of which it is half
            const Eigen::Vector3f corner = surfaces.at(t, 0);
            const Eigen::Vector3f u = surfaces.at(t, 1) - corner, v = surfaces.at(t + 1, 2) - corner;
            const int across = static_cast<int>(std::round(u.norm() / 0.01f));
            const int up = static_cast<int>(std::round(v.norm() / 0.01f));
            for (int i = 0; i < across; ++i)
                for (int j = 0; j < up; ++j) {
                    const Eigen::Vector3f point = corner + (static_cast<float>(i) + 0.5f) / across * u +
                                                  (static_cast<float>(j) + 0.5f) / up * v;
                    if (point.z() < 2.55f && kept(point)) points.push_back(point);
                }
        }
        return points;
    }
    std::vector<Eigen::Vector3f> cloud() const
    {
        return cloud([](const Eigen::Vector3f&) { return true; });
    }

private:
    /// Its outside is where `u` x `v` points.
    void quad(const Eigen::Vector3f& corner, const Eigen::Vector3f& u, const Eigen::Vector3f& v,
              TruePart part)
    {
        const auto first = static_cast<std::uint32_t>(surfaces.points.size());
        for (const Eigen::Vector3f& point : {corner, Eigen::Vector3f(corner + u),
                                             Eigen::Vector3f(corner + u + v), Eigen::Vector3f(corner + v)})
            surfaces.points.push_back(point);
        surfaces.triangles.push_back({{first, first + 1, first + 2}, part});
        surfaces.triangles.push_back({{first, first + 2, first + 3}, part});
    }

    void box(const Eigen::Vector3f& low, const Eigen::Vector3f& high, TruePart part)
    {
        const Eigen::Vector3f x(high.x() - low.x(), 0, 0), y(0, high.y() - low.y(), 0),
            z(0, 0, high.z() - low.z());
        quad(low, y, x, part);
        quad(low, x, z, part);
        quad(low, z, y, part);
        quad(high, -y, -z, part);
        quad(high, -z, -x, part);
        if (high.z() < 2.6f) quad(high, -x, -y, part);
    }
};
