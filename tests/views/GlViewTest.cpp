// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/gl/GlView.h"

#include <gtest/gtest.h>

#include <QOpenGLWidget>
#include <QTest>
#include <QTimer>

namespace {

class CountingView : public QOpenGLWidget
{
public:
    CountingView() { RequestViewContext(this); }
    int paints = 0;

protected:
    void paintGL() override { ++paints; }
};

} // namespace

TEST(GlView, AsksForOpenGl21WithACoreProfileAndTracksTheMouse)
{
    const CountingView view;
    EXPECT_EQ(view.format().renderableType(), QSurfaceFormat::OpenGL);
    EXPECT_EQ(view.format().profile(), QSurfaceFormat::CoreProfile);
    EXPECT_EQ(view.format().majorVersion(), 2);
    EXPECT_EQ(view.format().minorVersion(), 1);
    EXPECT_TRUE(view.hasMouseTracking());
}

TEST(GlView, TheTimerRepaintsAnIdleView)
{
    CountingView view;
    view.resize(400, 300);
    QTimer timer;
    StartRepaintTimer(timer, &view);
    EXPECT_EQ(timer.interval(), 16);
    EXPECT_TRUE(timer.isActive());
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    EXPECT_TRUE(QTest::qWaitFor([&] { return view.paints >= 5; }));
}
