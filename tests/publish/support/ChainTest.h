// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// An upload chain fed with replies by hand.

#pragma once

#include "publish/UploadChain.h"
#include "tests/publish/support/ScriptedService.h"
#include "tests/publish/support/Tours.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

class ChainTest : public testing::Test
{
protected:
    /// Panoramas with files of their own, links without files.
    void makeTour(int panoramas, int links)
    {
        fillTour(project, panoramas, links);
        for (const auto& node : project.panoramas)
            node->file_path = makeFile(QString::fromLatin1(node->name()) + QStringLiteral(".pno"));
    }

    QString makeFile(const QString& name)
    {
        const QString path = folder.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly)) qFatal("cannot write a file");
        return path;
    }

    void begin()
    {
        publish::beginUpload(project,
                             {QStringLiteral("a@b.com"), QStringLiteral("abcd123"), QStringLiteral("album")});
    }

    /// The reply to the request of this path.
    publish::UploadAction take(const char* path, const QString& body, int entrySelector = 0)
    {
        return publish::continueUpload(
            project, {200, QLatin1Char('/') + QLatin1String(path), body.toUtf8(), QString()}, entrySelector);
    }

    publish::UploadAction fail(int status, const char* path, const QString& error)
    {
        return publish::continueUpload(
            project, {status, QLatin1Char('/') + QLatin1String(path), QByteArrayLiteral("OK"), error}, 0);
    }

    static QString sent(const publish::UploadAction& action)
    {
        return action.request ? action.request->path : QString();
    }

    static bool nothing(const publish::UploadAction& action)
    {
        return !action.lock && !action.progress && action.notice == publish::UploadNotice::None &&
               !action.unlock && !action.close && action.wait_ms == 0 && !action.request;
    }

    quint32& step() { return project.upload_counters[UploadStep]; }

    QTemporaryDir folder;
    RoamProject project;
};
