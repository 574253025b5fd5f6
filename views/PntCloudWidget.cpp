// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the point-cloud view shows, and how it paints it; its mouse and wheel are in PntCloudInput.cpp.

#include "views/PntCloudWidget.h"

#include "views/cloud/PointCloudFile.h"
#include "views/cloud/PointDeletion.h"
#include "views/cloud/PointThinning.h"
#include "views/CloudIcons.h"
#include "views/gl/GlView.h"
#include "views/gl/OverlayQuad.h"
#include "views/gl/ShaderProgram.h"
#include "views/gl/ShaderSources.h"
#include "views/gl/Texture.h"
#include "views/StippledOutline.h"

#include <QImage>

PntCloudWidget::PntCloudWidget(QWidget* parent)
    : QOpenGLWidget(parent)
    , m_selection(kNoSelection)
{
    RequestViewContext(this);
}

PntCloudWidget::~PntCloudWidget()
{
    if (!m_glInitialised) return;
    makeCurrent();
    m_points.release(*this);
    glDeleteProgram(m_overlayProgram);
    glDeleteProgram(m_lineProgram);
    glDeleteTextures(static_cast<GLsizei>(m_iconTextures.size()), m_iconTextures.data());
    doneCurrent();
}

void PntCloudWidget::setUp(PntCloudOwner* owner, const QImage* boxSelect, const QImage* boxSelectOn,
                           const QImage* remove)
{
    m_owner = owner;
    m_icons = {boxSelect, boxSelectOn, remove};
}

void PntCloudWidget::LoadPointCloud(const QString& path)
{
    m_loaded = false;
    m_cloud.reset(); // first, so that two clouds never lie in memory
    m_thinned = {};

    cloud::PointCloud read;
    if (cloud::readPointCloud(path, &read) != cloud::ReadStatus::Ok) return;
    auto thinned = cloud::thinnedPoints(read);
    if (!thinned) return;

    m_path = path;
    m_camera.scale = cloud::Quantisation(read.header()).steps;
    m_cloud = std::move(read);
    m_thinned = std::move(*thinned);
    m_uploaded = false;
    m_loaded = true;
}

void PntCloudWidget::ResetPointCloud()
{
    m_path.clear();
    m_rotating = m_panning = m_drawingSelection = false;
    m_loaded = false;
    m_boxMode = false;
    m_cloud.reset();
    m_thinned = {};
    const double scale = m_camera.scale;
    m_camera = {};
    m_camera.scale = scale;
}

void PntCloudWidget::DeleteSelectedPoints()
{
    if (!m_cloud || !m_boxMode) return;
    auto rest = cloud::without(cloud::pointsInBox(*m_cloud, m_camera, m_size, m_selection), *m_cloud);
    if (!rest) return;
    m_cloud = std::move(rest);
    const QString path = m_path;
    if (!cloud::writePointCloud(path, *m_cloud)) {
        // The picture stays as it is, but a new context would want it drawn from what is held.
        m_thinned = cloud::thinnedPoints(*m_cloud).value_or(cloud::PointSet(m_cloud->size()));
        return;
    }
    if (m_owner) m_owner->pointCloudRewritten(path);
    LoadPointCloud(path);
}

void PntCloudWidget::initializeGL()
{
    initializeOpenGLFunctions();
    glViewport(0, 0, m_size.width, m_size.height);
    SetViewClearColor(*this);

    m_points.initialise(*this);
    m_overlayProgram = BuildShaderProgram(*this, shaders::kOverlayVertex, shaders::kTextureFragment);
    m_lineProgram = BuildShaderProgram(*this, shaders::kLineVertex, shaders::kLineFragment);
    for (std::size_t icon = 0; icon < m_icons.size(); ++icon)
        m_iconTextures[icon] = UploadTexture(*this, m_icons[icon] ? *m_icons[icon] : QImage(), GL_RGBA);
    m_uploaded = false;

    glClear(GL_COLOR_BUFFER_BIT);
    StartRepaintTimer(m_repaint, this);
    m_glInitialised = true;
}

void PntCloudWidget::resizeGL(int width, int height)
{
    if (width < kMinimumWidth || height < kMinimumHeight) return;
    m_size = {width, height};
    glViewport(0, 0, width, height);
}

void PntCloudWidget::paintGL()
{
    constexpr double kThinnedFirstAbove = 0.7;
    KeepViewport(*this, this, {m_size.width, m_size.height});
    if (m_loaded)
        glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    else
        SetViewClearColor(*this);
    glClear(GL_COLOR_BUFFER_BIT);
    if (!m_loaded) return;

    if (!m_uploaded) m_uploaded = m_points.upload(*context(), *m_cloud, m_thinned);
    m_points.draw(*this, cloud::cameraMatrix(m_camera, m_size), m_camera.zoom > kThinnedFirstAbove);
    drawSelection();
    drawIcons();
}

void PntCloudWidget::drawSelection()
{
    if (!m_boxMode || m_selection.width() == 0 || m_selection.height() == 0) return;
    DrawStippledOutline(*this, m_lineProgram, m_selection, {m_size.width, m_size.height});
}

// Blending stays off in this view: a transparent pixel of an icon shows the colour that it holds.
void PntCloudWidget::drawIcons()
{
    if (m_overlayProgram == 0) return;
    glUseProgram(m_overlayProgram);
    UseOverlayBlending(*this);
    const QSize size(m_size.width, m_size.height);
    DrawOverlayQuad(*this, m_overlayProgram, kBoxSelectIcon, size,
                    m_iconTextures[m_boxMode ? BoxSelectOn : BoxSelect]);
    DrawOverlayQuad(*this, m_overlayProgram, kRemoveIcon, size, m_iconTextures[Remove]);
}
