// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/MarkerImages.h"

#include <QOpenGLFunctions>
#include <QOpenGLWidget>

class HotSpotOwner;
struct PanoLink;
struct PanoNode;

/// One equirectangular panorama seen from inside a sphere, with the icons of one use drawn on it.
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

    explicit HotSpotWidget(QWidget* parent = nullptr);

    /// One call after construction.
    /// @param owner     may be null in mode `FeaturePairs`; outlives the view
    /// @param panorama  the owner's picture, tightly packed 24-bit RGB; the owner replaces its content, not
    /// its
    ///                  size, and outlives the view
    /// @param side      end of the link that this view shows, 0 or 1
    void setUp(HotSpotOwner* owner, const QImage* panorama, const MarkerImages& markers, Mode mode, int side);

    /// Shows another panorama with its hotspots, whose picture the owner has just drawn; null for none.
    void showPanorama(PanoNode* panorama);
    /// Shows another link, whose picture on this side the owner has just drawn; null for none.
    void showLink(PanoLink* link);
    /// Back to the empty state: nothing shown.
    void clear();

    const PanoNode* panorama() const { return m_panorama; }
    const PanoLink* link() const { return m_link; }
    Mode mode() const { return m_mode; }
    int side() const { return m_side; }
    const QImage* panoramaImage() const { return m_panoramaImage; }

protected:
    void initializeGL() override;
    void paintGL() override;

private:
    HotSpotOwner* m_owner = nullptr;
    const QImage* m_panoramaImage = nullptr;
    MarkerImages m_markers;
    Mode m_mode = Hotspots;
    int m_side = 0;
    PanoNode* m_panorama = nullptr; ///< mode Hotspots: what is shown
    PanoLink* m_link = nullptr;     ///< mode Link: what is shown
};
