// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "publish/EntryChecks.h"

#include <QDialog>

#include <memory>

namespace Ui {
class UploadManager;
}
class QPushButton;

/// Takes the account, password and album name of an upload and shows its progress. It neither checks nor
/// sends anything.
class UploadManager : public QDialog
{
    Q_OBJECT

public:
    explicit UploadManager(QWidget* parent = nullptr);
    ~UploadManager() override;

    publish::UploadEntries entries() const;
    /// @param percent  0 to 100
    void setProgress(int percent);
    QPushButton* uploadButton() const;

public Q_SLOTS:
    /// Closes the dialog and nothing else: an upload under way goes on.
    void Cancel();

private:
    const std::unique_ptr<Ui::UploadManager> m_ui;
};
