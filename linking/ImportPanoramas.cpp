// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/ImportPanoramas.h"

#include "linking/pictures/Thumbnail.h"
#include "linking/pno/PnoFile.h"
#include "project/LocalText.h"

namespace {

std::unique_ptr<PanoNode> nodeFrom(PnoFile& file, const QString& path)
{
    auto node = std::make_unique<PanoNode>();
    node->id = file.panoId();
    node->parameters = file.imageInfo();
    node->lidar = file.lidar();
    const auto pointValues = file.pointValues();
    node->plan_center_x = static_cast<qint32>(pointValues[0]);
    node->plan_center_y = static_cast<qint32>(pointValues[1]);
    node->base_name = panoBaseName(path);
    node->file_path = path;
    node->thumbnail = panoramaThumbnail(file);
    return node;
}

ImportResult::Fate importOne(RoamProject& project, PnoFile& file, const QString& path, qint32* status)
{
    using Fate = ImportResult::Fate;
    *status = file.Open(localtext::toLocal(path).constData());
    if (*status != 0) return Fate::Unreadable;
    if (findPanorama(project, file.panoId())) return Fate::Duplicate;

    auto node = nodeFrom(file, path);
    if (node->thumbnail.isNull()) return Fate::NoThumbnail;
    if (project.panoramas.empty())
        project.lidar = node->lidar;
    else if (node->lidar != project.lidar)
        return Fate::LidarMismatch;
    project.panoramas.push_back(std::move(node));
    return Fate::Added;
}

} // namespace

QString panoBaseName(const QString& path)
{
    QString name = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
    name.chop(4);
    return name;
}

ImportResult importPanoramas(RoamProject& project, const QStringList& paths)
{
    ImportResult result;
    if (paths.isEmpty()) return result;

    const auto file = std::make_unique<PnoFile>();
    for (const QString& path : paths) {
        ImportResult::File outcome{path};
        outcome.fate = importOne(project, *file, path, &outcome.status);
        if (outcome.fate == ImportResult::Fate::Added) ++result.added;
        if (outcome.fate == ImportResult::Fate::LidarMismatch)
            result.mismatch = project.lidar ? ImportResult::Mismatch::DroppedWithoutLidar
                                            : ImportResult::Mismatch::DroppedWithLidar;
        result.files.push_back(outcome);
    }
    project.modified = true;
    return result;
}
