// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The upload as a chain of plain values: the reply to one request in, what to do next out.

#pragma once

#include "project/RoamProject.h"
#include "publish/EntryChecks.h"
#include "publish/UploadRequest.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace publish {

/// What came back for one request.
struct UploadReply
{
    int status = 0;  ///< HTTP status code; 0 when no answer came
    QString path;    ///< of the request's URL, decoded
    QByteArray body; ///< UTF-8 text
    QString error;   ///< why it failed, for a person to read, without password and token
};

/// What the author is to be told.
enum class UploadNotice
{
    None,
    AccessFailed,    ///< `detail`: why
    LoginIncomplete, ///< the login was granted in a reply that is too short
    WrongPassword,   ///< `detail`: how many tries are left today
    WrongEmail,
    StorageFull,
    AlbumRefused,
    FileUnreadable, ///< `detail`: full path
    WrongModelName, ///< `detail`: file name
    WrongPhotoName, ///< `detail`: file name
    Completed
};

/// What to do next, in the order of the fields. A step in which nothing is set ends nothing and sends
/// nothing: the chain has stalled, with the windows as they are.
struct UploadAction
{
    bool lock = false;           ///< no command but the upload from now on, until `unlock`
    std::optional<int> progress; ///< 0 to 100
    UploadNotice notice = UploadNotice::None;
    QString detail;      ///< of the notice
    bool unlock = false; ///< the upload is over, well or not; the progress goes back to 0
    bool close = false;  ///< nothing is left to enter
    int wait_ms = 0;     ///< before the request
    std::optional<UploadRequest> request;
};

/// How long the service gets before it is asked again whether a panorama is listed.
constexpr int kListingPause_ms = 1000;

/// Begins an upload: notes the album's name and the files to send, and logs in. The entries are checked ones.
UploadRequest beginUpload(RoamProject& project, const UploadEntries& entries);

/// One step of the upload. Its state stands in the project (`cloud`, `upload_counters`), so that a reset ends
/// it. Only one request is under way at a time.
/// @param entrySelector  row of the entry panorama when the album is made; stored as the project's entry
///                       index, a negative one as 0
UploadAction continueUpload(RoamProject& project, const UploadReply& reply, int entrySelector);

/// The step to take when a request's file could not be opened after all.
UploadAction unreadableFile(const QString& path);

} // namespace publish
