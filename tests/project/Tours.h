// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Projects with real files behind them, in a folder of the test's own.

#pragma once

#include "project/PanoIdentity.h"
#include "project/RoamProject.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstring>

class TourForTest
{
public:
    RoamProject project;

    QString folder() const { return m_folder.path() + QLatin1Char('/'); }
    QString file(const QString& name) const { return folder() + name; }

    QString write(const QString& name, const QByteArray& bytes) const
    {
        QDir().mkpath(QFileInfo(file(name)).path());
        QFile made(file(name));
        if (!made.open(QIODevice::WriteOnly) || made.write(bytes) != bytes.size())
            qFatal("cannot write a test file");
        return made.fileName();
    }

    /// A panorama whose file holds `bytes`; "name.pno" in the folder.
    PanoNode* add(const char* identity, const QString& baseName, const QByteArray& bytes = "panorama")
    {
        auto node = std::make_unique<PanoNode>();
        node->id = panoIdFromName(identity);
        std::strncpy(node->parameters.identity, identity, sizeof node->parameters.identity - 1);
        node->parameters.max_zoom_level = 12;
        node->parameters.mosaic_pixel_size = 256;
        node->base_name = baseName;
        node->file_path = write(baseName + QStringLiteral(".pno"), bytes);
        project.panoramas.push_back(std::move(node));
        return project.panoramas.back().get();
    }

    PanoLink* link(const char* name_0, const char* name_1)
    {
        auto link = std::make_unique<PanoLink>();
        link->id_0 = static_cast<qint64>(panoIdFromName(name_0));
        link->id_1 = static_cast<qint64>(panoIdFromName(name_1));
        std::strncpy(link->name_0, name_0, sizeof link->name_0 - 1);
        std::strncpy(link->name_1, name_1, sizeof link->name_1 - 1);
        project.links.push_back(std::move(link));
        return project.links.back().get();
    }

private:
    QTemporaryDir m_folder;
};
