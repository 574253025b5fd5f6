// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Automatic and manual links, their removal and selection; the link table and the link's pictures.

#include "app/BusyWindow.h"
#include "app/Messages.h"
#include "app/Tourwright.h"
#include "linking/AutoLink.h"
#include "linking/CommandState.h"
#include "linking/editor/PanoMatchEditor.h"
#include "linking/EditLinks.h"
#include "linking/LinkTable.h"
#include "linking/MatchFiles.h"
#include "linking/ReadBack.h"
#include "ui_Tourwright.h"

#include <QCoreApplication>

void Tourwright::AutoGenLink()
{
    if (m_project.panoramas.size() < 2) return;
    const BusyWindow busy(this);
    linkAutomatically(m_project, *m_linker, [this](const AutoLinkStep& step) { showAutoLinkStep(step); });
    applyEnabling();
    refreshLinkTable();
}

void Tourwright::showAutoLinkStep(const AutoLinkStep& step)
{
    m_ui->progressAuto->setValue(step.progress);
    if (step.kind == AutoLinkStep::Kind::Started) {
        clearLinkViews();
        m_ui->widgetPlan->clear();
        m_ui->widgetPntCloud->ResetPointCloud();
        return;
    }
    if (step.kind == AutoLinkStep::Kind::LinksDropped) refreshLinkTable();
    if (step.show_picture) showNewestMatchPicture();
    QCoreApplication::processEvents();
}

void Tourwright::AddLink()
{
    const AddLinkResult result =
        addLinkByHand(m_project, m_ui->comboSelPano0->currentIndex(), m_ui->comboSelPano1->currentIndex());
    switch (result.outcome) {
    case AddLinkOutcome::SamePanorama:
        return messages::samePanorama(this);
    case AddLinkOutcome::AlreadyLinked:
        return messages::linkExists(this);
    case AddLinkOutcome::Added:
        refreshLinkTable();
        m_ui->tableLink->setCurrentCell(m_ui->tableLink->rowCount() - 1, 0);
        return applyEnabling();
    case AddLinkOutcome::NeedsEditor:
        return openLinkEditor(*result.panorama_0, *result.panorama_1);
    case AddLinkOutcome::NothingSelected:
        return;
    }
}

void Tourwright::openLinkEditor(const PanoNode& panorama_0, const PanoNode& panorama_1)
{
    if (!m_linkEditor) {
        m_linkEditor = std::make_unique<PanoMatchEditor>(*m_linker, this);
        connect(m_linkEditor.get(), &PanoMatchEditor::linkComputed, this, &Tourwright::refreshAfterLinkEdit);
    }
    drawPanorama(panorama_0, &m_linkEditor->image(0));
    drawPanorama(panorama_1, &m_linkEditor->image(1));
    m_linkEditor->setPair(panorama_0.name(), panorama_1.name());
    m_linkEditor->showMaximized();
}

void Tourwright::refreshAfterLinkEdit()
{
    // Every link is made anew, so that none may stay shown.
    clearLinkViews();
    readBackAfterEdit(m_project, *m_linker);
    m_project.modified = true;
    showNewestMatchPicture();
    refreshLinkTable();
    showStatus();
}

void Tourwright::DelLink()
{
    const int row = m_ui->tableLink->currentRow();
    if (row < 0) return;
    const BusyWindow busy(this);
    whitenLinkImages();
    QCoreApplication::processEvents();
    // With lidar every link is made anew, so that none may stay shown.
    if (m_project.lidar || m_ui->widgetLink0->link() == m_project.links[static_cast<std::size_t>(row)].get())
        clearLinkViews();
    deleteLink(m_project, *m_linker, row);
    showNewestMatchPicture();
    refreshLinkTable();
}

void Tourwright::SelLink(int row, int)
{
    PanoLink* link = row >= 0 ? m_project.links[static_cast<std::size_t>(row)].get() : nullptr;
    if (!link) {
        whitenLinkImages();
    } else if (const LinkEnds ends = endsOf(m_project, *link); ends.complete()) {
        drawPanorama(*ends.panorama_0, &m_linkImages[0]);
        drawPanorama(*ends.panorama_1, &m_linkImages[1]);
        if (drawMatchPicture(m_project, *m_linker, *link)) showNewestMatchPicture();
    }
    m_ui->widgetLink0->showLink(link);
    m_ui->widgetLink1->showLink(link);
}

void Tourwright::refreshLinkTable()
{
    QTableWidget* table = m_ui->tableLink;
    const int remembered = table->currentRow();
    const std::vector<LinkRow> rows = linkRows(m_project);
    table->setRowCount(0);
    table->setRowCount(static_cast<int>(rows.size()));
    for (int row = 0; row < table->rowCount(); ++row) {
        const LinkRow& cells = rows[static_cast<std::size_t>(row)];
        table->setItem(row, 0, new QTableWidgetItem(cells.automatic ? tr("Yes") : tr("No")));
        table->setItem(row, 1, new QTableWidgetItem(cells.panorama_0));
        table->setItem(row, 2, new QTableWidgetItem(cells.panorama_1));
    }
    table->setCurrentCell(rowAfterRefresh(remembered, table->rowCount()), 0);
    applyEnabling();
}

void Tourwright::showNewestMatchPicture()
{
    const QString path = newestMatchPicture(m_project);
    QImage picture;
    if (path.isEmpty() || !picture.load(path)) return;
    m_matchPicture = picture;
    m_ui->widgetPlan->setImage(&m_matchPicture, true);
}

void Tourwright::clearLinkViews()
{
    m_ui->widgetLink0->clear();
    m_ui->widgetLink1->clear();
}

void Tourwright::whitenLinkImages()
{
    for (QImage& image : m_linkImages)
        image.fill(Qt::white);
}
