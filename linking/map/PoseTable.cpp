// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/map/PoseTable.h"

#include "project/LocalText.h"
#include "project/PanoIdentity.h"

#include <QFile>
#include <QStringList>

namespace {

const QLatin1String
    kHeading("INDEX,ID,FILE_NAME,POSITION_X,POSITION_Y,POSITION_Z,"
             "MATRIX_X_X,MATRIX_X_Y,MATRIX_X_Z,MATRIX_Y_X,MATRIX_Y_Y,MATRIX_Y_Z,"
             "MATRIX_Z_X,MATRIX_Z_Y,MATRIX_Z_Z,PLAN_CENTER_X,PLAN_CENTER_Y,PLAN_FILE_NAME\r\n");

QString row(int number, const PanoNodeParasB& pose, const RoamProject& project)
{
    const PanoNode* node = findPanorama(project, panoIdFromName(pose.name));
    QStringList fields{QString::number(number), localtext::fromLocal(pose.name),
                       node ? node->base_name : QString()};
    for (const double metres : {pose.position_x, pose.position_y, pose.position_z})
        fields << QString::number(metres, 'f', 4);
    for (const double cell : pose.rotation)
        fields << QString::number(cell, 'f', 6);
    fields << QString::number(pose.plan_center_x) << QString::number(pose.plan_center_y)
           << localtext::fromLocal(pose.plan_name);
    return fields.join(QLatin1Char(',')) + QLatin1String("\r\n");
}

} // namespace

std::vector<PanoNodeParasB> allPoses(Linker& linker)
{
    std::vector<PanoNodeParasB> poses;
    const int count = linker.nodeCount();
    for (int index = 0; index < count; ++index) {
        poses.emplace_back();
        linker.nodeParasB(index, &poses.back());
    }
    return poses;
}

QString poseTableName(const std::vector<PanoNodeParasB>& poses)
{
    return localtext::fromLocal(poses.front().name) + QLatin1Char('_') +
           localtext::fromLocal(poses.back().name) + QLatin1Char('_') + QString::number(poses.size()) +
           QLatin1String(".csv");
}

QString poseTable(const std::vector<PanoNodeParasB>& poses, const RoamProject& project)
{
    QString text = kHeading;
    for (std::size_t index = 0; index < poses.size(); ++index)
        text += row(static_cast<int>(index) + 1, poses[index], project);
    return text;
}

void writePoseTable(const RoamProject& project, Linker& linker)
{
    const std::vector<PanoNodeParasB> poses = allPoses(linker);
    if (poses.empty()) return;
    const QString name = poseTableName(poses);
    // Identities come out of files: one with a folder in it may not lead out of the output folder.
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\'))) return;
    QFile file(project.folders.output + name);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) return;
    file.write(localtext::toLocal(poseTable(poses, project)));
}
