// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// New, open, save, save as, quit, and the reset that they share.

#include "app/Messages.h"
#include "app/Tourwright.h"
#include "linking/Linker.h"
#include "linking/OpenTour.h"
#include "project/SaveTour.h"
#include "project/WorkingFolder.h"
#include "ui_Tourwright.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>

namespace {

// Not every system's dialog adds the ending of its filter to a name typed without one.
QString withEnding(const QString& path)
{
    if (path.isEmpty() || !QFileInfo(path).suffix().isEmpty()) return path;
    return path + QStringLiteral(".roa");
}

} // namespace

void Tourwright::NewRoam()
{
    if (m_project.modified) {
        const messages::Answer answer = messages::askSaveBeforeNew(this);
        if (answer == messages::Answer::Cancel) return;
        // The changes are dropped also when the file dialog is cancelled.
        if (answer == messages::Answer::Yes) SaveRoam();
    }
    reset();
    refreshPanoList();
    refreshLinkTable();
}

void Tourwright::OpenRoam()
{
    if (m_project.modified) {
        const messages::Answer answer = messages::askSaveBeforeOpen(this);
        if (answer == messages::Answer::Cancel) return;
        if (answer == messages::Answer::Yes) SaveRoam();
    }
    reset();
    const QString path = QFileDialog::getOpenFileName(this, tr("Open File"), m_project.folders.application,
                                                      tr("roa File(*.roa)"));
    if (!path.isEmpty()) {
        m_project.file_path = path;
        readFrom(path);
    }
    refreshPanoList();
    refreshLinkTable();
    if (!m_project.panoramas.empty()) m_ui->comboSelEntryPano->setCurrentIndex(m_project.entry_index);
}

void Tourwright::SaveRoam()
{
    if (m_project.file_path.isEmpty()) {
        const QString chosen = QFileDialog::getSaveFileName(
            this, tr("Save File"), m_project.folders.application, tr("roa File(*.roa)"));
        const QString path = withEnding(chosen);
        // The dialog has asked about the name that was typed, not about the completed one.
        if (path != chosen && QFileInfo::exists(path) && !messages::askOverwrite(this)) return;
        m_project.file_path = path;
        if (path.isEmpty()) return;
    }
    saveTo(m_project.file_path);
    m_project.modified = false;
}

void Tourwright::SaveAsRoam()
{
    const QString path = withEnding(
        QFileDialog::getSaveFileName(this, tr("Save As"), m_project.folders.application,
                                     tr("roa File(*.roa)"), nullptr, QFileDialog::DontConfirmOverwrite));
    if (path.isEmpty()) return;
    if (QFileInfo::exists(path) && !messages::askOverwrite(this)) return;
    m_project.file_path = path;
    saveTo(path);
    m_project.modified = false;
}

void Tourwright::Quit()
{
    if (close()) QCoreApplication::exit(0);
}

void Tourwright::closeEvent(QCloseEvent* event)
{
    // A close button pressed while a long command serves the event queue must not take the project from under
    // it. An upload looks at the project anew with each reply, and one that has stalled would hold the
    // program for ever.
    if (!isEnabled() && !m_uploading) return event->ignore();
    if (m_project.modified) {
        const messages::Answer answer = messages::askSaveBeforeExit(this);
        if (answer == messages::Answer::Cancel) return event->ignore();
        if (answer == messages::Answer::Yes) SaveRoam();
    }
    event->accept();
}

bool Tourwright::saveTo(const QString& path)
{
    const SaveResult result = saveTour(m_project, m_ui->comboSelEntryPano->currentIndex(), path);
    if (result.outcome == SaveOutcome::CannotOpen) messages::saveFailed(this, path, result.detail);
    if (result.outcome == SaveOutcome::Failed) messages::openFailed(this, path, result.detail);
    return static_cast<bool>(result);
}

void Tourwright::readFrom(const QString& path)
{
    PlanViews views;
    views.showPicture = [this](const QString& picture) { showPlanPicture(picture); };
    // What the library has made of the compressed cloud is the newest one, whatever its name.
    views.showCloud = [this](const QString&) { showNewestCloud(); };
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const OpenResult result = openTour(m_project, *m_linker, path, views);
    QApplication::restoreOverrideCursor();
    if (result.outcome == OpenOutcome::Empty) messages::fileEmpty(this, result.path);
    if (result.outcome == OpenOutcome::Failed) messages::openFailed(this, result.path, result.detail);
}

void Tourwright::reset()
{
    // First of all: the progress bar repaints the whole window at once, and no view may then show what is
    // gone.
    emptyViews();
    clearProject(m_project);
    m_linker->reset();
    m_ui->progressAuto->setValue(0);
    whitenLinkImages();
    // Before the hand-over there is no working folder, and an empty name would mean the current one.
    if (!m_project.folders.working.isEmpty()) clearWorkingFolder(m_project.folders.working);
}

void Tourwright::emptyViews()
{
    clearLinkViews();
    m_ui->widgetPhoto->clear();
    m_ui->widgetPlan->clear();
    m_ui->widgetPic->clear();
    m_ui->widgetPntCloud->ResetPointCloud();
}
