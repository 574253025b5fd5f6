// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Mouse and wheel of the point-cloud view: turn, pan, zoom, draw a box, press an icon. Only members change;
// the repaint timer shows it.

#include "views/cloud/CloudDrag.h"
#include "views/CloudIcons.h"
#include "views/PntCloudWidget.h"

#include <QMouseEvent>

void PntCloudWidget::mousePressEvent(QMouseEvent* event)
{
    if (!m_loaded) return;
    if (event->button() == Qt::LeftButton) {
        pressLeft(event->pos());
    } else if (event->button() == Qt::RightButton && !m_boxMode) {
        m_cameraAtPress = m_camera;
        m_press = event->pos();
        m_panning = true;
    }
}

void PntCloudWidget::pressLeft(QPoint at)
{
    if (kBoxSelectIcon.contains(at)) {
        m_boxMode = !m_boxMode;
        m_selection = kNoSelection;
    } else if (kRemoveIcon.contains(at)) {
        if (!m_owner || !m_owner->confirmPointDeletion()) return;
        DeleteSelectedPoints();
        m_selection = kNoSelection;
    } else if (m_boxMode) {
        m_selection = QRect(at, QSize(0, 0));
        m_drawingSelection = true;
    } else {
        m_cameraAtPress = m_camera;
        m_press = at;
        m_rotating = true;
    }
}

void PntCloudWidget::mouseMoveEvent(QMouseEvent* event)
{
    setCursor(Qt::ArrowCursor);
    const QPoint at = event->pos();
    const cloud::CursorStep step{double(at.x() - m_press.x()), double(at.y() - m_press.y())};
    if (m_rotating) {
        m_camera = cloud::rotatedBy(step, m_camera, m_cameraAtPress, m_size);
    } else if (m_panning) {
        m_camera = cloud::pannedBy(step, m_camera, m_cameraAtPress);
    } else if (m_drawingSelection) {
        m_selection.setBottomRight(at);
    } else if (m_loaded && (kBoxSelectIcon.contains(at) || kRemoveIcon.contains(at))) {
        setCursor(Qt::PointingHandCursor);
    }
}

void PntCloudWidget::mouseReleaseEvent(QMouseEvent* event)
{
    m_rotating = m_panning = m_drawingSelection = false;
    // Letting go of the icon that has switched box mode on must not draw a box from nowhere: points under it
    // would go with the next deletion.
    if (m_boxMode && m_selection != kNoSelection) m_selection.setBottomRight(event->pos());
}

void PntCloudWidget::wheelEvent(QWheelEvent* event)
{
    const int delta = event->angleDelta().y();
    if (!m_loaded || m_boxMode || delta == 0) {
        event->ignore();
        return;
    }
    m_camera.zoom = cloud::zoomAfterWheel(m_camera.zoom, delta);
}
