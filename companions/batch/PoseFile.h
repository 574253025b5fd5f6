// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Poses, links and sight lines from a report or from the truth of a made-up building.

#pragma once

#include <Eigen/Core>
#include <QByteArray>
#include <QString>

#include <array>
#include <map>
#include <utility>

struct Pose
{
    Eigen::Vector3d position = Eigen::Vector3d::Zero();     ///< metres
    Eigen::Matrix3d rotation = Eigen::Matrix3d::Identity(); ///< world_from_panorama
};

/// Two identity texts, the smaller first.
using IdPair = std::pair<QString, QString>;
IdPair idPair(const QString& one, const QString& other);

/// Both kinds of file hold `panoramas` [{`id`, `position` [3], `rotation` [9]}]. A report also holds `links`
/// [{`id0`, `id1`}], `groups` and `lidar`; a truth holds `pairs` [{`id0`, `id1`, `sees`}].
struct PoseFile
{
    std::map<QString, Pose> poses;  ///< by identity text
    std::map<IdPair, bool> links;   ///< of a report: true when found by the library, false when made by hand
    std::map<IdPair, bool> visible; ///< of a truth: whether the two see each other
    bool hasVisibility = false;     ///< the file has `pairs`
    int groups = 0;
    bool lidar = true;
    QString error; ///< empty when the file was read whole
};

PoseFile readPoseFile(const QString& path);
