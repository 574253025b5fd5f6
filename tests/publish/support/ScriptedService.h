// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// An album service that answers as a test tells it, in a process of its own.

#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <vector>

/// One request as it came over the wire.
struct SeenRequest
{
    QByteArray line; ///< "GET /login?email=... HTTP/1.1"
    QByteArray head; ///< all header lines
    QByteArray body;

    QByteArray method() const { return line.split(' ').value(0); }
    QByteArray target() const { return line.split(' ').value(1); } ///< path and query as sent
    QString word() const;                                          ///< last part of the path
};

class ScriptedService
{
public:
    ScriptedService();
    ~ScriptedService();
    ScriptedService(const ScriptedService&) = delete;
    ScriptedService& operator=(const ScriptedService&) = delete;

    /// Puts an answer at the end of those for a path ("login"); the last one is given for ever. Before
    /// `start` only. A path without any is answered "OK".
    void reply(const char* path, const QString& body, int status = 200, int after_ms = 0);
    /// What else can happen: "close at head", "close at end", "close in head", "close in reply", "garbage",
    /// "silence".
    void misbehave(const char* path, const char* deed, const QString& body = QString());

    void start();
    void stop(); ///< from now on connections are refused
    /// Stops it and forgets script and requests, for another start on another port.
    void clear();
    QString url() const { return m_url; } ///< "http://127.0.0.1:PORT/"

    /// All requests so far, in order.
    std::vector<SeenRequest> requests() const;
    /// The same as words: "login", "get_pano_list", ...
    QStringList words() const;

private:
    void add(const char* path, const QJsonObject& answer);

    QTemporaryDir m_folder;
    QJsonObject m_script;
    QProcess m_process;
    QString m_url;
};

/// A granted login with the token "TOKEN-0123456789".
QString grantedLogin();
/// A granted album with the identifier "ALBUM-01234567".
QString grantedAlbum();
