// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace albumtest {

constexpr const char* kAccount = "visitor@example.com";
constexpr const char* kPassword = "walk1hom+%e&=x#"; ///< with what an address would have to escape

/// A real album service: the program in a process of its own, on loopback and a free port, with a data folder
/// of its own and one account. Needs no event loop. Gone with its folder on destruction.
class AlbumService
{
public:
    /// Starts it; `baseUrl` is empty when that failed.
    /// @param program  full path of the program albumd
    /// @param quota_mib  of the account
    explicit AlbumService(const QString& program, int quota_mib = 2048);
    ~AlbumService();
    AlbumService(const AlbumService&) = delete;
    AlbumService& operator=(const AlbumService&) = delete;

    /// "http://127.0.0.1:PORT/".
    QString baseUrl() const { return m_baseUrl; }
    int port() const;
    QString dataFolder() const;
    qint64 processId() const { return m_process.processId(); }
    bool running() const { return m_process.state() == QProcess::Running; }

    [[nodiscard]] bool addUser(const QString& email, const QString& password, int quota_mib = 2048);

    /// Runs the program once on the data folder: the words after "--data DIR".
    /// @return its exit status; -1 when it did not end by itself
    int run(const QStringList& words, const QByteArray& input = QByteArray());

    void kill();                ///< -9
    [[nodiscard]] bool start(); ///< again, on the port it had, or a free one the first time

    /// Asks it to end (SIGTERM). Its exit status; -1 when it did not end by itself.
    int terminate();

    /// All that it and the commands have written to standard output and standard error until now.
    QByteArray output();

private:
    QString m_program;
    QTemporaryDir m_folder;
    QProcess m_process;
    QString m_baseUrl;
    QByteArray m_output;
};

} // namespace albumtest
