// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

class QOpenGLFunctions;
class QOpenGLWidget;
class QSize;
class QTimer;

/// What every GL view of the program sets alike: its context, its mouse tracking, its blending, its repaint
/// timer.

/// To be called first in a view's constructor: OpenGL 2.1 asked for with a core profile, and move events
/// without a pressed button. The pairing is odd but wanted: in practice it gives an ordinary 2.1 context.
void RequestViewContext(QOpenGLWidget* view);

/// Light grey-blue, the background of the views.
void SetViewClearColor(QOpenGLFunctions& gl);

/// 3D content replaces what is there; icons are laid over it by their alpha. Without effect while blending is
/// off.
void UseOpaqueBlending(QOpenGLFunctions& gl);
void UseOverlayBlending(QOpenGLFunctions& gl);

/// The toolkit sets the viewport to the whole widget before each paint. A widget too small to be taken over
/// goes on showing a part of the picture of the last size, from the top left corner, so that icons are picked
/// where they are seen.
/// @param lastSize  the size taken over last, widget pixels
void KeepViewport(QOpenGLFunctions& gl, const QOpenGLWidget* view, const QSize& lastSize);

/// Repaints the view about sixty times a second from now on, whether anything changed or not.
void StartRepaintTimer(QTimer& timer, QOpenGLWidget* view);
