// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/FeaturePairIcons.h"
#include "views/HotspotIcons.h"
#include "views/LinkIcon.h"
#include "views/MarkerImages.h"
#include "views/PanoramaSphere.h"
#include "views/sphere/SphereCamera.h"
#include "views/sphere/SphereDrag.h"

#include <QOpenGLFunctions>
#include <QOpenGLWidget>
#include <QTimer>

class HotSpotOwner;

/// One equirectangular panorama seen from inside a sphere, with the icons of one use drawn on it. Dragging
/// turns the view or moves an icon, the wheel zooms. Writes straight into the records that it shows; repaints
/// itself about sixty times a second.
class HotSpotWidget : public QOpenGLWidget, protected QOpenGLFunctions
{
    Q_OBJECT

public:
    /// Which records the icons stand for.
    enum Mode
    {
        Hotspots = 0,     ///< the photo and text hotspots of a panorama
        Link = 1,         ///< the marker of the panorama at a link's other end
        FeaturePairs = 2, ///< the point pairs of the link editor
    };

    /// Smallest size that the view takes over, in pixels; below it keeps the picture of the last one.
    static constexpr int kMinimumWidth = 321;
    static constexpr int kMinimumHeight = 241;

    explicit HotSpotWidget(QWidget* parent = nullptr);
    ~HotSpotWidget() override;

    /// One call after construction, before the view is first shown.
    /// @param owner     may be null in mode `FeaturePairs`; outlives the view
    /// @param panorama  the owner's picture, tightly packed 24-bit RGB; the owner replaces its content, not
    /// its
    ///                  size, and outlives the view
    /// @param side      end of the link that this view shows, 0 or 1
    void setUp(HotSpotOwner* owner, const QImage* panorama, const MarkerImages& markers, Mode mode, int side);

    /// Shows another panorama with its hotspots, whose picture the owner has just drawn; null for none, which
    /// also ends drags and selections. The viewing direction stays.
    void showPanorama(PanoNode* panorama);
    /// Shows another link, whose picture on this side the owner has just drawn; null for none.
    void showLink(PanoLink* link);
    /// Shows the pairs of the link editor on a picture that the owner has just drawn; null for none.
    void showPairs(::FeaturePairs* pairs);
    /// Back to the empty state: nothing shown, nothing selected, no drag.
    void clear();
    /// Looks straight ahead at zoom 1 again and ends drags.
    void resetView();

    /// Mode `Hotspots`: which hotspot is highlighted and moved by drags, -1 for none. Selecting a photo
    /// deselects the text and the other way round.
    void selectPhoto(int index) { m_hotspotIcons.selectPhoto(index); }
    void selectInfo(int index) { m_hotspotIcons.selectInfo(index); }
    int selectedPhoto() const { return m_hotspotIcons.selectedPhoto(); }
    int selectedInfo() const { return m_hotspotIcons.selectedInfo(); }

    /// Direction of the middle of the picture last painted; the azimuth may lie outside [-pi, pi], the polar
    /// angle lies in [0.01, pi - 0.01].
    sphere::SpherePoint viewingDirection() const { return {m_camera.yaw, m_camera.polar}; }

    const PanoNode* panorama() const { return m_hotspotIcons.panorama(); }
    const PanoLink* link() const { return m_linkIcon.link(); }
    Mode mode() const { return m_mode; }
    int side() const { return m_side; }
    const QImage* panoramaImage() const { return m_panoramaImage; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;

private:
    friend class HotSpotWidgetProbe; ///< of the tests

    IconLayer& icons();
    const IconLayer& icons() const { return const_cast<HotSpotWidget*>(this)->icons(); }
    void contentChanged();
    void endDrags();
    void drawIcons();

    const QImage* m_panoramaImage = nullptr;
    Mode m_mode = Hotspots;
    int m_side = 0;
    HotspotIcons m_hotspotIcons;
    LinkIcon m_linkIcon;
    FeaturePairIcons m_pairIcons;

    sphere::ViewSize m_size;
    sphere::Camera m_camera; ///< of the picture last painted
    sphere::Camera m_target; ///< of the next one: what the input handlers set
    double m_maxZoom = 1.0;

    bool m_viewDragActive = false;
    sphere::ViewDrag m_viewDrag;
    bool m_iconDragActive = false;
    sphere::PixelPoint m_iconAtPress;
    sphere::PixelPoint m_cursorAtPress;

    bool m_glInitialised = false;
    bool m_panoramaUploaded = false;
    PanoramaSphere m_sphere;
    std::vector<GLuint> m_iconTextures; ///< in the order of `IconLayer::images`
    QTimer m_repaint;
};
