// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/PoseFile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// @return whether `array` holds exactly `count` numbers, copied to `values` then
bool readNumbers(const QJsonValue& array, int count, double* values)
{
    const QJsonArray cells = array.toArray();
    if (cells.size() != count) return false;
    for (int i = 0; i < count; ++i) {
        if (!cells[i].isDouble()) return false;
        values[i] = cells[i].toDouble();
    }
    return true;
}

bool readPose(const QJsonObject& panorama, Pose* pose)
{
    using RowMajor = Eigen::Matrix<double, 3, 3, Eigen::RowMajor>;
    RowMajor rotation;
    const bool read = readNumbers(panorama.value(QLatin1String("position")), 3, pose->position.data()) &&
                      readNumbers(panorama.value(QLatin1String("rotation")), 9, rotation.data());
    pose->rotation = rotation;
    return read;
}

IdPair pairOf(const QJsonObject& object)
{
    return idPair(object.value(QLatin1String("id0")).toString(),
                  object.value(QLatin1String("id1")).toString());
}

} // namespace

IdPair idPair(const QString& one, const QString& other)
{
    return one < other ? IdPair(one, other) : IdPair(other, one);
}

PoseFile readPoseFile(const QString& path)
{
    PoseFile result;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        result.error = QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString());
        return result;
    }
    QJsonParseError parse;
    const QJsonObject root = QJsonDocument::fromJson(file.readAll(), &parse).object();
    if (parse.error != QJsonParseError::NoError) {
        result.error = QStringLiteral("%1, byte %2: %3").arg(path).arg(parse.offset).arg(parse.errorString());
        return result;
    }
    for (const QJsonValue value : root.value(QLatin1String("panoramas")).toArray()) {
        const QJsonObject panorama = value.toObject();
        const QString id = panorama.value(QLatin1String("id")).toString();
        if (id.isEmpty() || !readPose(panorama, &result.poses[id])) {
            result.error =
                QStringLiteral("%1: panorama \"%2\" lacks its id, position or rotation").arg(path, id);
            return result;
        }
    }
    for (const QJsonValue value : root.value(QLatin1String("links")).toArray())
        result.links[pairOf(value.toObject())] = value.toObject().value(QLatin1String("mode")).toInt() != 1;
    result.hasVisibility = root.contains(QLatin1String("pairs"));
    for (const QJsonValue value : root.value(QLatin1String("pairs")).toArray())
        result.visible[pairOf(value.toObject())] = value.toObject().value(QLatin1String("sees")).toBool();
    result.groups = root.value(QLatin1String("groups")).toInt();
    result.lidar = root.value(QLatin1String("lidar")).toBool(true);
    if (result.poses.empty()) result.error = QStringLiteral("%1 holds no panoramas").arg(path);
    return result;
}
