// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Photo and text hotspots of the selected panorama.

#include "app/Tourwright.h"
#include "linking/Linker.h"
#include "ui_Tourwright.h"

namespace {

void appendRow(QTableWidget* table, const QString& first, const QString& second)
{
    const int row = table->rowCount();
    table->insertRow(row);
    table->setItem(row, 0, new QTableWidgetItem(first));
    table->setItem(row, 1, new QTableWidgetItem(second));
}

} // namespace

void Tourwright::AddPhoto() {}

void Tourwright::DelPhoto() {}

void Tourwright::AddInfo() {}

void Tourwright::DelInfo() {}

void Tourwright::EditPhotoCaption(const QString&) {}

void Tourwright::EditPhotoSrc() {}

void Tourwright::EditInfoCaption(const QString&) {}

void Tourwright::EditInfoContent() {}

void Tourwright::SelPhoto(int, int, int, int) {}

void Tourwright::SelInfo(int, int, int, int) {}

void Tourwright::refreshPhotoTable()
{
    m_ui->tablePhoto->setRowCount(0);
    const PanoNode* panorama = selectedPanorama();
    if (!panorama) return;
    for (const PhotoHotspot& photo : panorama->photos)
        appendRow(m_ui->tablePhoto, QStringLiteral("%1x%2").arg(photo.photo_width).arg(photo.photo_height),
                  photo.caption);
}

void Tourwright::refreshInfoTable()
{
    m_ui->tableInfo->setRowCount(0);
    const PanoNode* panorama = selectedPanorama();
    if (!panorama) return;
    for (const InfoHotspot& info : panorama->infos)
        appendRow(m_ui->tableInfo, QString::number(info.content.size()), info.caption);
}

void Tourwright::selectPhotoRow(int row)
{
    if (row < 0 || row >= m_ui->tablePhoto->rowCount()) return;
    m_ui->tablePhoto->setCurrentCell(row, 0);
    m_ui->tabHotspot->setCurrentWidget(m_ui->tabSubPhoto);
}

void Tourwright::selectInfoRow(int row)
{
    if (row < 0 || row >= m_ui->tableInfo->rowCount()) return;
    m_ui->tableInfo->setCurrentCell(row, 0);
    m_ui->tabHotspot->setCurrentWidget(m_ui->tabSubInfo);
}

void Tourwright::markModified()
{
    m_project.modified = true;
    showStatus();
}
