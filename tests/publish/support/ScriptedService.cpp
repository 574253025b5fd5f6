// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/publish/support/ScriptedService.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

QString SeenRequest::word() const
{
    const QByteArray path = target().split('?').first();
    return QString::fromLatin1(path.mid(path.lastIndexOf('/') + 1));
}

ScriptedService::ScriptedService()
{
    QDir(m_folder.path()).mkdir(QStringLiteral("requests"));
}

ScriptedService::~ScriptedService()
{
    stop();
}

void ScriptedService::add(const char* path, const QJsonObject& answer)
{
    QJsonArray answers = m_script[QLatin1String(path)].toArray();
    answers.append(answer);
    m_script[QLatin1String(path)] = answers;
}

void ScriptedService::reply(const char* path, const QString& body, int status, int after_ms)
{
    add(path, {{QStringLiteral("body"), body},
               {QStringLiteral("status"), status},
               {QStringLiteral("after_ms"), after_ms}});
}

void ScriptedService::misbehave(const char* path, const char* deed, const QString& body)
{
    add(path, {{QStringLiteral("do"), QLatin1String(deed)}, {QStringLiteral("body"), body}});
}

void ScriptedService::start()
{
    const QString script = m_folder.filePath(QStringLiteral("script.json"));
    QFile file(script);
    if (!file.open(QIODevice::WriteOnly)) qFatal("cannot write the script");
    file.write(QJsonDocument(m_script).toJson());
    file.close();
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(SCRIPTED_SERVICE),
                    {script, m_folder.filePath(QStringLiteral("requests"))});
    while (!m_process.canReadLine())
        if (!m_process.waitForReadyRead(20000)) qFatal("the scripted service does not start");
    const int port = m_process.readLine().trimmed().toInt();
    m_url = QStringLiteral("http://127.0.0.1:%1/").arg(port);
}

void ScriptedService::stop()
{
    if (m_process.state() == QProcess::NotRunning) return;
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(10000)) m_process.kill();
}

void ScriptedService::clear()
{
    stop();
    m_script = QJsonObject();
    QDir folder(m_folder.filePath(QStringLiteral("requests")));
    for (const QString& name : folder.entryList(QDir::Files))
        folder.remove(name);
}

std::vector<SeenRequest> ScriptedService::requests() const
{
    const QDir folder(m_folder.filePath(QStringLiteral("requests")));
    std::vector<SeenRequest> requests;
    for (const QString& name : folder.entryList(QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        if (name.endsWith(QLatin1String(".part")) || !file.open(QIODevice::ReadOnly)) continue;
        const QByteArray bytes = file.readAll();
        const int line = bytes.indexOf("\r\n");
        const int head = bytes.indexOf("\r\n\r\n");
        requests.push_back({bytes.left(line), bytes.mid(line + 2, head - line - 2), bytes.mid(head + 4)});
    }
    return requests;
}

QStringList ScriptedService::words() const
{
    QStringList words;
    for (const SeenRequest& request : requests())
        words << request.word();
    return words;
}

QString grantedLogin()
{
    return QStringLiteral("OK\r\nTOKEN-0123456789\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7");
}

QString grantedAlbum()
{
    return QStringLiteral("OK\r\nALBUM-01234567");
}
