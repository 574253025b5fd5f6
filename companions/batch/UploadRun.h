// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Carries one upload from its login to its end, without a window.

#pragma once

#include "publish/UploadChain.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QString>

class UploadRun
{
public:
    /// @param project     outlives the run; the entry panorama is its entry index
    /// @param baseUrl     of the service, ends in "/"
    /// @param patience_s  after how many seconds of silence, or of not listing a panorama, the run gives up
    UploadRun(RoamProject& project, const QString& baseUrl, int patience_s);

    /// Returns when the upload is over.
    /// @return why it failed, as a sentence without password and token, or empty
    QString upload(const publish::UploadEntries& entries);

private:
    void send(const publish::UploadRequest& request);
    void take(QNetworkReply* reply);
    void perform(const publish::UploadAction& action, const QString& answered);
    void end(const QString& problem);
    QString sentence(const publish::UploadAction& action) const;
    QString leftOver() const;

    RoamProject& m_project;
    const QString m_baseUrl;
    const int m_patience_s;
    QNetworkAccessManager m_network;
    QEventLoop m_loop;
    QElapsedTimer m_polling; ///< since the first pause for the panorama that is waited for; else invalid
    QString m_problem;
    bool m_over = false;
};
