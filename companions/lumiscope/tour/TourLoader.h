// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Unpacks a tour in the order in which a visitor needs it, on a thread of its own.

#pragma once

#include "companions/lumiscope/tour/MapPicture.h"
#include "companions/lumiscope/tour/WalkTour.h"

#include <QSemaphore>
#include <QString>
#include <QThread>

namespace lumiscope {

/// The entry panorama comes first, so that the visitor sees it while the rest is being unpacked; then photos
/// and plans, the entry's neighbours, the others. A file that is cut short anywhere is refused before
/// anything is shown of it.
class TourLoader : public QThread
{
    Q_OBJECT

public:
    /// @param path         the tour file; only read
    /// @param folder       where the files go, ends in "/"
    /// @param application  where the linking library lies, which unpacks clouds; ends in "/"
    TourLoader(QString path, QString folder, QString application, QObject* parent = nullptr);
    /// Stops after the file that is being unpacked.
    ~TourLoader() override;

    /// To be called before the start: once the entry is unpacked, nothing else is until `goOn`, so that all
    /// processors make the first frame; at the longest for a second, should none be painted.
    void pauseAfterEntry() { m_pauses = true; }
    /// The first frame is seen, or never will be.
    void goOn() { m_seen.release(); }

Q_SIGNALS:
    /// The stations without their files.
    void described(const lumiscope::WalkTour& tour);
    /// Before `panoramaReady` of the same one.
    void entryReady(int station, const QString& path);
    /// @param name  for the visitor
    void panoramaReady(int station, const QString& path, const QString& name);
    void photoReady(int station, int photo, const QString& path);
    void mapReady(const lumiscope::MapPicture& picture);
    /// Nothing more comes. One sentence for the visitor.
    void failed(const QString& message);

protected:
    void run() override;

private:
    friend class TourUnpacking;
    void pause();

    QString m_path;
    QString m_folder;
    QString m_application;
    bool m_pauses = false;
    QSemaphore m_seen;
};

} // namespace lumiscope
