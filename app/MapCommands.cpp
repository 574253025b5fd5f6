// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The navigation map.

#include "app/Messages.h"
#include "app/Tourwright.h"
#include "linking/Linker.h"
#include "ui_Tourwright.h"

#include <QImageReader>

void Tourwright::GenMap() {}

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
