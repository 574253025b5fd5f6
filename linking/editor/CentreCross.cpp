// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/editor/CentreCross.h"

#include <QEvent>
#include <QPainter>

namespace {

constexpr int kSize = 40;
constexpr qreal kGap = 5; // the feature itself stays uncovered

} // namespace

CentreCross::CentreCross(QWidget* view)
    : QWidget(view)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    resize(kSize, kSize);
    view->installEventFilter(this);
    moveToCentre();
}

bool CentreCross::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize) moveToCentre();
    return QWidget::eventFilter(watched, event);
}

void CentreCross::moveToCentre()
{
    const QSize view = parentWidget()->size();
    move((view.width() - kSize) / 2, (view.height() - kSize) / 2);
}

void CentreCross::paintEvent(QPaintEvent*)
{
    const QPointF c(kSize / 2.0, kSize / 2.0);
    const qreal end = kSize / 2.0 - 2;
    const QLineF lines[] = {{c - QPointF(end, 0), c - QPointF(kGap, 0)},
                            {c + QPointF(kGap, 0), c + QPointF(end, 0)},
                            {c - QPointF(0, end), c - QPointF(0, kGap)},
                            {c + QPointF(0, kGap), c + QPointF(0, end)}};
    QPainter painter(this);
    // White on black is seen on every scene.
    painter.setPen(QPen(QColor(0, 0, 0, 170), 4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLines(lines, 4);
    painter.setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::FlatCap));
    painter.drawLines(lines, 4);
}
