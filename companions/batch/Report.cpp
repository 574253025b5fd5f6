// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/Report.h"

#include "project/PanoIdentity.h"
#include "project/TourContainer.h"
#include "project/TourXml.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <cmath>
#include <map>
#ifndef Q_OS_WIN
#include <sys/resource.h>
#endif

namespace {

using Rotation = std::array<double, 9>;

template <std::size_t size>
QJsonArray numbers(const std::array<double, size>& values)
{
    QJsonArray array;
    for (const double value : values)
        array.append(value);
    return array;
}

std::map<quint64, Rotation> rotationsById(Linker& linker)
{
    std::map<quint64, Rotation> rotations;
    const int count = linker.nodeCount();
    for (int index = 0; index < count; ++index) {
        PanoNodeParasB paras;
        linker.nodeParasB(index, &paras);
        Rotation& rotation = rotations[panoIdFromName(paras.name)];
        std::copy(std::begin(paras.rotation), std::end(paras.rotation), rotation.begin());
    }
    return rotations;
}

Rotation aboutVertical(double angle)
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {c, -s, 0, s, c, 0, 0, 0, 1};
}

QJsonObject panorama(const PanoNode& node, const Rotation& rotation)
{
    return {{QStringLiteral("id"), tourxml::identityText(node.parameters.identity)},
            {QStringLiteral("base_name"), node.base_name},
            {QStringLiteral("position"), numbers<3>({node.position_x, node.position_y, node.position_z})},
            {QStringLiteral("vertex"), numbers<2>({node.vertex_x, node.vertex_y})},
            {QStringLiteral("direction"), node.direction},
            {QStringLiteral("rotation"), numbers(rotation)},
            {QStringLiteral("plan_center"), QJsonArray{node.plan_center_x, node.plan_center_y}},
            {QStringLiteral("plan_src"), tour::fileNameOf(node.plan_src)}};
}

QJsonObject linkObject(const PanoLink& link)
{
    return {{QStringLiteral("id0"), tourxml::identityText(link.name_0)},
            {QStringLiteral("id1"), tourxml::identityText(link.name_1)},
            {QStringLiteral("rot_0"), link.rot_0},
            {QStringLiteral("rot_1"), link.rot_1},
            {QStringLiteral("tilt_x0"), link.tilt_x0},
            {QStringLiteral("tilt_x1"), link.tilt_x1},
            {QStringLiteral("tilt_y0"), link.tilt_y0},
            {QStringLiteral("icon_y0"), link.icon_y0},
            {QStringLiteral("icon_y1"), link.icon_y1},
            {QStringLiteral("spacing"), link.spacing},
            {QStringLiteral("mode"), link.mode},
            {QStringLiteral("reliability"), link.reliability}};
}

QJsonArray filesIn(const QString& folder)
{
    QJsonArray paths;
    for (const QString& name : QDir(folder).entryList(QDir::Files, QDir::Name))
        paths.append(folder + name);
    return paths;
}

} // namespace

QJsonObject reportOf(const RoamProject& project, Linker& linker)
{
    const std::map<quint64, Rotation> rotations = rotationsById(linker);
    QJsonArray panoramas;
    for (const auto& node : project.panoramas) {
        const auto known = rotations.find(node->id);
        panoramas.append(
            panorama(*node, known == rotations.end() ? aboutVertical(node->direction) : known->second));
    }
    QJsonArray links;
    for (const auto& link : project.links)
        links.append(linkObject(*link));

    return {{QStringLiteral("stage"), project.stage},
            {QStringLiteral("lidar"), project.lidar},
            {QStringLiteral("entry"), project.entry_index},
            {QStringLiteral("groups"), linker.groupCount()},
            {QStringLiteral("panoramas"), panoramas},
            {QStringLiteral("links"), links},
            {QStringLiteral("outputs"), filesIn(project.folders.output)}};
}

QString writeReport(const QString& path, const RoamProject& project, Linker& linker, const Stopwatch& watch)
{
    QJsonObject report = reportOf(project, linker);
    QJsonObject seconds{{QStringLiteral("total"), watch.total()}};
    for (const auto& [step, time] : watch.seconds())
        seconds.insert(step, time);
    report.insert(QStringLiteral("seconds"), seconds);
    report.insert(QStringLiteral("peak_memory_mib"), peakMemoryMib());

    const QByteArray text = QJsonDocument(report).toJson();
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(text) == text.size())
        return QString();
    return QStringLiteral("%1 cannot be written: %2").arg(path, file.errorString());
}

double peakMemoryMib()
{
#ifdef Q_OS_WIN
    return 0.0;
#else
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
#ifdef Q_OS_MACOS
    constexpr double kUnitsPerMib = 1024.0 * 1024.0;
#else
    constexpr double kUnitsPerMib = 1024.0;
#endif
    return static_cast<double>(usage.ru_maxrss) / kUnitsPerMib;
#endif
}
