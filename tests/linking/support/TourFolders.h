// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Tour files and a working folder for tests of opening.

#pragma once

#include "linking/OpenTour.h"
#include "tests/linking/support/RecordingLinker.h"
#include "tests/project/reader/TourBytes.h"
#include "tests/support/JpegTiles.h"
#include "tests/support/PnoParts.h"

#include <QDir>
#include <QTemporaryDir>

/// A description from its parts, not laid out as the program does it.
inline QByteArray xmlOf(const QByteArray& panoramas, const QByteArray& links = "",
                        const QByteArray& entry = "<entry_point/>")
{
    return "<pano_group>" + entry + "<panorama_list>" + panoramas + "</panorama_list><pano_link_list>" +
           links + "</pano_link_list></pano_group>";
}

/// A panorama file without lidar whose smallest tile is grey.
inline QByteArray panoramaBytes(const char* identity)
{
    pnotest::PnoOptions made;
    made.identity = identity;
    const pnotest::Bytes jpeg = pnotest::solidJpeg({90, 90, 90});
    made.tiles = [jpeg](int level, int, int) { return level == 0 ? jpeg : pnotest::Bytes{1, 2, 3, 4}; };
    const pnotest::Bytes bytes = pnotest::panorama(made);
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()));
}

/// Its folders' names hold Chinese, a blank and an accent.
class TourFolders
{
public:
    TourFolders()
    {
        QDir().mkpath(working());
        project.folders.working = working();
    }

    QString top() const { return m_folder.path() + QLatin1Char('/'); }
    QString working() const { return top() + QStringLiteral("工作 é/Tmp/"); }
    QString inWorking(const QString& name) const { return working() + name; }
    QString tourPath() const { return top() + QStringLiteral("旅程.roa"); }

    OpenResult openBytes(const QByteArray& bytes, const PlanViews& views = {})
    {
        writeBytes(tourPath(), bytes);
        return openTour(project, linker, tourPath(), views);
    }
    OpenResult open(const std::vector<RecordBytes>& records, const PlanViews& views = {})
    {
        return openBytes(tourBytes(records), views);
    }

    PanoNode& node(std::size_t row) { return *project.panoramas.at(row); }
    PanoLink& link(std::size_t row) { return *project.links.at(row); }

    RoamProject project;
    RecordingLinker linker;

private:
    QTemporaryDir m_folder;
};
