// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Photo and text hotspots of the selected panorama.

#include "app/Tourwright.h"
#include "linking/Linker.h"
#include "project/ChoosePhoto.h"
#include "project/HotspotEdits.h"
#include "project/PhotoPicture.h"
#include "ui_Tourwright.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QSignalBlocker>

namespace {

QTableWidgetItem* cell(const QString& text)
{
    auto* item = new QTableWidgetItem(text);
    item->setFlags(item->flags() & ~Qt::ItemIsEditable);
    return item;
}

void setRow(QTableWidget* table, int row, const QString& first, const QString& second)
{
    table->setItem(row, 0, cell(first));
    table->setItem(row, 1, cell(second));
}

void appendRow(QTableWidget* table, const QString& first, const QString& second)
{
    const int row = table->rowCount();
    table->insertRow(row);
    setRow(table, row, first, second);
}

} // namespace

void Tourwright::AddPhoto()
{
    PanoNode* panorama = selectedPanorama();
    if (!panorama) return;
    const sphere::SpherePoint seen = m_ui->widgetPhoto->viewingDirection();
    hotspots::addPhoto(*panorama, seen.azimuth, seen.polar);
    markModified();
    refreshPhotoTable();
    m_ui->tablePhoto->setCurrentCell(m_ui->tablePhoto->rowCount() - 1, 0);
}

void Tourwright::AddInfo()
{
    PanoNode* panorama = selectedPanorama();
    if (!panorama) return;
    const sphere::SpherePoint seen = m_ui->widgetPhoto->viewingDirection();
    hotspots::addInfo(*panorama, seen.azimuth, seen.polar);
    markModified();
    refreshInfoTable();
    m_ui->tableInfo->setCurrentCell(m_ui->tableInfo->rowCount() - 1, 0);
}

void Tourwright::DelPhoto()
{
    PanoNode* panorama = selectedPanorama();
    if (!panorama || !hotspots::removePhoto(*panorama, m_ui->tablePhoto->currentRow())) return;
    markModified();
    refreshPhotoTable();
}

void Tourwright::DelInfo()
{
    PanoNode* panorama = selectedPanorama();
    if (!panorama || !hotspots::removeInfo(*panorama, m_ui->tableInfo->currentRow())) return;
    markModified();
    refreshInfoTable();
}

void Tourwright::EditPhotoCaption(const QString& caption)
{
    PhotoHotspot* photo = selectedPhoto();
    if (!photo || !hotspots::setCaption(*photo, caption)) return;
    markModified();
    refreshPhotoRow();
}

void Tourwright::EditInfoCaption(const QString& caption)
{
    InfoHotspot* info = selectedInfo();
    if (!info || !hotspots::setCaption(*info, caption)) return;
    markModified();
    refreshInfoRow();
}

void Tourwright::EditInfoContent()
{
    InfoHotspot* info = selectedInfo();
    if (!info || !hotspots::setContent(*info, m_ui->plainInfo->toPlainText())) return;
    markModified();
    refreshInfoRow();
}

void Tourwright::EditPhotoSrc()
{
    PhotoHotspot* photo = selectedPhoto();
    if (!photo) return;
    const QString chosen =
        QFileDialog::getOpenFileName(this, tr("Select jpg File"), m_photoFolder, tr("jpg File(*.jpg)"));
    if (chosen.isEmpty()) return;
    m_photoFolder = QFileInfo(chosen).absolutePath() + QLatin1Char('/');

    QApplication::setOverrideCursor(Qt::WaitCursor);
    const ChosenPhoto result = choosePhoto(*selectedPanorama(), *photo, chosen, m_project.folders.working);
    QApplication::restoreOverrideCursor();
    // By design nothing is said about a picture that cannot be used.
    if (result.outcome != PhotoOutcome::Chosen) return;
    markModified();
    refreshPhotoRow();
    showPhoto(result.picture);
}

void Tourwright::SelPhoto(int currentRow, int, int, int)
{
    if (const PhotoHotspot* photo = hotspots::photoAt(selectedPanorama(), currentRow)) {
        m_ui->linePhotoCaption->setText(photo->caption);
        showPhoto(photo->photo_path.isEmpty() ? QImage() : loadPhoto(photo->photo_path));
        m_ui->widgetPhoto->selectPhoto(currentRow);
    } else if (currentRow < 0) {
        m_ui->linePhotoCaption->clear();
        showPhoto(QImage());
        m_ui->widgetPhoto->selectPhoto(-1);
    }
}

void Tourwright::SelInfo(int currentRow, int, int, int)
{
    // The editor changes characters that it does not know; showing a content must not store it anew.
    const QSignalBlocker showing(m_ui->plainInfo);
    if (const InfoHotspot* info = hotspots::infoAt(selectedPanorama(), currentRow)) {
        m_ui->lineInfoCaption->setText(info->caption);
        m_ui->plainInfo->setPlainText(info->content);
        m_ui->widgetPhoto->selectInfo(currentRow);
    } else if (currentRow < 0) {
        m_ui->lineInfoCaption->clear();
        m_ui->plainInfo->clear();
        m_ui->widgetPhoto->selectInfo(-1);
    }
}

void Tourwright::refreshPhotoTable()
{
    m_ui->tablePhoto->setRowCount(0);
    const PanoNode* panorama = selectedPanorama();
    if (!panorama) return;
    for (const PhotoHotspot& photo : panorama->photos)
        appendRow(m_ui->tablePhoto, hotspots::sizeCell(photo), photo.caption);
}

void Tourwright::refreshInfoTable()
{
    m_ui->tableInfo->setRowCount(0);
    const PanoNode* panorama = selectedPanorama();
    if (!panorama) return;
    for (const InfoHotspot& info : panorama->infos)
        appendRow(m_ui->tableInfo, hotspots::lengthCell(info), info.caption);
}

void Tourwright::refreshPhotoRow()
{
    if (const PhotoHotspot* photo = selectedPhoto())
        setRow(m_ui->tablePhoto, m_ui->tablePhoto->currentRow(), hotspots::sizeCell(*photo), photo->caption);
}

void Tourwright::refreshInfoRow()
{
    if (const InfoHotspot* info = selectedInfo())
        setRow(m_ui->tableInfo, m_ui->tableInfo->currentRow(), hotspots::lengthCell(*info), info->caption);
}

PhotoHotspot* Tourwright::selectedPhoto() const
{
    return hotspots::photoAt(selectedPanorama(), m_ui->tablePhoto->currentRow());
}

InfoHotspot* Tourwright::selectedInfo() const
{
    return hotspots::infoAt(selectedPanorama(), m_ui->tableInfo->currentRow());
}

void Tourwright::showPhoto(const QImage& picture)
{
    m_photoPicture = picture;
    m_ui->widgetPic->setImage(&m_photoPicture, false);
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
