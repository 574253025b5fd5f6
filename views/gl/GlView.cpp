// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/gl/GlView.h"

#include <QOpenGLFunctions>
#include <QOpenGLWidget>
#include <QSurfaceFormat>
#include <QTimer>

void RequestViewContext(QOpenGLWidget* view)
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setVersion(2, 1);
    view->setFormat(format);
    view->setAttribute(Qt::WA_MouseTracking);
}

void SetViewClearColor(QOpenGLFunctions& gl)
{
    gl.glClearColor(0.627f, 0.627f, 0.643f, 1.0f);
}

void UseOpaqueBlending(QOpenGLFunctions& gl)
{
    gl.glBlendFunc(GL_ONE, GL_ZERO);
}

void UseOverlayBlending(QOpenGLFunctions& gl)
{
    gl.glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
}

void KeepViewport(QOpenGLFunctions& gl, const QOpenGLWidget* view, const QSize& lastSize)
{
    if (view->size() == lastSize) return;
    const double scale = view->devicePixelRatioF();
    gl.glViewport(0, qRound((view->height() - lastSize.height()) * scale), qRound(lastSize.width() * scale),
                  qRound(lastSize.height() * scale));
}

void StartRepaintTimer(QTimer& timer, QOpenGLWidget* view)
{
    // By name: `update` has overloads. Unique, because a view that moves to another window is initialised
    // again.
    QObject::connect(&timer, SIGNAL(timeout()), view, SLOT(update()), Qt::UniqueConnection);
    timer.start(16);
}
