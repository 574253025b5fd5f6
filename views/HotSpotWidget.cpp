// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/HotSpotWidget.h"

#include "views/gl/GlView.h"

HotSpotWidget::HotSpotWidget(QWidget* parent)
    : QOpenGLWidget(parent)
{
    RequestViewContext(this);
}

void HotSpotWidget::setUp(HotSpotOwner* owner, const QImage* panorama, const MarkerImages& markers, Mode mode,
                          int side)
{
    m_owner = owner;
    m_panoramaImage = panorama;
    m_markers = markers;
    m_mode = mode;
    m_side = side;
}

void HotSpotWidget::showPanorama(PanoNode* panorama)
{
    m_panorama = panorama;
    update();
}

void HotSpotWidget::showLink(PanoLink* link)
{
    m_link = link;
    update();
}

void HotSpotWidget::clear()
{
    m_panorama = nullptr;
    m_link = nullptr;
    update();
}

void HotSpotWidget::initializeGL()
{
    initializeOpenGLFunctions();
    SetViewClearColor(*this);
}

void HotSpotWidget::paintGL()
{
    glClear(GL_COLOR_BUFFER_BIT);
}
