// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "publish/FileLists.h"

namespace publish {

QStringList modelFiles(const RoamProject& project)
{
    QStringList files;
    for (const auto& link : project.links)
        for (const QString& path : {link->match_path_0, link->match_path_1})
            if (!path.isEmpty()) files << path;
    return files;
}

QStringList photoFiles(const RoamProject& project)
{
    QStringList files;
    for (const auto& node : project.panoramas)
        for (const PhotoHotspot& photo : node->photos)
            if (!photo.photo_path.isEmpty()) files << photo.photo_path;
    for (const auto& node : project.panoramas)
        if (!node->plan_src.isEmpty() && !files.contains(node->plan_src)) files << node->plan_src;
    return files;
}

} // namespace publish
