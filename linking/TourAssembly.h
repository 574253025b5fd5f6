// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Ties the files of a tour to the panoramas, hotspots and links that its description names.

#pragma once

#include "project/RoamProject.h"
#include "project/TourXmlReader.h"

#include <QHash>
#include <QQueue>
#include <QString>

#include <vector>

class PnoFile;

/// Everything is found by name or number at once, however many records a file has. The panoramas, their
/// hotspots and the links may not be taken out of the project while this lives.
class TourAssembly
{
public:
    explicit TourAssembly(RoamProject& project);
    ~TourAssembly();

    /// Appends what the description says to the project and settles its entry panorama.
    void add(tourxml::Description description);

    /// Each takes the record's name and where its bytes lie now.
    void addPanorama(const QString& name, const QString& path);
    void addMatchData(const QString& name, const QString& path);
    void addPhoto(const QString& name, const QString& path);
    void addPlan(const QString& name, const QString& path);

    /// After the last record: clears plans that never came, and says how far the tour is.
    void finish();

private:
    void index(PanoNode* node);
    void index(PanoLink* link);

    RoamProject& m_project;
    std::unique_ptr<PnoFile> m_file; ///< one for all, since it is large
    QHash<quint64, int> m_rows;      ///< the first panorama of each identity
    QHash<QString, QQueue<PhotoHotspot*>> m_photos;
    QHash<QString, std::vector<PanoNode*>> m_plans;
    QHash<QString, std::vector<PanoLink*>> m_matches; ///< by the key of their match files
};
