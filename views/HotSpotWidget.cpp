// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the panorama view shows, and how it paints it; its mouse and wheel are in HotSpotInput.cpp.

#include "views/HotSpotWidget.h"

#include "views/gl/GlView.h"
#include "views/gl/Matrix4.h"
#include "views/gl/Texture.h"
#include "views/sphere/SphereMatrices.h"
#include "views/sphere/SphereZoom.h"

#include <QImage>

HotSpotWidget::HotSpotWidget(QWidget* parent)
    : QOpenGLWidget(parent)
{
    RequestViewContext(this);
}

HotSpotWidget::~HotSpotWidget()
{
    if (!m_glInitialised) return;
    makeCurrent();
    m_sphere.release(*this);
    glDeleteTextures(static_cast<GLsizei>(m_iconTextures.size()), m_iconTextures.data());
    doneCurrent();
}

void HotSpotWidget::setUp(HotSpotOwner* owner, const QImage* panorama, const MarkerImages& markers, Mode mode,
                          int side)
{
    m_panoramaImage = panorama;
    m_mode = mode;
    m_side = side;
    m_hotspotIcons.setUp(owner, markers);
    m_linkIcon.setUp(owner, markers, side);
    m_pairIcons.setUp(markers, side);
    m_maxZoom = sphere::maxZoom(panorama ? panorama->width() : 0, m_size.width);
}

void HotSpotWidget::showPanorama(PanoNode* panorama)
{
    m_hotspotIcons.show(panorama);
    contentChanged();
}

void HotSpotWidget::showLink(PanoLink* link)
{
    m_linkIcon.show(link);
    contentChanged();
}

void HotSpotWidget::showPairs(::FeaturePairs* pairs)
{
    m_pairIcons.show(pairs);
    contentChanged();
}

void HotSpotWidget::clear()
{
    m_hotspotIcons.show(nullptr);
    m_linkIcon.show(nullptr);
    m_pairIcons.show(nullptr);
    contentChanged();
}

void HotSpotWidget::resetView()
{
    m_camera = m_target = {};
    endDrags();
}

void HotSpotWidget::contentChanged()
{
    m_panoramaUploaded = false;
    if (icons().hasContent()) return;
    m_hotspotIcons.selectPhoto(-1);
    endDrags();
}

IconLayer& HotSpotWidget::icons()
{
    switch (m_mode) {
    case Link:
        return m_linkIcon;
    case FeaturePairs:
        return m_pairIcons;
    case Hotspots:
        break;
    }
    return m_hotspotIcons;
}

void HotSpotWidget::initializeGL()
{
    initializeOpenGLFunctions();
    glViewport(0, 0, m_size.width, m_size.height);
    SetViewClearColor(*this);
    glEnable(GL_BLEND);
    glDepthFunc(GL_LESS);

    m_sphere.initialise(*this, m_panoramaImage ? m_panoramaImage->size() : QSize(0, 0));
    m_iconTextures.clear();
    for (const QImage* image : icons().images())
        m_iconTextures.push_back(UploadTexture(*this, image ? *image : QImage(), GL_RGBA));
    m_panoramaUploaded = false;

    glClear(GL_COLOR_BUFFER_BIT);
    StartRepaintTimer(m_repaint, this);
    m_glInitialised = true;
}

void HotSpotWidget::resizeGL(int width, int height)
{
    if (width < kMinimumWidth || height < kMinimumHeight) return;
    m_size = {width, height};
    glViewport(0, 0, width, height);
    m_maxZoom = sphere::maxZoom(m_panoramaImage ? m_panoramaImage->width() : 0, width);
    m_target.zoom = sphere::clampZoom(m_target.zoom, m_maxZoom);
}

void HotSpotWidget::paintGL()
{
    m_camera = m_target;
    m_camera.polar = sphere::drawablePolar(m_camera.polar);
    KeepViewport(*this, this, {m_size.width, m_size.height});
    glClear(GL_COLOR_BUFFER_BIT);
    if (!icons().hasContent()) return;

    if (!m_panoramaUploaded && m_panoramaImage) {
        m_sphere.setPicture(*this, *m_panoramaImage);
        m_panoramaUploaded = true;
    }
    const Matrix4 perspective = sphere::perspectiveMatrix(m_size, m_camera.zoom);
    const Matrix4 view = LookAt({0, 0, 0}, {1, 0, 0}, {0, 0, 1});
    const Matrix4 model = sphere::modelMatrix(m_camera.yaw, m_camera.polar);
    m_sphere.draw(*this, Multiply(Multiply(perspective, view), model));
    drawIcons();
}

void HotSpotWidget::drawIcons()
{
    const std::vector<IconQuad> quads = icons().place(m_camera, m_size);
    if (m_sphere.program() == 0) return;
    m_sphere.useForOverlays(*this);
    UseOverlayBlending(*this);
    for (const IconQuad& quad : quads)
        DrawOverlayQuad(*this, m_sphere.program(), quad.rectangle, {m_size.width, m_size.height},
                        m_iconTextures[static_cast<std::size_t>(quad.image)], quad.span);
}
