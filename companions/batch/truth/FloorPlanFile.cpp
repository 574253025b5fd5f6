// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/truth/FloorPlanFile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

Eigen::Vector2d pointOf(const QJsonValue& value)
{
    const QJsonArray cells = value.toArray();
    return {cells.at(0).toDouble(), cells.at(1).toDouble()};
}

std::vector<PlanOutline> outlinesOf(const QJsonValue& value)
{
    std::vector<PlanOutline> outlines;
    for (const QJsonValue outline : value.toArray()) {
        outlines.emplace_back();
        for (const QJsonValue point : outline.toArray())
            outlines.back().push_back(pointOf(point));
        if (outlines.back().size() < 3) outlines.pop_back();
    }
    return outlines;
}

TrueStorey storeyOf(const QJsonObject& object)
{
    TrueStorey storey;
    storey.floor = object.value(QLatin1String("floor")).toDouble();
    const QJsonValue ceiling = object.value(QLatin1String("ceiling"));
    if (ceiling.isDouble()) storey.ceiling = ceiling.toDouble();
    storey.cut = object.value(QLatin1String("cut")).toDouble(storey.cut);
    for (const QJsonValue value : object.value(QLatin1String("rooms")).toArray()) {
        const QJsonObject room = value.toObject();
        storey.rooms.push_back(
            {pointOf(room.value(QLatin1String("low"))), pointOf(room.value(QLatin1String("high")))});
    }
    storey.walls = outlinesOf(object.value(QLatin1String("walls")));
    storey.openings = outlinesOf(object.value(QLatin1String("openings")));
    storey.furniture = outlinesOf(object.value(QLatin1String("furniture")));
    return storey;
}

} // namespace

const TrueRoom* TrueStorey::roomAt(const Eigen::Vector2d& point, double beyond) const
{
    for (const TrueRoom& room : rooms)
        if (room.contains(point, beyond)) return &room;
    return nullptr;
}

FloorPlanFile readFloorPlan(const QString& path)
{
    FloorPlanFile plan;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        plan.error = QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString());
        return plan;
    }
    const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    for (const QJsonValue storey : root.value(QLatin1String("storeys")).toArray())
        plan.storeys.push_back(storeyOf(storey.toObject()));
    if (plan.storeys.empty()) plan.error = QStringLiteral("%1 holds no storeys").arg(path);
    return plan;
}

double distanceTo(const PlanOutline& outline, const Eigen::Vector2d& point)
{
    bool within = true;
    double nearest = 1e300;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const Eigen::Vector2d& a = outline[i];
        const Eigen::Vector2d side = outline[(i + 1) % outline.size()] - a;
        const Eigen::Vector2d to = point - a;
        if (side.x() * to.y() - side.y() * to.x() < 0) within = false;
        const double length = side.squaredNorm();
        const double along = length > 0 ? std::clamp(to.dot(side) / length, 0.0, 1.0) : 0.0;
        nearest = std::min(nearest, (to - along * side).norm());
    }
    return within ? 0.0 : nearest;
}

bool anyNear(const std::vector<PlanOutline>& outlines, const Eigen::Vector2d& point, double reach)
{
    return std::any_of(outlines.begin(), outlines.end(),
                       [&](const PlanOutline& outline) { return distanceTo(outline, point) <= reach; });
}
