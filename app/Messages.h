// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Every message box of the window: kind, title, text, buttons and default stand in one table, so that the
// words can be read beside each other. All boxes are modal to `parent`.

#pragma once

#include <QString>

class QWidget;

namespace messages {

enum class Answer
{
    Yes,
    No,
    Cancel
};

/// Whether to save the changed tour before another is made, before one is opened, before the program ends.
Answer askSaveBeforeNew(QWidget* parent);
Answer askSaveBeforeOpen(QWidget* parent);
Answer askSaveBeforeExit(QWidget* parent);
/// Whether an existing file is to be overwritten.
bool askOverwrite(QWidget* parent);

/// The tour file cannot be written at all.
/// @param path    full path of the tour file
/// @param reason  a further line, or empty
void saveFailed(QWidget* parent, const QString& path, const QString& reason = {});
/// The tour file, or a file that goes into it, failed half-way.
void openFailed(QWidget* parent, const QString& path, const QString& reason = {});

/// The tour file that was opened has no tour in it.
void fileEmpty(QWidget* parent, const QString& path);

/// Imported panoramas were dropped, because the project's panoramas carry lidar and these do not.
void droppedWithoutLidar(QWidget* parent);
/// The other way round.
void droppedWithLidar(QWidget* parent);

/// A link needs two different panoramas.
void samePanorama(QWidget* parent);
/// The two panoramas are linked already.
void linkExists(QWidget* parent);

/// A tour without panoramas cannot be previewed.
void nothingToPreview(QWidget* parent);

/// A tour without panoramas cannot be uploaded.
void nothingToUpload(QWidget* parent);
/// What was entered for an upload does not do.
void invalidEmail(QWidget* parent);
void invalidPassword(QWidget* parent);
void invalidAlbumName(QWidget* parent);
/// A request to the album service failed.
/// @param baseUrl  of the service
/// @param reason   holds neither password nor token
void albumServiceFailed(QWidget* parent, const QString& baseUrl, const QString& reason);
/// The login was granted in a reply that is too short.
void loginIncomplete(QWidget* parent, const QString& baseUrl);
/// @param tries  how many are left today, as a number
void wrongPassword(QWidget* parent, const QString& tries);
void wrongEmail(QWidget* parent);
void storageFull(QWidget* parent);
void albumRefused(QWidget* parent);
/// A file that is to be uploaded cannot be read.
/// @param path  full path
void uploadOpenFailed(QWidget* parent, const QString& path);
/// A file's name does not tell what it belongs to.
/// @param name  without folder
void wrongModelName(QWidget* parent, const QString& name);
void wrongPhotoName(QWidget* parent, const QString& name);
void uploadCompleted(QWidget* parent);

/// Whether to make a map although links do not join all panoramas.
bool askMapOfUnconnected(QWidget* parent);
/// Whether the points selected in the point cloud may go.
bool confirmPointDeletion(QWidget* parent);

/// @param problem  sentence that says which library or function is missing
void linkingLibraryMissing(QWidget* parent, const QString& problem);
/// Another instance of the program works in the same folder.
void folderInUse(QWidget* parent, const QString& folder);

} // namespace messages
