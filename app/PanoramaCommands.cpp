// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Import, removal and selection of panoramas; the panorama list and the boxes that offer its panoramas.

#include "app/Messages.h"
#include "app/Tourwright.h"
#include "linking/CommandState.h"
#include "linking/ImportPanoramas.h"
#include "linking/Linker.h"
#include "linking/pictures/PanoramaPicture.h"
#include "linking/RemovePanorama.h"
#include "ui_Tourwright.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QSignalBlocker>

namespace {

// Offers the panoramas anew; the choice stays on the same panorama where it is still there.
void refillCombo(QComboBox* combo, const RoamProject& project)
{
    const QVariant chosen = combo->currentData();
    combo->clear();
    for (const auto& panorama : project.panoramas)
        combo->addItem(panorama->base_name, panorama->id);
    const int row = combo->findData(chosen);
    if (row >= 0) combo->setCurrentIndex(row);
}

} // namespace

void Tourwright::AddPano()
{
    const QStringList paths =
        QFileDialog::getOpenFileNames(this, tr("Select the pno file (multiple selection is supported)"),
                                      m_importFolder, tr("pno File(*.pno)"));
    if (paths.isEmpty()) return;
    m_importFolder = QFileInfo(paths.first()).absolutePath() + QLatin1Char('/');

    const ImportResult result = importPanoramas(m_project, paths);
    refreshPanoList();
    if (result.mismatch == ImportResult::Mismatch::DroppedWithoutLidar) messages::droppedWithoutLidar(this);
    if (result.mismatch == ImportResult::Mismatch::DroppedWithLidar) messages::droppedWithLidar(this);
}

void Tourwright::DelPano()
{
    const PanoNode* panorama = selectedPanorama();
    if (!panorama) return;
    m_ui->widgetPhoto->clear();
    const PanoLink* shown = m_ui->widgetLink0->link();
    if (shown && joins(*shown, panorama->id)) clearLinkViews();

    const int linksRemoved = removePanorama(m_project, m_ui->listPano->currentRow());
    refreshPanoList();
    if (linksRemoved > 0) refreshLinkTable();
}

void Tourwright::SelPano(int currentRow)
{
    PanoNode* panorama = selectedPanorama();
    if (currentRow >= 0 && panorama)
        drawPanorama(*panorama, &m_panoramaImage);
    else
        m_panoramaImage.fill(Qt::white);
    m_ui->widgetPhoto->showPanorama(panorama);
    refreshPhotoTable();
    refreshInfoTable();
    applyEnabling();
}

void Tourwright::drawPanorama(const PanoNode& panorama, QImage* image)
{
    // Where the file has no picture, none of another panorama may remain.
    assemblePanorama(panorama.file_path, image, Qt::white);
}

PanoNode* Tourwright::selectedPanorama() const
{
    const int row = m_ui->listPano->currentRow();
    const bool inside = row >= 0 && row < static_cast<int>(m_project.panoramas.size());
    return inside ? m_project.panoramas[static_cast<std::size_t>(row)].get() : nullptr;
}

void Tourwright::refreshPanoList()
{
    QListWidget* list = m_ui->listPano;
    const int remembered = list->currentRow();
    list->clear();
    for (const auto& panorama : m_project.panoramas)
        new QListWidgetItem(QIcon(QPixmap::fromImage(panorama->thumbnail)), panorama->base_name, list);
    for (QComboBox* combo : {m_ui->comboSelEntryPano, m_ui->comboSelPano0, m_ui->comboSelPano1})
        refillCombo(combo, m_project);
    list->setCurrentRow(rowAfterRefresh(remembered, list->count()));
    settleStage(m_project);
    applyEnabling();
}

void Tourwright::applyEnabling()
{
    const CommandState state =
        commandState(m_project, m_ui->listPano->currentRow(), m_ui->tableLink->currentRow());
    m_ui->buttonAddPano->setEnabled(state.add_panorama);
    m_ui->buttonDelPano->setEnabled(state.delete_panorama);
    for (QWidget* widget : {m_ui->groupSetEntryPano, m_ui->groupAddPhoto, m_ui->groupAddInfo})
        widget->setEnabled(state.panorama);
    m_ui->buttonAutoGenLink->setEnabled(state.auto_link);
    m_ui->groupAddLink->setEnabled(state.add_link);
    m_ui->groupGenMap->setEnabled(state.generate_map);
    m_ui->buttonDelLink->setEnabled(state.delete_link);
}
