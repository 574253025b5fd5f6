// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/editor/CentreCross.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QTest>

namespace {

class ClickedView : public QWidget
{
public:
    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent*) override { ++presses; }
};

} // namespace

TEST(CentreCross, StandsInTheMiddleAtEverySize)
{
    QWidget view;
    view.resize(500, 300);
    const CentreCross* cross = new CentreCross(&view);
    view.show();
    for (const QSize size : {QSize(500, 300), QSize(640, 480), QSize(330, 250)}) {
        view.resize(size);
        ASSERT_TRUE(QTest::qWaitFor([&] { return view.size() == size; }));
        EXPECT_EQ(cross->geometry().left() - 0, size.width() - 1 - cross->geometry().right());
        EXPECT_EQ(cross->geometry().top() - 0, size.height() - 1 - cross->geometry().bottom());
    }
}

TEST(CentreCross, LeavesTheMiddleItselfUncovered)
{
    QWidget view;
    view.resize(100, 100);
    CentreCross cross(&view);
    QImage image(cross.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    cross.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    const QPoint middle = image.rect().center();
    for (const QPoint offset : {QPoint(0, 0), QPoint(1, 1), QPoint(2, 2), QPoint(-1, 1)})
        EXPECT_EQ(qAlpha(image.pixel(middle + offset)), 0);
    EXPECT_EQ(image.pixel(middle + QPoint(12, 0)), qRgb(255, 255, 255));
    EXPECT_EQ(image.pixel(middle + QPoint(0, -12)), qRgb(255, 255, 255));
}

TEST(CentreCross, LeavesTheMouseToTheView)
{
    ClickedView view;
    view.resize(300, 300);
    new CentreCross(&view);
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    QTest::mousePress(view.windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(150, 138));
    QTest::mouseRelease(view.windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(150, 138));
    EXPECT_EQ(view.presses, 1);
}
