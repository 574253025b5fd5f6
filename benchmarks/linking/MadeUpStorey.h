// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/RigidPose.h"
#include "nexomap/src/Panorama.h"

#include <random>

/// A storey of equal rooms in a square grid, joined by doors, whose panoramas are made of features and ranges
/// without any picture: large tours can be tried without rendering them. Two fifths as many rooms as
/// panoramas.
class MadeUpStorey
{
public:
    /// @param features  of each panorama; a fifth of them look like others in every room
    MadeUpStorey(int panoramas, int features, unsigned seed);

    int size() const { return int(m_stations.size()); }
    const nexomap::RigidPose& station(int index) const { return m_stations[std::size_t(index)]; }
    static std::string nameOf(int index);
    /// The same whenever it is asked for.
    std::shared_ptr<const nexomap::Panorama> panorama(int index) const;

private:
    struct Landmark
    {
        Eigen::Vector3d point;
        float size_m = 0.f;
        std::array<float, 128> look;
    };
    using Room = std::vector<Landmark>;

    bool visible(const Eigen::Vector3d& from, const Eigen::Vector3d& to) const;
    nexomap::RangeMap ranges(const nexomap::RigidPose& station, std::mt19937& random) const;

    int m_features = 0, m_columns = 0;
    unsigned m_seed = 0;
    std::vector<Room> m_rooms;
    std::vector<std::array<float, 128>> m_usual; ///< looks that every room has
    std::vector<nexomap::RigidPose> m_stations;  ///< world_from_pano
};
