// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/truth/ScannerSight.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

ScannerLimits readScannerLimits(const QString& truthPath)
{
    ScannerLimits limits;
    QFile file(truthPath);
    if (!file.open(QIODevice::ReadOnly)) return limits;
    const QJsonObject options =
        QJsonDocument::fromJson(file.readAll()).object().value(QLatin1String("options")).toObject();
    limits.farthest_m = options.value(QLatin1String("max_range_m")).toDouble(limits.farthest_m);
    limits.blindCone_deg = options.value(QLatin1String("blind_cone_deg")).toDouble(limits.blindCone_deg);
    return limits;
}

ScannerSight::ScannerSight(const TrueSurfaces& surfaces, std::vector<Pose> stations,
                           const ScannerLimits& limits)
    : m_opaque(surfaces, [](TruePart part) { return part != TruePart::Glass; })
    , m_stations(std::move(stations))
    , m_limits(limits)
{}

bool ScannerSight::anySees(const Eigen::Vector3f& place, const Eigen::Vector3f& normal) const
{
    return std::any_of(m_stations.begin(), m_stations.end(),
                       [&](const Pose& station) { return sees(station, place, normal); });
}

bool ScannerSight::sees(const Pose& station, const Eigen::Vector3f& place,
                        const Eigen::Vector3f& normal) const
{
    constexpr float kMargin_m = 0.002f;
    const Eigen::Vector3d way = place.cast<double>() - station.position;
    const double distance = way.norm();
    if (distance > m_limits.farthest_m || distance < 0.05) return false;
    const double cosine = -way.dot(normal.cast<double>()) / distance;
    if (cosine < m_limits.leastCosine || distance * m_limits.step_rad > m_limits.widestStep_m * cosine)
        return false;
    const double down = -(station.rotation.transpose() * way).z() / distance;
    if (down > std::cos(m_limits.blindCone_deg * 3.141592653589793 / 180.0)) return false;
    return !m_opaque.blocked(station.position.cast<float>(), place, kMargin_m);
}
