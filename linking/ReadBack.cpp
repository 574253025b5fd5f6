// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/ReadBack.h"

#include "linking/MatchFiles.h"
#include "project/LocalText.h"
#include "project/PanoIdentity.h"

#include <QFileInfo>

#include <cstring>

namespace {

quint64 idOf(const char* name)
{
    return panoIdFromName(name);
}

void takePlan(PanoNode& node, const PanoNodeParas& paras, const QString& workingFolder)
{
    if (paras.plan_center_x < 0 || paras.plan_center_y < 0 || paras.plan_name[0] == '\0') return;
    const QString path = workingFolder + localtext::fromLocal(QByteArray(paras.plan_name));
    if (!QFileInfo(path).isFile()) return;
    node.plan_center_x = paras.plan_center_x;
    node.plan_center_y = paras.plan_center_y;
    node.plan_src = path;
}

/// The path when the file is there, otherwise empty.
QString ifPresent(const QString& path)
{
    return QFileInfo(path).isFile() ? path : QString();
}

std::unique_ptr<PanoLink> linkFrom(const PanoMatchParas& paras, const QString& workingFolder)
{
    auto link = std::make_unique<PanoLink>();
    link->id_0 = static_cast<qint64>(idOf(paras.name_0));
    link->id_1 = static_cast<qint64>(idOf(paras.name_1));
    std::memcpy(link->name_0, paras.name_0, sizeof link->name_0);
    std::memcpy(link->name_1, paras.name_1, sizeof link->name_1);
    link->rot_0 = paras.rot_0;
    link->rot_1 = paras.rot_1;
    link->tilt_x0 = paras.tilt_x0;
    link->tilt_x1 = paras.tilt_x1;
    link->tilt_y0 = paras.tilt_y0;
    link->icon_y0 = paras.icon_y0;
    link->icon_y1 = paras.icon_y1;
    link->spacing = paras.spacing;
    link->mode = paras.mode;
    link->reliability = paras.reliability;
    const QString stem = workingFolder + matchKey(QByteArray(paras.name_0), QByteArray(paras.name_1));
    link->match_path_0 = ifPresent(stem + QStringLiteral("_0.dat"));
    link->match_path_1 = ifPresent(stem + QStringLiteral("_1.dat"));
    return link;
}

} // namespace

void readBackNodes(RoamProject& project, Linker& linker)
{
    const int count = linker.nodeCount();
    for (int index = 0; index < count; ++index) {
        PanoNodeParas paras;
        linker.nodeParas(index, &paras);
        PanoNode* node = findPanorama(project, idOf(paras.name));
        if (!node) continue;
        node->position_x = paras.position_x;
        node->position_y = paras.position_y;
        node->position_z = paras.position_z;
        node->vertex_x = paras.vertex_x;
        node->vertex_y = paras.vertex_y;
        node->direction = paras.direction;
        takePlan(*node, paras, project.folders.working);
    }
}

void readBackMatches(RoamProject& project, Linker& linker)
{
    project.links.clear();
    const int count = linker.matchCount();
    for (int index = 0; index < count; ++index) {
        PanoMatchParas paras;
        linker.matchParas(index, &paras);
        project.links.push_back(linkFrom(paras, project.folders.working));
    }
}

void readBackAfterEdit(RoamProject& project, Linker& linker)
{
    readBackNodes(project, linker);
    readBackMatches(project, linker);
}
