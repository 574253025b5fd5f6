// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the author may enter before an upload.

#pragma once

#include <QString>

namespace publish {

struct UploadEntries
{
    QString account; ///< e-mail address
    QString password;
    QString album_name;
};

enum class EntryProblem
{
    None,
    Account,
    Password,
    AlbumName
};

/// The first entry that is refused, in the order account, password, album name.
EntryProblem checkEntries(const UploadEntries& entries);

/// An address whose last label has two to four letters.
bool isAccount(const QString& text);
/// At least seven characters, among them an ASCII digit and an ASCII letter.
bool isPassword(const QString& text);
/// One to 256 UTF-16 units, each an ASCII letter or digit, "_", or anything from U+04BB to U+FFFD.
bool isAlbumName(const QString& text);

} // namespace publish
