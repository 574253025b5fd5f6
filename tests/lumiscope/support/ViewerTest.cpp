// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/lumiscope/support/ViewerTest.h"

#include <QApplication>
#include <QWheelEvent>
#include <QWindow>

using namespace lumiscope;

void ViewerTest::openAnything(const QString& path)
{
    window = std::make_unique<ViewerWindow>(QStringLiteral(TW_PROGRAMS "/"));
    view = find<WalkView>("view");
    window->resize(900, 600);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    window->open(path);
}

void ViewerTest::open(const QString& tour)
{
    openAnything(tour);
    ASSERT_TRUE(waitFor([&] { return view->visitor() && view->isReady(station()) && shown("buttonMap"); }))
        << textOf("message").toStdString();
}

bool ViewerTest::arrivesAt(int station) const
{
    return waitFor([&] { return this->station() == station && !view->isWalking(); });
}

void ViewerTest::key(Qt::Key key, int times) const
{
    for (int i = 0; i < times; ++i)
        QTest::keyClick(window->windowHandle(), key);
}

void ViewerTest::click(QWidget* widget, QPoint at) const
{
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, widget->mapTo(window.get(), at));
}

void ViewerTest::move(QPoint at) const
{
    QTest::mouseMove(window->windowHandle(), at);
}

void ViewerTest::wheel(QWidget* widget, int delta) const
{
    const QPointF middle = widget->rect().center();
    QWheelEvent event(middle, widget->mapToGlobal(middle.toPoint()), QPoint(), QPoint(0, delta), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

QPoint ViewerTest::pixelOf(double azimuth, double polar) const
{
    const auto pixel = sphere::pixelFromSphere({azimuth, polar}, visitor().camera(), visitor().size());
    return {qRound(pixel.x), qRound(pixel.y)};
}

QPoint ViewerTest::pixelOf(const Neighbour& neighbour) const
{
    return visitor().spot(neighbour).target.center();
}

testing::AssertionResult sameColour(const QColor& a, const QColor& b, int tolerance)
{
    const bool same = std::abs(a.red() - b.red()) <= tolerance &&
                      std::abs(a.green() - b.green()) <= tolerance &&
                      std::abs(a.blue() - b.blue()) <= tolerance;
    return (same ? testing::AssertionSuccess() : testing::AssertionFailure())
           << a.name().toStdString() << " and " << b.name().toStdString();
}
