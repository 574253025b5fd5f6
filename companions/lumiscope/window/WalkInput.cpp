// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Mouse, fingers and keys of the visitor's view.

#include "companions/lumiscope/window/WalkView.h"

#include <QApplication>
#include <QLineF>
#include <QMouseEvent>
#include <QTouchDevice>
#include <QTouchEvent>

#include <algorithm>

namespace lumiscope {

namespace {

constexpr int kWheelStep = 120; ///< eighths of a degree

sphere::PixelPoint pixelOf(QPoint at)
{
    return {double(at.x()), double(at.y())};
}

template <class Hotspot>
int indexAt(const QList<Hotspot>& hotspots, QPoint at)
{
    for (int i = 0; i < hotspots.size(); ++i)
        if (hotspots[i].marker.contains(at)) return i;
    return -1;
}

} // namespace

void WalkView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && m_visitor && !m_touched) pressAt(event->pos());
}

void WalkView::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_visitor) return;
    if (!m_pressed || m_touched) return hover(event->pos()); // the pointer does not drag for a finger
    dragTo(event->pos());
}

void WalkView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !m_pressed || m_touched) return;
    releaseAt(event->pos());
    hover(event->pos());
}

void WalkView::pressAt(QPoint at)
{
    m_pressed = true;
    m_dragging = false;
    m_pressedAt = at;
    m_visitor->beginDrag(pixelOf(at));
}

void WalkView::dragTo(QPoint at)
{
    const int moved = (at - m_pressedAt).manhattanLength();
    if (!m_dragging && moved < QApplication::startDragDistance()) return;
    m_dragging = true;
    setCursor(Qt::ClosedHandCursor);
    m_visitor->drag(pixelOf(at));
    changed();
}

void WalkView::releaseAt(QPoint at)
{
    m_pressed = false;
    if (!m_dragging) click(at);
    m_dragging = false;
}

bool WalkView::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        if (touch(*static_cast<QTouchEvent*>(event))) return true;
        break;
    default:
        break;
    }
    return QOpenGLWidget::event(event);
}

/// One finger does what the mouse does, two come nearer and go farther.
/// @return false when the system is to make mouse events of it
bool WalkView::touch(const QTouchEvent& event)
{
    if (!m_visitor || event.device()->type() != QTouchDevice::TouchScreen) return false;
    QList<QPoint> fingers;
    for (const QTouchEvent::TouchPoint& point : event.touchPoints())
        if (point.state() != Qt::TouchPointReleased) fingers << point.pos().toPoint();
    if (event.type() == QEvent::TouchCancel) fingers.clear();

    m_touched = !fingers.isEmpty();
    const bool wereTwo = m_spread > 0.0;
    if (fingers.size() >= 2) {
        const double spread = QLineF(fingers[0], fingers[1]).length();
        if (wereTwo && spread > 0.0) m_visitor->zoomBy(spread / m_spread);
        m_spread = std::max(spread, 1.0);
        m_pressed = m_dragging = false; // a finger that stays is no click
        changed();
    } else if (fingers.size() == 1) {
        m_spread = 0.0;
        if (event.type() == QEvent::TouchBegin)
            pressAt(fingers[0]);
        else if (m_pressed)
            dragTo(fingers[0]);
        else if (wereTwo) {
            pressAt(fingers[0]);
            m_dragging = true;
        }
    } else {
        m_spread = 0.0;
        if (m_pressed && event.type() == QEvent::TouchEnd)
            releaseAt(event.touchPoints().first().pos().toPoint());
        m_pressed = m_dragging = false;
    }
    return true;
}

void WalkView::click(QPoint at)
{
    if (isWalking()) return;
    const PanoNode& node = here().node;
    if (const int photo = indexAt(node.photos, at); photo >= 0) return void(Q_EMIT photoChosen(photo));
    if (const int info = indexAt(node.infos, at); info >= 0) return void(Q_EMIT infoChosen(info));
    if (const auto marker = m_visitor->markerAt(pixelOf(at)))
        Q_EMIT stationChosen(m_visitor->here().neighbours[static_cast<std::size_t>(*marker)].station);
}

void WalkView::hover(QPoint at)
{
    const PanoNode& node = here().node;
    const int photo = indexAt(node.photos, at);
    const int info = photo >= 0 ? -1 : indexAt(node.infos, at);
    const auto marker = photo >= 0 || info >= 0 ? std::nullopt : m_visitor->markerAt(pixelOf(at));
    QString text;
    if (photo >= 0)
        text = node.photos[photo].caption;
    else if (info >= 0)
        text = node.infos[info].caption;
    else if (marker) {
        const Neighbour& neighbour = m_visitor->here().neighbours[static_cast<std::size_t>(*marker)];
        const QString name = m_tour->stations[static_cast<std::size_t>(neighbour.station)].node.base_name;
        //: %1 is the place's name, %2 how many metres away it is
        text = tr("%1 (%2 m)").arg(name, QString::number(neighbour.distance_m, 'f', 1)).trimmed();
    }
    m_icons.selectInfo(info);
    if (photo >= 0) m_icons.selectPhoto(photo);
    m_taken = marker;
    setCursor(photo >= 0 || info >= 0 || marker ? Qt::PointingHandCursor : Qt::ArrowCursor);
    Q_EMIT hovered(text, at);
    update();
}

void WalkView::leaveEvent(QEvent*)
{
    Q_EMIT hovered(QString(), QPoint());
}

void WalkView::wheelEvent(QWheelEvent* event)
{
    m_wheel += event->angleDelta().y();
    const int steps = m_wheel / kWheelStep;
    m_wheel -= steps * kWheelStep;
    if (steps != 0) zoom(steps);
}

void WalkView::keyPressEvent(QKeyEvent* event)
{
    if (!m_visitor) return event->ignore();
    switch (event->key()) {
    case Qt::Key_Left:
        m_visitor->turn(1, 0);
        break;
    case Qt::Key_Right:
        m_visitor->turn(-1, 0);
        break;
    case Qt::Key_Up:
        m_visitor->turn(0, 1);
        break;
    case Qt::Key_Down:
        m_visitor->turn(0, -1);
        break;
    case Qt::Key_Plus:
    case Qt::Key_Equal: // plus without the shift key
        m_visitor->zoom(1);
        break;
    case Qt::Key_Minus:
        m_visitor->zoom(-1);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (const auto marker = m_visitor->markerInView(); marker && !isWalking())
            Q_EMIT stationChosen(m_visitor->here().neighbours[static_cast<std::size_t>(*marker)].station);
        return;
    default:
        return event->ignore();
    }
    m_taken = m_visitor->markerInView();
    changed();
}

} // namespace lumiscope
