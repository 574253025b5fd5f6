// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The navigation map.

#include "app/BusyWindow.h"
#include "app/Messages.h"
#include "app/Tourwright.h"
#include "linking/Linker.h"
#include "linking/map/GenerateMap.h"
#include "linking/map/MapFiles.h"
#include "linking/MatchFiles.h"
#include "ui_Tourwright.h"

#include <QCoreApplication>
#include <QImageReader>

namespace {

MapOptions chosenOptions(const Ui::TourwrightClass& ui)
{
    MapOptions options;
    options.mode = ui.radioMap3D->isChecked() ? MapOptions::Cloud3D : MapOptions::Plan2D;
    options.scene = ui.radioIndoor->isChecked() ? MapOptions::Indoor : MapOptions::Outdoor;
    options.density = ui.radioDensityLow->isChecked()   ? MapOptions::Low
                      : ui.radioDensityMid->isChecked() ? MapOptions::Mid
                                                        : MapOptions::High;
    options.fullCloud = ui.checkFullCloud->isChecked();
    options.binaryCloud = ui.checkBinCloud->isChecked();
    return options;
}

} // namespace

void Tourwright::GenMap()
{
    if (!isConnected(m_project, *m_linker) && !messages::askMapOfUnconnected(this)) return;
    const BusyWindow busy(this);
    m_project.map_options = chosenOptions(*m_ui);
    clearLinkViews();
    whitenLinkImages();
    generateMap(m_project, *m_linker, [this](const MapStep& step) { showMapStep(step); });
    applyEnabling();
}

void Tourwright::showMapStep(const MapStep& step)
{
    using Kind = MapStep::Kind;
    m_ui->progressAuto->setValue(step.progress);
    switch (step.kind) {
    case Kind::CompletingLinks:
        statusBar()->showMessage(tr("Completing the links"));
        break;
    case Kind::LinksCompleted:
        return showPlanPicture(newestMatchPicture(m_project));
    case Kind::Merging:
        refreshLinkTable();
        statusBar()->showMessage(tr("Merging the point clouds, which may take minutes"));
        break;
    case Kind::Merged:
        showPlanPicture(newestMatchPicture(m_project));
        return showNewestCloud();
    case Kind::HandingOut:
        statusBar()->showMessage(tr("Writing the map files into %1").arg(m_project.folders.output));
        break;
    case Kind::Finished:
        return statusBar()->clearMessage();
    }
    QCoreApplication::processEvents();
}

void Tourwright::showNewestCloud()
{
    const QString cloud = newestCloud(m_project);
    if (!cloud.isEmpty()) m_ui->widgetPntCloud->LoadPointCloud(cloud);
}

bool Tourwright::confirmPointDeletion()
{
    return messages::confirmPointDeletion(this);
}

void Tourwright::pointCloudRewritten(const QString& path)
{
    m_linker->compressCloud(path);
    markModified();
}

void Tourwright::showPlanPicture(const QString& path)
{
    if (path.isEmpty()) return; // no picture is there to show
    // Plans come from tour files as well, where a few bytes can claim a picture that no memory holds.
    constexpr qint64 kMostPixels = qint64(1) << 28;
    QImageReader reader(path);
    const QSize size = reader.size();
    if (qint64(size.width()) * size.height() > kMostPixels) return;
    const QImage picture = reader.read();
    if (picture.isNull()) return;
    m_planPicture = picture;
    m_ui->widgetPlan->setImage(&m_planPicture, true);
}
