// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "project/MapOptions.h"
#include "project/PanoLink.h"
#include "project/PanoNode.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

/// Where the program keeps its things; every folder ends in "/". Set once at start-up.
struct ProjectFolders
{
    QString application;
    QString working; ///< application + "Tmp/"
    QString output;  ///< application + "Out/"
    QString viewer;  ///< full path of the companion viewer
};

/// How far the panoramas of a project are linked. Compared by order.
enum LinkingStage : qint32
{
    NotLinked = 0,
    Linked = 1,
    MapGenerated = 2
};

/// What `RoamProject::upload_counters` hold while a tour is uploaded; the others are unused.
enum UploadCounter
{
    UploadStep = 0,     ///< index of the panorama, link or file that is being sent
    UploadPollAgain = 1 ///< 1 when the listing asked for last comes after an upload
};

/// Values of the album service, empty while nobody is logged in.
struct CloudLogin
{
    QString token;
    QString album_id;
    QString album_name;
    QStringList model_files; ///< match data that an upload sends, full paths
    QStringList photo_files; ///< photos, then plans that an upload sends, full paths
};

/// The one open tour. Owns its panoramas and links; list order is import order and significant everywhere.
struct RoamProject
{
    ProjectFolders folders;
    QString file_path; ///< tour file last opened or saved, or empty
    bool modified = false;
    std::vector<std::unique_ptr<PanoNode>> panoramas;
    std::vector<std::unique_ptr<PanoLink>> links;
    qint32 entry_index = 0; ///< into panoramas; reset leaves it alone
    bool has_plan_image = false;
    bool lidar = false; ///< all panoramas carry lidar, or none does
    MapOptions map_options;
    qint32 stage = NotLinked; ///< a `LinkingStage`
    quint64 editor_state[3] = {0, 0, 0};
    quint32 upload_counters[4] = {0, 0, 0, 0}; ///< an `UploadCounter` each
    CloudLogin cloud;
};

/// Panorama with this identity number; when an identity occurs twice the last one; nullptr when there is
/// none. The project keeps ownership.
PanoNode* findPanorama(const RoamProject& project, quint64 id);

/// Empties the project in place: login values, path, modified flag, editor state, upload counters, plan flag,
/// stage, panoramas, links and lidar flag. Folders, map options and the entry index stay.
void clearProject(RoamProject& project);
