// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Preview in the viewer, upload to the album service.

#include "app/Messages.h"
#include "app/Tourwright.h"
#include "linking/editor/PanoMatchEditor.h"
#include "project/ProjectFolders.h"
#include "publish/AlbumUrl.h"
#include "publish/dialog/UploadManager.h"
#include "publish/UploadTransport.h"
#include "ui_Tourwright.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QNetworkReply>
#include <QProcess>
#include <QThread>

namespace {

// By the clock, not by a timer; the nap only keeps the processor cool.
void waitServingEvents(int milliseconds)
{
    constexpr unsigned long kNap_ms = 5;
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < milliseconds) {
        QCoreApplication::processEvents();
        QThread::msleep(kNap_ms);
    }
}

} // namespace

void Tourwright::Preview()
{
    if (m_project.panoramas.empty()) return messages::nothingToPreview(this);
    const QString path = previewFolder(m_project.folders) + QStringLiteral("tmp.roa");
    saveTo(path);
    QProcess::startDetached(m_project.folders.viewer, {path});
}

void Tourwright::UploadConfigure()
{
    if (m_project.panoramas.empty()) return messages::nothingToUpload(this);
    if (!m_uploadManager) {
        m_uploadManager = new UploadManager(this);
        connect(m_uploadManager->uploadButton(), &QPushButton::clicked, this, &Tourwright::Upload);
    }
    if (!m_uploadManager->isVisible()) return m_uploadManager->show();
    // It may lie behind other windows.
    m_uploadManager->raise();
    m_uploadManager->activateWindow();
}

void Tourwright::Upload()
{
    if (!m_uploadManager) return;
    const publish::UploadEntries entries = m_uploadManager->entries();
    switch (publish::checkEntries(entries)) {
    case publish::EntryProblem::Account:
        return messages::invalidEmail(this);
    case publish::EntryProblem::Password:
        return messages::invalidPassword(this);
    case publish::EntryProblem::AlbumName:
        return messages::invalidAlbumName(this);
    case publish::EntryProblem::None:
        return sendUpload(publish::beginUpload(m_project, entries));
    }
}

void Tourwright::ReplyFinished(QNetworkReply* reply)
{
    reply->deleteLater();
    performUpload(publish::continueUpload(m_project, publish::readReply(*reply),
                                          m_ui->comboSelEntryPano->currentIndex()));
}

void Tourwright::sendUpload(const publish::UploadRequest& request)
{
    if (!publish::sendRequest(*m_network, publish::albumUrl(), request))
        performUpload(publish::unreadableFile(request.body_file));
}

void Tourwright::performUpload(const publish::UploadAction& action)
{
    if (action.lock) lockForUpload();
    if (action.progress) m_uploadManager->setProgress(*action.progress);
    showUploadNotice(action);
    if (action.unlock) unlockAfterUpload();
    if (action.close) m_uploadManager->close();
    if (action.wait_ms > 0) waitServingEvents(action.wait_ms);
    if (action.request) sendUpload(*action.request);
}

void Tourwright::showUploadNotice(const publish::UploadAction& action)
{
    using publish::UploadNotice;
    switch (action.notice) {
    case UploadNotice::None:
        return;
    case UploadNotice::AccessFailed:
        return messages::albumServiceFailed(this, publish::albumUrl(), action.detail);
    case UploadNotice::LoginIncomplete:
        return messages::loginIncomplete(this, publish::albumUrl());
    case UploadNotice::WrongPassword:
        return messages::wrongPassword(this, action.detail);
    case UploadNotice::WrongEmail:
        return messages::wrongEmail(this);
    case UploadNotice::StorageFull:
        return messages::storageFull(this);
    case UploadNotice::AlbumRefused:
        return messages::albumRefused(this);
    case UploadNotice::FileUnreadable:
        return messages::uploadOpenFailed(this, action.detail);
    case UploadNotice::WrongModelName:
        return messages::wrongModelName(this, action.detail);
    case UploadNotice::WrongPhotoName:
        return messages::wrongPhotoName(this, action.detail);
    case UploadNotice::Completed:
        return messages::uploadCompleted(this);
    }
}

void Tourwright::lockForUpload()
{
    m_uploading = true;
    setEnabled(false);
    m_uploadManager->setEnabled(false);
}

void Tourwright::unlockAfterUpload()
{
    m_uploading = false;
    setEnabled(true);
    if (m_uploadManager) {
        m_uploadManager->setEnabled(true);
        m_uploadManager->setProgress(0);
    }
    if (m_linkEditor) m_linkEditor->setEnabled(true);
}
