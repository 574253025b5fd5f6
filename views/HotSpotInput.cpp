// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Mouse and wheel of the panorama view: take an icon, turn the view, zoom. Only members change; the repaint
// timer shows it.

#include "views/HotSpotWidget.h"
#include "views/sphere/SphereZoom.h"

#include <QMouseEvent>

void HotSpotWidget::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !icons().hasContent()) return;
    const sphere::PixelPoint cursor{double(event->pos().x()), double(event->pos().y())};
    if (const auto centre = icons().grab(event->pos())) {
        m_iconAtPress = *centre;
        m_cursorAtPress = cursor;
        m_iconDragActive = true;
        return;
    }
    m_viewDrag.begin(sphere::screenFromPixel(cursor, m_size), m_camera);
    m_target.yaw = m_camera.yaw;
    m_target.polar = m_camera.polar;
    m_viewDragActive = true;
}

void HotSpotWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (!icons().hasContent()) return;
    const sphere::PixelPoint cursor{double(event->pos().x()), double(event->pos().y())};
    if (m_iconDragActive) {
        const sphere::PixelPoint centre{cursor.x - m_cursorAtPress.x + m_iconAtPress.x,
                                        cursor.y - m_cursorAtPress.y + m_iconAtPress.y};
        icons().moveGrabbed(sphere::sphereFromPixel(centre, m_camera, m_size));
        setCursor(Qt::PointingHandCursor);
    } else if (m_viewDragActive) {
        const sphere::Camera seen{m_target.yaw, m_target.polar, m_camera.zoom};
        const sphere::Camera found = m_viewDrag.follow(sphere::screenFromPixel(cursor, m_size), seen);
        m_target.yaw = found.yaw;
        m_target.polar = found.polar;
    } else {
        setCursor(icons().isOver(event->pos()) ? Qt::PointingHandCursor : Qt::ArrowCursor);
    }
}

void HotSpotWidget::mouseReleaseEvent(QMouseEvent*)
{
    endDrags();
}

void HotSpotWidget::wheelEvent(QWheelEvent* event)
{
    const int delta = event->angleDelta().y();
    if (!icons().hasContent() || delta == 0) {
        event->ignore();
        return;
    }
    m_target.zoom = sphere::zoomAfterWheel(m_target.zoom, delta, m_maxZoom);
}

void HotSpotWidget::endDrags()
{
    m_iconDragActive = false;
    m_viewDragActive = false;
}
