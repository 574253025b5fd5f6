// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The navigation map in its corner.

#pragma once

#include "companions/lumiscope/tour/MapSheet.h"

#include <QPixmap>
#include <QTransform>
#include <QWidget>

namespace lumiscope {

/// Shows the sheet with all its stations, the visitor's place and heading; a click on a station chooses it.
class MapPanel : public QWidget
{
    Q_OBJECT

public:
    explicit MapPanel(QWidget* parent = nullptr);

    /// @param tour  the owner's; it outlives the panel
    void showSheet(const WalkTour* tour, MapSheet sheet);
    /// @param heading     of the view in the world, radians
    /// @param viewAngle   that the view's width spans, radians
    void setVisitor(int station, double heading, double viewAngle);

    const MapSheet& sheet() const { return m_sheet; }
    int station() const { return m_station; }
    /// Where a station is drawn, widget pixels; nothing when it is not on the sheet.
    std::optional<QPointF> placeOf(int station) const;
    /// Direction of the cone: radians from the right, clockwise on the screen.
    double coneAngle() const;

Q_SIGNALS:
    void stationChosen(int station);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void fit();
    int stationAt(QPoint at) const;
    void drawLinks(QPainter& painter) const;
    void drawCone(QPainter& painter) const;
    void drawStations(QPainter& painter) const;
    void drawName(QPainter& painter) const;

    const WalkTour* m_tour = nullptr;
    MapSheet m_sheet;
    int m_station = 0;
    double m_heading = 0.0;
    double m_viewAngle = 1.0;
    int m_hovered = -1;
    QTransform m_onPanel; ///< sheet to widget pixels
    QPixmap m_picture;    ///< scaled to the panel
};

} // namespace lumiscope
