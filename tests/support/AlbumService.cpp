// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/support/AlbumService.h"

#include <QUrl>

namespace albumtest {
namespace {

constexpr int kStart_ms = 30'000;
constexpr int kEnd_ms = 20'000;

} // namespace

AlbumService::AlbumService(const QString& program, int quota_mib)
    : m_program(program)
{
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    if (!addUser(QLatin1String(kAccount), QLatin1String(kPassword), quota_mib) || !start()) m_baseUrl.clear();
}

AlbumService::~AlbumService()
{
    kill();
}

QString AlbumService::dataFolder() const
{
    return m_folder.filePath(QStringLiteral("相册 data"));
}

int AlbumService::port() const
{
    return QUrl(m_baseUrl).port();
}

bool AlbumService::addUser(const QString& email, const QString& password, int quota_mib)
{
    return run({QStringLiteral("add-user"), email, QStringLiteral("--quota"), QString::number(quota_mib)},
               password.toUtf8() + '\n') == 0;
}

int AlbumService::run(const QStringList& words, const QByteArray& input)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(m_program, QStringList{QStringLiteral("--data"), dataFolder()} + words);
    if (!process.waitForStarted(kStart_ms)) return -1;
    process.write(input);
    process.closeWriteChannel();
    const bool ended = process.waitForFinished(kStart_ms) && process.exitStatus() == QProcess::NormalExit;
    m_output += process.readAll();
    return ended ? process.exitCode() : -1;
}

bool AlbumService::start()
{
    const int wanted = m_baseUrl.isEmpty() ? 0 : port();
    m_process.start(m_program, {QStringLiteral("--data"), dataFolder(), QStringLiteral("--port"),
                                QString::number(wanted)});
    QByteArray said;
    while (!said.contains('\n')) {
        if (!m_process.waitForReadyRead(kStart_ms)) return false;
        said += m_process.readAll();
    }
    m_output += said;
    constexpr const char* kReady = "albumd: listening on ";
    const int at = said.indexOf(kReady);
    if (at < 0) return false;
    const int from = at + static_cast<int>(qstrlen(kReady));
    m_baseUrl = QString::fromUtf8(said.mid(from, said.indexOf('\n', from) - from));
    return true;
}

void AlbumService::kill()
{
    m_process.kill();
    m_process.waitForFinished(kEnd_ms);
}

int AlbumService::terminate()
{
    m_process.terminate();
    if (!m_process.waitForFinished(kEnd_ms) || m_process.exitStatus() != QProcess::NormalExit) return -1;
    return m_process.exitCode();
}

QByteArray AlbumService::output()
{
    m_output += m_process.readAll();
    return m_output;
}

} // namespace albumtest
