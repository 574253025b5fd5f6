// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/editor/PicWidget.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>

namespace {

constexpr double kLargestScale = 1.0;
constexpr double kZoomIn = 1.1;
constexpr double kZoomOut = 0.9090909090909091;

} // namespace

void PicWidget::Center::set(double wanted)
{
    value = std::clamp(wanted, lower, upper);
}

void PicWidget::Center::limit(double shown, double whole)
{
    lower = shown >= whole ? 0.5 : shown * 0.5 / whole;
    upper = 1.0 - lower;
    set(value);
}

PicWidget::PicWidget(QWidget* parent)
    : QWidget(parent)
{}

void PicWidget::setImage(const QImage* image, bool keepZoom)
{
    if (!image || image->isNull()) return clear();
    m_image = image;
    m_halved.clear();
    m_fitScale = scaleThatFits();
    m_scale = keepZoom ? std::clamp(m_scale, m_fitScale, kLargestScale) : m_fitScale;
    limitCenter();
    update();
}

void PicWidget::clear()
{
    m_image = nullptr;
    m_halved.clear();
    m_scale = m_fitScale = 0.5;
    m_x = m_y = Center();
    m_dragging = false;
    update();
}

double PicWidget::scaleThatFits() const
{
    const double imageWidth = m_image->width(), imageHeight = m_image->height();
    const bool wide = imageHeight * width() < imageWidth * height();
    return std::min(kLargestScale, wide ? width() / imageWidth : height() / imageHeight);
}

void PicWidget::limitCenter()
{
    m_x.limit(width(), m_image->width() * m_scale);
    m_y.limit(height(), m_image->height() * m_scale);
}

void PicWidget::resizeEvent(QResizeEvent*)
{
    if (!m_image) return;
    const bool whole = m_scale == m_fitScale;
    m_fitScale = scaleThatFits();
    m_scale = whole ? m_fitScale : std::clamp(m_scale, m_fitScale, kLargestScale);
    limitCenter();
}

void PicWidget::wheelEvent(QWheelEvent* event)
{
    const int delta = event->angleDelta().y();
    if (delta == 0 || !m_image) return;
    m_scale = std::clamp(m_scale * (delta > 0 ? kZoomIn : kZoomOut), m_fitScale, kLargestScale);
    limitCenter();
    update();
}

void PicWidget::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) return;
    m_centerAtPress = center();
    m_pressedAt = event->localPos();
    m_dragging = true;
}

void PicWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) m_dragging = false;
}

void PicWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_dragging || !m_image) return;
    const QPointF moved = (event->localPos() - m_pressedAt) / m_scale;
    m_x.set(m_centerAtPress.x() - moved.x() / m_image->width());
    m_y.set(m_centerAtPress.y() - moved.y() / m_image->height());
    update();
}

QRect PicWidget::sourceRect() const
{
    return {static_cast<int>(m_image->width() * m_x.value - width() * 0.5 / m_scale),
            static_cast<int>(m_image->height() * m_y.value - height() * 0.5 / m_scale),
            static_cast<int>(width() / m_scale), static_cast<int>(height() / m_scale)};
}

// A picture drawn at less than half its size would lose thin lines between the sampled pixels; its halves
// keep them.
const QImage& PicWidget::pictureToDraw(QRect* source) const
{
    const QImage* picture = m_image;
    std::size_t level = 0;
    for (double scale = m_scale; scale <= 0.5 && picture->width() > 1 && picture->height() > 1;
         scale *= 2.0) {
        if (m_halved.size() == level)
            m_halved.push_back(picture->scaled(picture->width() / 2, picture->height() / 2,
                                               Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        picture = &m_halved[level++];
    }
    const double x = static_cast<double>(picture->width()) / m_image->width();
    const double y = static_cast<double>(picture->height()) / m_image->height();
    *source = QRectF(source->x() * x, source->y() * y, source->width() * x, source->height() * y).toRect();
    return *picture;
}

void PicWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (!m_image) {
        painter.fillRect(rect(), Qt::gray);
        return;
    }
    painter.fillRect(rect(), Qt::white);
    painter.drawRect(0, 0, width() - 1, height() - 1);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    QRect source = sourceRect();
    const QImage& picture = pictureToDraw(&source);
    painter.drawImage(rect(), picture, source);
}
