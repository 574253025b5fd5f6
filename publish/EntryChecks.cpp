// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "publish/EntryChecks.h"

#include <QRegExp>

namespace publish {

namespace {

// The older of the toolkit's two classes: it takes a text in UTF-16 units, so that a rare Chinese character
// written as two of them passes the album name's class like any other.
bool matches(const QString& text, const QString& pattern)
{
    return QRegExp(pattern, Qt::CaseSensitive).exactMatch(text);
}

// The two ends of the class were meant as U+4E00 and U+9FA5 in a Chinese code page. Album names rely on
// what the bytes mean as UTF-8: U+04BB, and one U+FFFD for each of the invalid bytes.
constexpr char kAlbumNamePattern[] = "^[\xD2\xBB-\xFD\x9B"
                                     "A-Za-z0-9_]{1,256}$";

} // namespace

bool isAccount(const QString& text)
{
    return matches(text, QStringLiteral(R"(^([A-Za-z0-9_\-\.])+\@([A-Za-z0-9_\-\.])+\.([A-Za-z]{2,4})$)"));
}

bool isPassword(const QString& text)
{
    return matches(text, QStringLiteral("^(?=.*[0-9].*)(?=.*[a-zA-Z].*).{7,}$"));
}

bool isAlbumName(const QString& text)
{
    return matches(text, QString::fromUtf8(kAlbumNamePattern));
}

EntryProblem checkEntries(const UploadEntries& entries)
{
    if (!isAccount(entries.account)) return EntryProblem::Account;
    if (!isPassword(entries.password)) return EntryProblem::Password;
    if (!isAlbumName(entries.album_name)) return EntryProblem::AlbumName;
    return EntryProblem::None;
}

} // namespace publish
