// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>
#include <QPointF>
#include <QWidget>

#include <vector>

/// A picture that can be zoomed with the wheel and dragged with the mouse, never shown larger than 1:1.
class PicWidget : public QWidget
{
    Q_OBJECT

public:
    explicit PicWidget(QWidget* parent = nullptr);

    /// Shows a picture, or anew a picture whose content has changed.
    /// @param image     held by the caller as long as it is shown; null (or an empty image) for none
    /// @param keepZoom  keep the scale as far as the new picture allows, instead of fitting it into the
    /// widget
    void setImage(const QImage* image, bool keepZoom);
    /// Back to the empty state: no picture.
    void clear();

    const QImage* image() const { return m_image; }
    /// Widget pixels per picture pixel, in [fit scale, 1].
    double scale() const { return m_scale; }
    /// The scale at which the whole picture is seen, at most 1.
    double fitScale() const { return m_fitScale; }
    /// The picture's point in the middle of the widget, as fractions of its width and height.
    QPointF center() const { return {m_x.value, m_y.value}; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /// One coordinate of the view's centre with the limits that keep the picture's edges out of the widget.
    struct Center
    {
        double value = 0.5;
        double lower = 0.5;
        double upper = 0.5;

        void set(double wanted);
        /// @param shown  extent of the widget in pixels
        /// @param whole  extent of the scaled picture in pixels
        void limit(double shown, double whole);
    };

    double scaleThatFits() const;
    void limitCenter();
    QRect sourceRect() const;
    const QImage& pictureToDraw(QRect* source) const;

    const QImage* m_image = nullptr;
    double m_scale = 0.5;
    double m_fitScale = 0.5;
    Center m_x;
    Center m_y;
    bool m_dragging = false;
    QPointF m_pressedAt;
    QPointF m_centerAtPress;
    mutable std::vector<QImage> m_halved; ///< the picture at 1/2, 1/4, ... of its size, as far as needed
};
