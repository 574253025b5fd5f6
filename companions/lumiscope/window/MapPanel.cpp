// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/window/MapPanel.h"

#include <QMouseEvent>
#include <QPainter>
#include <QtMath>

namespace lumiscope {

namespace {

const QColor kPaper(24, 28, 34, 215);
const QColor kLink(255, 255, 255, 110);
const QColor kStation(43, 140, 255);
const QColor kVisitor(255, 140, 43);
constexpr double kMargin = 10.0; ///< pixels
constexpr double kStationRadius = 5.0;
constexpr double kVisitorRadius = 7.0;
constexpr double kConeLength = 34.0;
constexpr double kReach = 14.0; ///< of a click

} // namespace

MapPanel::MapPanel(QWidget* parent)
    : QWidget(parent)
{
    setMouseTracking(true);
}

void MapPanel::showSheet(const WalkTour* tour, MapSheet sheet)
{
    m_tour = tour;
    m_sheet = std::move(sheet);
    m_hovered = -1;
    fit();
}

void MapPanel::setVisitor(int station, double heading, double viewAngle)
{
    m_station = station;
    m_heading = heading;
    m_viewAngle = viewAngle;
    update();
}

void MapPanel::fit()
{
    m_onPanel = QTransform();
    m_picture = QPixmap();
    update();
    if (m_sheet.size.isEmpty()) return;
    const QSizeF room = QSizeF(size()) - QSizeF(2 * kMargin, 2 * kMargin);
    const double scale = qMin(room.width() / m_sheet.size.width(), room.height() / m_sheet.size.height());
    if (scale <= 0.0) return;
    const QSizeF shown = m_sheet.size * scale;
    m_onPanel.translate((width() - shown.width()) / 2.0, (height() - shown.height()) / 2.0);
    m_onPanel.scale(scale, scale);
    if (m_sheet.picture.isNull()) return;
    const double density = devicePixelRatioF();
    m_picture = QPixmap::fromImage(m_sheet.picture.scaled((shown * density).toSize().expandedTo({1, 1}),
                                                          Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    m_picture.setDevicePixelRatio(density);
}

std::optional<QPointF> MapPanel::placeOf(int station) const
{
    const auto index = static_cast<std::size_t>(station);
    if (station < 0 || index >= m_sheet.places.size() || !m_sheet.places[index]) return {};
    return m_onPanel.map(*m_sheet.places[index]);
}

double MapPanel::coneAngle() const
{
    return m_sheet.fit.pictureAngle(m_heading);
}

int MapPanel::stationAt(QPoint at) const
{
    int nearest = -1;
    double least = kReach;
    for (int i = 0; i < static_cast<int>(m_sheet.places.size()); ++i) {
        const auto place = placeOf(i);
        if (!place) continue;
        const double away = QLineF(*place, at).length();
        if (away >= least) continue;
        least = away;
        nearest = i;
    }
    return nearest;
}

void MapPanel::resizeEvent(QResizeEvent*)
{
    fit();
}

void MapPanel::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) return;
    const int station = stationAt(event->pos());
    if (station >= 0) Q_EMIT stationChosen(station);
}

void MapPanel::mouseMoveEvent(QMouseEvent* event)
{
    m_hovered = stationAt(event->pos());
    setCursor(m_hovered >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
    update();
}

void MapPanel::leaveEvent(QEvent*)
{
    m_hovered = -1;
    update();
}

void MapPanel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(kPaper);
    painter.drawRoundedRect(rect(), 8, 8);
    if (!m_picture.isNull()) painter.drawPixmap(m_onPanel.map(QPointF(0, 0)), m_picture);
    if (!m_tour) return;
    drawLinks(painter);
    drawCone(painter);
    drawStations(painter);
    drawName(painter);
}

void MapPanel::drawLinks(QPainter& painter) const
{
    painter.setPen(QPen(kLink, 2));
    for (const auto& [first, second] : m_tour->links) {
        const auto from = placeOf(first), to = placeOf(second);
        if (from && to) painter.drawLine(*from, *to);
    }
}

void MapPanel::drawCone(QPainter& painter) const
{
    const auto place = placeOf(m_station);
    if (!place) return;
    QRectF circle(0, 0, 2 * kConeLength, 2 * kConeLength);
    circle.moveCenter(*place);
    QColor light = kVisitor;
    light.setAlpha(110);
    painter.setPen(Qt::NoPen);
    painter.setBrush(light);
    // The painter counts angles counter-clockwise on the screen, in sixteenths of a degree.
    const double start = -coneAngle() - m_viewAngle / 2.0;
    painter.drawPie(circle, qRound(qRadiansToDegrees(start) * 16),
                    qRound(qRadiansToDegrees(m_viewAngle) * 16));
}

void MapPanel::drawStations(QPainter& painter) const
{
    painter.setPen(QPen(Qt::white, 1.5));
    for (int i = 0; i < static_cast<int>(m_sheet.places.size()); ++i) {
        const auto place = placeOf(i);
        if (!place) continue;
        const bool large = i == m_station || i == m_hovered;
        painter.setBrush(i == m_station ? kVisitor : kStation);
        const double radius = large ? kVisitorRadius : kStationRadius;
        painter.drawEllipse(*place, radius, radius);
    }
}

void MapPanel::drawName(QPainter& painter) const
{
    if (m_hovered < 0) return;
    const QString name = m_tour->stations[static_cast<std::size_t>(m_hovered)].node.base_name;
    if (name.isEmpty()) return;
    QRectF box = painter.fontMetrics().boundingRect(name).adjusted(-6, -3, 6, 3);
    box.moveCenter(placeOf(m_hovered).value_or(QPointF()) - QPointF(0, 20));
    box.moveLeft(qBound(2.0, box.left(), qMax(2.0, width() - box.width() - 2)));
    box.moveTop(qMax(2.0, box.top()));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 190));
    painter.drawRoundedRect(box, 4, 4);
    painter.setPen(Qt::white);
    painter.drawText(box, Qt::AlignCenter, name);
}

} // namespace lumiscope
