// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/UploadRun.h"

#include "companions/batch/CommandLine.h"
#include "publish/UploadRequests.h"
#include "publish/UploadTransport.h"

#include <QNetworkReply>
#include <QTimer>

UploadRun::UploadRun(RoamProject& project, const QString& baseUrl, int patience_s)
    : m_project(project)
    , m_baseUrl(baseUrl)
    , m_patience_s(patience_s)
{
    QObject::connect(&m_network, &QNetworkAccessManager::finished, &m_loop,
                     [this](QNetworkReply* reply) { take(reply); });
}

QString UploadRun::upload(const publish::UploadEntries& entries)
{
    send(publish::beginUpload(m_project, entries));
    if (!m_over) m_loop.exec();
    return m_problem;
}

void UploadRun::send(const publish::UploadRequest& request)
{
    if (!publish::sendRequest(m_network, m_baseUrl, request, m_patience_s * 1000))
        perform(publish::unreadableFile(request.body_file), request.path);
}

void UploadRun::take(QNetworkReply* reply)
{
    reply->deleteLater();
    const publish::UploadReply read = publish::readReply(*reply);
    perform(publish::continueUpload(m_project, read, m_project.entry_index),
            read.path.section(QLatin1Char('/'), -1));
}

void UploadRun::perform(const publish::UploadAction& action, const QString& answered)
{
    if (action.progress) showProgress(QStringLiteral("upload"), *action.progress);
    if (action.notice == publish::UploadNotice::Completed) return end(QString());
    if (action.notice != publish::UploadNotice::None) return end(sentence(action));
    if (action.unlock) return end(leftOver());
    if (!action.request)
        return end(QStringLiteral("the service's answer to \"%1\" is none that is known").arg(answered));

    if (action.wait_ms == 0) {
        m_polling.invalidate();
        return send(*action.request);
    }
    if (!m_polling.isValid()) m_polling.start();
    if (m_polling.hasExpired(qint64(m_patience_s) * 1000))
        return end(QStringLiteral("the service took a panorama but does not list it, after %1 seconds: %2")
                       .arg(m_patience_s)
                       .arg(publish::panoramaId(m_project, m_project.upload_counters[UploadStep])));
    QTimer::singleShot(action.wait_ms, &m_loop, [this, request = *action.request] { send(request); });
}

void UploadRun::end(const QString& problem)
{
    m_problem = problem;
    m_over = true;
    m_loop.quit();
}

// A tour without links ends before its files are sent.
QString UploadRun::leftOver() const
{
    const int files = m_project.cloud.model_files.size() + m_project.cloud.photo_files.size();
    if (files == 0) return QString();
    return QStringLiteral("album %1 is made, but %2 photos and plans were not sent: the tour has no links")
        .arg(m_project.cloud.album_id)
        .arg(files);
}

QString UploadRun::sentence(const publish::UploadAction& action) const
{
    using publish::UploadNotice;
    switch (action.notice) {
    case UploadNotice::AccessFailed:
        return QStringLiteral("error accessing %1: %2").arg(m_baseUrl, action.detail);
    case UploadNotice::LoginIncomplete:
        return QStringLiteral("error accessing %1: the login's answer is too short").arg(m_baseUrl);
    case UploadNotice::WrongPassword:
        return QStringLiteral("incorrect password; %1 tries are left today").arg(action.detail);
    case UploadNotice::WrongEmail:
        return QStringLiteral("incorrect e-mail address");
    case UploadNotice::StorageFull:
        return QStringLiteral("insufficient cloud storage");
    case UploadNotice::AlbumRefused:
        return QStringLiteral("the service did not make the album");
    case UploadNotice::FileUnreadable:
        return QStringLiteral("%1 cannot be opened").arg(action.detail);
    case UploadNotice::WrongModelName:
        return QStringLiteral("the name of match data does not tell its link: %1").arg(action.detail);
    case UploadNotice::WrongPhotoName:
        return QStringLiteral("the name of a photo or plan does not tell its panorama: %1")
            .arg(action.detail);
    case UploadNotice::None:
    case UploadNotice::Completed:
        break;
    }
    return QString();
}
