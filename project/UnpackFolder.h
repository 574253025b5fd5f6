// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Puts the files of a tour into the working folder, and none anywhere else.

#pragma once

#include "project/TourReader.h"

#include <QHash>
#include <QString>

/// Records are named by whoever wrote the tour file, so that a name may be no name at all, stand for several
/// records, or be that of a link out of the folder.
class UnpackFolder
{
public:
    /// @param folder    ends in "/"
    /// @param tourFile  the file that is read: never written over, should it lie in the folder
    UnpackFolder(const QString& folder, const QString& tourFile);

    /// Writes the reader's present record under its name. A file of that name from before is replaced by a
    /// new one, never written into, so that what shares its bytes keeps them. A record whose name an earlier
    /// one of this tour has is not written again when it holds the same bytes; with others it gets a name
    /// that ends like its own ("2_room.pno").
    /// @param path   where the record's bytes lie; on failure where they were to be written
    /// @param error  the reason when false is returned; no half-written file is left then
    [[nodiscard]] bool unpack(TourReader& tour, QString* path, QString* error);

private:
    struct Occupied
    {
        QHash<QByteArray, QString> paths; ///< by digest
        int versions = 1;
    };

    bool write(TourReader& tour, const QString& path, QString* error);
    bool writeBeside(TourReader& tour, QString* path, QString* error);
    QString freePath(const QString& name, int* version) const;
    bool isTourFile(const QString& path) const;

    QString m_folder;
    QString m_tourFile;
    QHash<QString, Occupied> m_occupied; ///< by file name
};
