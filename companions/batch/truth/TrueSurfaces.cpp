// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/truth/TrueSurfaces.h"

#include <Eigen/Geometry>
#include <QFile>
#include <QtEndian>

#include <cmath>

namespace {

constexpr qint64 kVertexBytes = 12, kFaceBytes = 14;

struct Counts
{
    qint64 points = -1, triangles = -1;
};

/// Reads the text part up to its last line.
Counts readHead(QFile& file)
{
    Counts counts;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine(200).trimmed();
        if (line.startsWith("element vertex ")) counts.points = line.mid(15).toLongLong();
        if (line.startsWith("element face ")) counts.triangles = line.mid(13).toLongLong();
        if (line == "end_header") return counts;
    }
    return {};
}

/// @return whether all is well
bool readBody(const uchar* bytes, const Counts& counts, TrueSurfaces* surfaces)
{
    surfaces->points.resize(static_cast<std::size_t>(counts.points));
    for (Eigen::Vector3f& point : surfaces->points)
        for (int axis = 0; axis < 3; ++axis, bytes += 4)
            point[axis] = qFromLittleEndian<float>(bytes);
    surfaces->triangles.resize(static_cast<std::size_t>(counts.triangles));
    for (TrueSurfaces::Triangle& triangle : surfaces->triangles) {
        if (*bytes++ != 3) return false;
        for (std::uint32_t& corner : triangle.corner) {
            corner = qFromLittleEndian<quint32>(bytes);
            if (corner >= counts.points) return false;
            bytes += 4;
        }
        if (*bytes >= kTrueParts) return false;
        triangle.part = static_cast<TruePart>(*bytes++);
    }
    return true;
}

} // namespace

const char* nameOf(TruePart part)
{
    constexpr const char* kNames[kTrueParts] = {"furniture", "floor",  "ceiling", "wall",          "lintel",
                                                "door",      "window", "lamp",    "glass",         "mirror",
                                                "ground",    "house",  "plant",   "other outdoors"};
    return kNames[static_cast<int>(part)];
}

Eigen::Vector3f TrueSurfaces::areaNormal(std::size_t triangle) const
{
    return 0.5f * (at(triangle, 1) - at(triangle, 0)).cross(at(triangle, 2) - at(triangle, 0));
}

TrueSurfaces readTrueSurfaces(const QString& path)
{
    TrueSurfaces surfaces;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        surfaces.error = QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString());
        return surfaces;
    }
    const Counts counts = readHead(file);
    const QByteArray body = file.readAll();
    const bool fits = counts.points >= 0 && counts.triangles > 0 && counts.points <= body.size() &&
                      counts.triangles <= body.size() &&
                      counts.points * kVertexBytes + counts.triangles * kFaceBytes == body.size();
    if (!fits || !readBody(reinterpret_cast<const uchar*>(body.constData()), counts, &surfaces))
        surfaces.error = QStringLiteral("%1 is not a file of true surfaces").arg(path);
    return surfaces;
}
