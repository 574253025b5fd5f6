// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/gl/OverlayQuad.h"
#include "views/sphere/IconPlacement.h"
#include "views/sphere/SphereCamera.h"

#include <QRect>

#include <optional>
#include <vector>

class QImage;

/// One icon as it is to be drawn.
struct IconQuad
{
    QRect rectangle; ///< widget pixels
    int image = 0;   ///< index into `IconLayer::images`
    TextureSpan span;
};

/// The icons of one use of the panorama view: where they stand, which one the cursor takes, what a drag
/// changes. Knows the records, not the drawing.
class IconLayer
{
public:
    virtual ~IconLayer() = default;

    /// Whether there is something to show; without it the view is empty and takes no input.
    virtual bool hasContent() const = 0;

    /// The pictures that the quads of `place` name by index. Held by the owner of the view.
    virtual std::vector<const QImage*> images() const = 0;

    /// Icons as this camera sees them, in drawing order. Stores each one's rectangle in its record for
    /// picking.
    virtual std::vector<IconQuad> place(const sphere::Camera& camera, sphere::ViewSize size) = 0;

    /// Whether an icon that can be taken lies under the cursor.
    virtual bool isOver(QPoint cursor) const = 0;

    /// Takes the icon under the cursor and selects its record.
    /// @return the icon's centre; nothing when there is none to take
    virtual std::optional<sphere::PixelPoint> grab(QPoint cursor) = 0;

    /// Moves the taken icon's record to this point of the sphere.
    virtual void moveGrabbed(sphere::SpherePoint point) = 0;
};

inline QRect toRect(const sphere::IconRect& rectangle)
{
    return {rectangle.left, rectangle.top, rectangle.width, rectangle.height};
}
