// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/MapCompare.h"

#include "companions/batch/Alignment.h"
#include "companions/batch/truth/PlanScore.h"
#include "project/WorkingFolder.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>
#include <map>

namespace {

/// Every file of the truth, read.
struct MapTruth
{
    TrueSurfaces surfaces;
    TrueStorey storey; ///< the lowest
    PoseFile poses;
    QString error;
};

MapTruth readTruth(const QString& truthPath)
{
    const QString folder = QFileInfo(truthPath).absolutePath() + QLatin1Char('/');
    MapTruth truth;
    truth.poses = readPoseFile(truthPath);
    truth.surfaces = readTrueSurfaces(folder + QStringLiteral("surfaces.ply"));
    const FloorPlanFile plan = readFloorPlan(folder + QStringLiteral("floorplan.json"));
    for (const QString& error : {truth.poses.error, truth.surfaces.error, plan.error})
        if (truth.error.isEmpty()) truth.error = error;
    if (!plan.storeys.empty()) truth.storey = plan.storeys.front();
    return truth;
}

/// Plan pixels of a report by identity; only of those whose plan is the picture.
std::map<QString, Eigen::Vector2i> planPixels(const QString& reportPath, QString* picture)
{
    std::map<QString, Eigen::Vector2i> pixels;
    QFile file(reportPath);
    if (!file.open(QIODevice::ReadOnly)) return pixels;
    const QJsonObject report = QJsonDocument::fromJson(file.readAll()).object();
    for (const QJsonValue value : report.value(QLatin1String("panoramas")).toArray()) {
        const QJsonObject panorama = value.toObject();
        const QString source = panorama.value(QLatin1String("plan_src")).toString();
        if (!source.endsWith(QLatin1String("-00000000.png"))) continue;
        *picture = source;
        const QJsonArray centre = panorama.value(QLatin1String("plan_center")).toArray();
        pixels[panorama.value(QLatin1String("id")).toString()] = {centre.at(0).toInt(), centre.at(1).toInt()};
    }
    return pixels;
}

void printShare(const char* what, const Share& share)
{
    std::printf("  %-66s %6.2f %%  (%lld of %lld)\n", what, share.percent(), share.part, share.whole);
}

void printParts(const char* what, const std::array<Share, kTrueParts>& shares)
{
    std::printf("  %s\n", what);
    for (std::size_t part = 0; part < shares.size(); ++part)
        if (shares[part].whole > 0)
            std::printf("    %-14s %6.2f %%  (of %lld)\n", nameOf(static_cast<TruePart>(part)),
                        shares[part].percent(), shares[part].whole);
}

void printCloud(const CloudScore& score, std::size_t points)
{
    std::printf("cloud: %zu points; distance from the nearest true surface: median %.1f mm, 95 %% within "
                "%.1f mm\n",
                points, score.median_m * 1000, score.percentile95_m * 1000);
    printShare("points within 1.5 cm of a true surface", score.exact);
    printShare("points farther than 5 cm from any", score.farOff);
    printParts("points within 1.5 cm, by the nearest surface:", score.exactByPart);
    if (score.covered.whole > 0)
        printShare("surface of the building seen by a station, within 3 cm of a point", score.covered);
    if (score.coveredOutdoors.whole > 0)
        printShare("the same outdoors (without leaves)", score.coveredOutdoors);
    printParts("seen surface within 3 cm of a point, by part:", score.coveredByPart);
    std::printf("  points above 5 cm below the ceiling: %lld; above 4 cm: %lld\n", score.above5cm,
                score.above4cm);
    printShare("lintels below that kept", score.lintels);
    printShare("wall tops (30 cm) below that kept", score.wallTops);
    printShare("lamps below that kept", score.lamps);
}

void printPlan(const PlanScore& score, const PlanFrame& frame)
{
    std::printf("plan: %.2f mm per pixel\n", frame.pixel_m * 1000);
    printShare("precision: wall pixels within 5 cm of a true wall", score.precision);
    std::printf("    of the false pixels on furniture: %lld\n", score.onFurniture);
    printShare("recall: seen wall faces within 5 cm of a wall pixel", score.recall);
    printShare("recall of all wall faces, seen or not", score.recallOfAll);
}

/// @return what is wrong, or empty
QString comparePlan(const QString& reportPath, const QString& work, const MapTruth& truth,
                    const Eigen::Isometry3d& truth_from_report, const PoseFile& report,
                    const QStringList& group, const ScannerSight& sight)
{
    QString picture;
    const auto pixels = planPixels(reportPath, &picture);
    std::vector<Eigen::Vector2i> at;
    std::vector<Eigen::Vector2d> estimated, expected;
    for (const QString& id : group) {
        const auto pixel = pixels.find(id);
        if (pixel == pixels.end()) continue;
        at.push_back(pixel->second);
        estimated.push_back((truth_from_report * report.poses.at(id).position).head<2>());
        expected.push_back(truth.poses.poses.at(id).position.head<2>());
    }
    if (at.size() < 2) {
        std::printf("plan: none (a plan is compared when the map was made with --map 2d)\n");
        return QString();
    }
    const QString path = work + QStringLiteral("/Tmp/") + picture;
    const QImage plan(path);
    if (plan.isNull()) return QStringLiteral("%1 is not a picture").arg(path);
    const PlanFrame frame = planFrame(at, estimated);
    printPlan(scorePlan(plan, frame, truth.storey, sight), frame);

    double own = 0.0, off = 0.0;
    for (std::size_t i = 0; i < at.size(); ++i) {
        const Eigen::Vector2d place = frame.worldOf(at[i].x() + 0.5, at[i].y() + 0.5);
        own = std::max(own, (place - estimated[i]).cwiseAbs().maxCoeff() / frame.pixel_m);
        off = std::max(off, (place - expected[i]).cwiseAbs().maxCoeff() / frame.pixel_m);
    }
    std::printf("  stations: at most %.2f pixels from the reported position, %.2f from the true one\n", own,
                off);
    return QString();
}

} // namespace

QString compareMap(const QString& reportPath, const QString& truthPath, const QString& work,
                   const QStringList& group)
{
    const MapTruth truth = readTruth(truthPath);
    if (!truth.error.isEmpty()) return truth.error;
    const PoseFile report = readPoseFile(reportPath);
    const QString cloudPath = newestFile(work + QStringLiteral("/Tmp/"), QStringLiteral("*-00000000.tmp"));
    if (cloudPath.isEmpty()) return QStringLiteral("%1/Tmp/ holds no merged cloud").arg(work);
    MergedCloud cloud = readMergedCloud(cloudPath);
    if (!cloud.error.isEmpty()) return cloud.error;

    std::vector<Pose> estimated, expected;
    for (const QString& id : group) {
        estimated.push_back(report.poses.at(id));
        expected.push_back(truth.poses.poses.at(id));
    }
    const Eigen::Isometry3d truth_from_report = rigidAlignment(estimated, expected);
    const Eigen::Isometry3f move = truth_from_report.cast<float>();
    for (Eigen::Vector3f& point : cloud.points)
        point = move * point;

    const ScannerSight sight(truth.surfaces, expected, readScannerLimits(truthPath));
    printCloud(scoreCloud(cloud.points, truth.surfaces, truth.storey, sight), cloud.points.size());
    return comparePlan(reportPath, work, truth, truth_from_report, report, group, sight);
}
