// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/PntCloudWidget.h"

#include "views/gl/GlView.h"

PntCloudWidget::PntCloudWidget(QWidget* parent)
    : QOpenGLWidget(parent)
{
    RequestViewContext(this);
}

void PntCloudWidget::setUp(PntCloudOwner* owner, const QImage* boxSelect, const QImage* boxSelectOn,
                           const QImage* remove)
{
    m_owner = owner;
    m_boxSelect = boxSelect;
    m_boxSelectOn = boxSelectOn;
    m_remove = remove;
}

void PntCloudWidget::LoadPointCloud(const QString&) {}

void PntCloudWidget::ResetPointCloud()
{
    update();
}

void PntCloudWidget::initializeGL()
{
    initializeOpenGLFunctions();
    SetViewClearColor(*this);
}

void PntCloudWidget::paintGL()
{
    glClear(GL_COLOR_BUFFER_BIT);
}
