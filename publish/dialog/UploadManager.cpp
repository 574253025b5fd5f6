// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "publish/dialog/UploadManager.h"

#include "ui_UploadManager.h"

UploadManager::UploadManager(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::UploadManager>())
{
    m_ui->setupUi(this);
    connect(m_ui->buttonCancel, &QPushButton::clicked, this, &UploadManager::Cancel);
}

UploadManager::~UploadManager() = default;

publish::UploadEntries UploadManager::entries() const
{
    return {m_ui->lineAccount->text(), m_ui->linePw->text(), m_ui->lineAlbumName->text()};
}

void UploadManager::setProgress(int percent)
{
    m_ui->progressUpload->setValue(percent);
}

QPushButton* UploadManager::uploadButton() const
{
    return m_ui->buttonUpload;
}

void UploadManager::Cancel()
{
    close();
}
