// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Projects for tests of the linking commands.

#pragma once

#include "project/PanoIdentity.h"
#include "project/RoamProject.h"

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <cstring>

/// Appends a panorama of this identity text; its base name is `room` + identity, its file is not there.
inline PanoNode* addPanorama(RoamProject& project, const char* identity, bool lidar = false)
{
    auto node = std::make_unique<PanoNode>();
    node->id = panoIdFromName(identity);
    std::strncpy(node->parameters.identity, identity, sizeof node->parameters.identity - 1);
    node->lidar = lidar;
    node->base_name = QStringLiteral("room ") + QString::fromLatin1(identity);
    node->file_path = QStringLiteral("/panoramas/") + QString::fromLatin1(identity) + QStringLiteral(".pno");
    project.lidar = lidar;
    project.panoramas.push_back(std::move(node));
    return project.panoramas.back().get();
}

/// A link by hand between two identities.
inline PanoLink* addLink(RoamProject& project, const char* name_0, const char* name_1)
{
    auto link = std::make_unique<PanoLink>();
    link->id_0 = static_cast<qint64>(panoIdFromName(name_0));
    link->id_1 = static_cast<qint64>(panoIdFromName(name_1));
    std::strncpy(link->name_0, name_0, sizeof link->name_0 - 1);
    std::strncpy(link->name_1, name_1, sizeof link->name_1 - 1);
    project.links.push_back(std::move(link));
    return project.links.back().get();
}

/// A folder that serves as the working folder, ending in "/".
class WorkingFolderForTest
{
public:
    explicit WorkingFolderForTest(RoamProject& project) { project.folders.working = path(); }
    QString path() const { return m_folder.path() + QLatin1Char('/'); }
    QString file(const QString& name) const { return path() + name; }

    /// Makes a file with some content.
    QString make(const QString& name) const
    {
        QFile made(file(name));
        if (!made.open(QIODevice::WriteOnly) || made.write("x") != 1) qFatal("cannot write a test file");
        return made.fileName();
    }

private:
    QTemporaryDir m_folder;
};
