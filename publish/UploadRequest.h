// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

namespace publish {

/// One request to the album service, as plain values.
struct UploadRequest
{
    enum class Method
    {
        Get,
        Post
    };

    Method method = Method::Post;
    QString path;                         ///< below the service's base URL, without "/" before it
    QList<QPair<QString, QString>> query; ///< in the order in which they are sent, not encoded
    QByteArray body;                      ///< sent when there is no file
    QString body_file;                    ///< full path of the file to send, or empty
};

} // namespace publish
