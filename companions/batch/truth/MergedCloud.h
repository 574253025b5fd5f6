// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A merged cloud as plain points, and which of them is near a place.

#pragma once

#include <Eigen/Core>
#include <QString>

#include <cstdint>
#include <vector>

struct MergedCloud
{
    std::vector<Eigen::Vector3f> points; ///< world, metres
    QString error;                       ///< empty when the file was read whole
};

/// Reads a point-cloud file of the working folder.
MergedCloud readMergedCloud(const QString& path);

/// Answers whether a point lies within a fixed distance, by points sorted into cells of that size.
class PointCells
{
public:
    /// @param reach_m  above 0
    PointCells(const std::vector<Eigen::Vector3f>& points, float reach_m);

    bool hasPointNear(const Eigen::Vector3f& place) const;

private:
    struct Entry
    {
        std::uint64_t cell;
        Eigen::Vector3f point;
    };
    std::uint64_t cellAt(const Eigen::Vector3i& cell) const;
    Eigen::Vector3i cellOf(const Eigen::Vector3f& point) const;

    float m_reach;
    std::vector<Entry> m_entries; ///< by cell
};
