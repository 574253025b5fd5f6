// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/CompareCommand.h"

#include "companions/batch/Alignment.h"
#include "companions/batch/MapCompare.h"

#include <QCommandLineParser>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

double distance(const PoseFile& truth, const IdPair& pair)
{
    return (truth.poses.at(pair.first).position - truth.poses.at(pair.second).position).norm();
}

bool known(const PoseFile& file, const IdPair& pair)
{
    return file.poses.count(pair.first) && file.poses.count(pair.second);
}

double extentOf(const PoseFile& truth)
{
    double extent = 0.0;
    for (const auto& [id, pose] : truth.poses)
        for (const auto& [otherId, other] : truth.poses)
            extent = std::max(extent, (pose.position - other.position).norm());
    return extent;
}

void printPoses(const PoseFile& report, const PoseFile& truth, const QStringList& group)
{
    std::vector<Pose> estimated, expected;
    for (const QString& id : group) {
        estimated.push_back(report.poses.at(id));
        expected.push_back(truth.poses.at(id));
    }
    const Scale scale = report.lidar ? Scale::Known : Scale::Unknown;
    const std::vector<PoseError> errors = alignedErrors(estimated, expected, scale);
    const double extent = extentOf(truth);

    std::printf("%-16s %13s %12s %12s %12s\n", "panorama", "rotation deg", "heading deg", "position cm",
                "% of extent");
    std::vector<double> rotations, headings, positions;
    for (std::size_t i = 0; i < errors.size(); ++i) {
        std::printf("%-16s %13.3f %12.3f %12.2f %12.2f\n", qPrintable(group[static_cast<int>(i)]),
                    errors[i].rotation_deg, errors[i].heading_deg, errors[i].position_m * 100.0,
                    extent > 0.0 ? errors[i].position_m / extent * 100.0 : 0.0);
        rotations.push_back(errors[i].rotation_deg);
        headings.push_back(errors[i].heading_deg);
        positions.push_back(errors[i].position_m);
    }
    const double position = median(positions);
    std::printf("%-16s %13.3f %12.3f %12.2f %12.2f\n", "median", median(rotations), median(headings),
                position * 100.0, extent > 0.0 ? position / extent * 100.0 : 0.0);
    std::printf("%-16s %13.3f %12.3f %12.2f %12.2f\n", "largest",
                *std::max_element(rotations.begin(), rotations.end()),
                *std::max_element(headings.begin(), headings.end()),
                *std::max_element(positions.begin(), positions.end()) * 100.0,
                extent > 0.0 ? *std::max_element(positions.begin(), positions.end()) / extent * 100.0 : 0.0);
    std::printf("aligned by a %s; the stations' extent is %.2f m\n",
                scale == Scale::Known ? "rigid motion" : "similarity (no lidar)", extent);
}

void printLinks(const LinkScore& score)
{
    std::printf("links found: %d, between panoramas that truly see each other: %d, false: %d\n", score.found,
                score.trueSight, score.found - score.trueSight);
    const double share = score.neighbours ? 100.0 * score.neighboursLinked / score.neighbours : 100.0;
    std::printf("visible neighbours nearer than %.0f m: %d, linked: %d (%.0f %%)\n", kNeighbour_m,
                score.neighbours, score.neighboursLinked, share);
}

} // namespace

LinkScore scoreLinks(const PoseFile& report, const PoseFile& truth)
{
    LinkScore score;
    for (const auto& [pair, automatic] : report.links) {
        if (!automatic || !known(truth, pair)) continue;
        const auto sight = truth.visible.find(pair);
        ++score.found;
        if (sight != truth.visible.end() && sight->second) ++score.trueSight;
    }
    for (const auto& [pair, visible] : truth.visible) {
        if (!visible || !known(truth, pair) || distance(truth, pair) >= kNeighbour_m) continue;
        ++score.neighbours;
        if (report.links.count(pair)) ++score.neighboursLinked;
    }
    return score;
}

std::vector<QStringList> linkedGroups(const PoseFile& report, const PoseFile& truth)
{
    std::map<QString, QString> parents;
    for (const auto& [id, pose] : report.poses)
        if (truth.poses.count(id)) parents[id] = id;
    const std::function<QString(const QString&)> root = [&](const QString& id) {
        return parents[id] == id ? id : root(parents[id]);
    };
    for (const auto& [pair, automatic] : report.links)
        if (parents.count(pair.first) && parents.count(pair.second))
            parents[root(pair.first)] = root(pair.second);

    std::map<QString, QStringList> members;
    for (const auto& [id, parent] : parents)
        members[root(id)] << id;
    std::vector<QStringList> groups;
    for (const auto& [id, group] : members)
        groups.push_back(group);
    std::stable_sort(groups.begin(), groups.end(),
                     [](const QStringList& a, const QStringList& b) { return a.size() > b.size(); });
    return groups;
}

Parsed<CompareOptions> parseCompareOptions(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption map(QStringLiteral("map"), QString(), QStringLiteral("DIR"));
    parser.addOption(map);
    if (!parser.parse(QStringList{QStringLiteral("compare")} + arguments))
        return {std::nullopt, parser.errorText()};
    const QStringList files = parser.positionalArguments();
    if (files.size() != 2) return {std::nullopt, QStringLiteral("compare takes REPORT.json and TRUTH.json")};
    const QString work = parser.isSet(map) ? QFileInfo(parser.value(map)).absoluteFilePath() : QString();
    return {CompareOptions{files[0], files[1], work}, QString()};
}

int runCompare(const CompareOptions& options)
{
    const PoseFile report = readPoseFile(options.report);
    const PoseFile truth = readPoseFile(options.truth);
    for (const PoseFile* file : {&report, &truth})
        if (!file->error.isEmpty()) return refused(file->error);
    const std::vector<QStringList> groups = linkedGroups(report, truth);
    if (groups.empty()) return refused(QStringLiteral("the two files have no panorama in common"));

    std::printf("panoramas: %d of %d, groups: %d, in the largest: %d\n",
                static_cast<int>(report.poses.size()), static_cast<int>(truth.poses.size()), report.groups,
                static_cast<int>(groups.front().size()));
    printPoses(report, truth, groups.front());
    for (std::size_t i = 1; i < groups.size(); ++i)
        std::printf("apart from them: %s\n", qPrintable(groups[i].join(QStringLiteral(", "))));
    if (truth.hasVisibility)
        printLinks(scoreLinks(report, truth));
    else
        std::printf("%s does not say who sees whom\n", qPrintable(options.truth));
    const QString problem = options.work.isEmpty()
                                ? QString()
                                : compareMap(options.report, options.truth, options.work, groups.front());
    std::fflush(stdout);
    return problem.isEmpty() ? ExitDone : refused(problem);
}
