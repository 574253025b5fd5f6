// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Preview in the viewer, upload to the album service.

#include "app/Messages.h"
#include "app/Tourwright.h"
#include "project/ProjectFolders.h"

#include <QProcess>

void Tourwright::Preview()
{
    if (m_project.panoramas.empty()) return messages::nothingToPreview(this);
    const QString path = previewFolder(m_project.folders) + QStringLiteral("tmp.roa");
    saveTo(path);
    QProcess::startDetached(m_project.folders.viewer, {path});
}

void Tourwright::UploadConfigure() {}

void Tourwright::Upload() {}

void Tourwright::ReplyFinished(QNetworkReply*) {}
