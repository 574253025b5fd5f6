// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the visitor sees and turns with mouse and keys.

#pragma once

#include "companions/lumiscope/pictures/PanoramaTextures.h"
#include "companions/lumiscope/scene/Visitor.h"
#include "views/HotspotIcons.h"

#include <QElapsedTimer>
#include <QOpenGLFunctions>
#include <QOpenGLWidget>
#include <QTimer>

#include <optional>

class QTouchEvent;

namespace lumiscope {

/// Draws the panorama of the visitor's station with its floor markers and hotspots, and the walk from one
/// station to the next. Paints when something changes only.
class WalkView : public QOpenGLWidget, protected QOpenGLFunctions
{
    Q_OBJECT

public:
    explicit WalkView(QWidget* parent = nullptr);
    ~WalkView() override;

    /// Shows a tour from its entry on.
    /// @param tour  the owner's; it outlives the view, and only its file paths and names change
    void showTour(WalkTour* tour);

    const Visitor* visitor() const { return m_visitor ? &*m_visitor : nullptr; }

    /// Takes the picture of a station, see `PanoramaLoader`.
    void addPicture(int station, int width, const QImage& picture);
    bool hasPicture(int station, int width) const { return m_textures.has(station, width); }
    /// Whether there is a picture that a frame can show at once.
    bool isReady(int station) const { return m_textures.width(station) > 0; }
    /// Width of the picture that is shown of a station; 0 for none.
    int shownWidth(int station) const { return m_textures.width(station); }
    /// Lets go of all other pictures; those on the screen stay.
    /// @param destination  station that is awaited, -1 for none: its picture goes up before all others
    void keepPictures(const std::vector<PictureOrder>& orders, int destination);

    /// Walks to a station; what is there of its picture is shown at once.
    void walkTo(int station);
    bool isWalking() const { return m_from >= 0; }

    /// Zooms by steps, nearer when positive.
    void zoom(int steps);

    /// Whether the graphics card takes pictures of `kSharpWidth`.
    bool takesSharpPictures() const { return m_maxTexture >= kSharpWidth; }
    /// Whether the driver can show panoramas at all; known after the first frame.
    bool isUsable() const { return m_usable; }

Q_SIGNALS:
    void stationChosen(int station);
    void photoChosen(int photo);
    void infoChosen(int info);
    /// The view has turned.
    void turned();
    /// What lies under the cursor, for the visitor; empty for nothing.
    void hovered(const QString& text, QPoint at);
    /// A picture of the station can be shown from now on.
    void ready(int station);
    /// A frame with a panorama has been painted; told while painting.
    void painted(int station, int width);
    /// The blend of a walk is over; told while painting.
    void walked();

protected:
    bool event(QEvent* event) override;
    void initializeGL() override;
    void paintGL() override;
    void resizeGL(int width, int height) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void upload();
    void drawSpheres();
    void drawMarkers();
    void drawHotspots();
    void release();
    /// Draws next to nothing once in each of the ways that frames are drawn, while the tour is still being
    /// read: drivers compile programs with their first use.
    void warmUp();
    void pressAt(QPoint at);
    void dragTo(QPoint at);
    void releaseAt(QPoint at);
    bool touch(const QTouchEvent& event);
    void click(QPoint at);
    void hover(QPoint at);
    void changed();
    Station& here();

    struct EarlyPicture
    {
        int station, width;
        QImage picture;
    };

    WalkTour* m_tour = nullptr;
    std::vector<EarlyPicture> m_early; ///< came before there was a context
    std::optional<Visitor> m_visitor;
    PanoramaTextures m_textures;
    PanoramaSphere m_program; ///< for markers, icons and all pictures; there before the first of them
    HotspotIcons m_icons;
    std::vector<QImage> m_iconImages;
    std::vector<GLuint> m_iconTextures;
    GLuint m_marker = 0;
    GLuint m_markerTaken = 0;
    std::optional<int> m_taken; ///< marker under the cursor, or the one that Enter takes

    int m_destination = -1; ///< awaited
    int m_from = -1;        ///< station left behind while walking
    std::optional<double> m_walkHeading;
    QElapsedTimer m_walkClock;
    QTimer m_frames;  ///< while walking
    QTimer m_uploads; ///< while there is something to upload

    bool m_pressed = false;
    bool m_dragging = false;
    bool m_touched = false; ///< fingers are on the view
    QPoint m_pressedAt;
    double m_spread = 0.0; ///< of two fingers on the view, pixels; 0 while there are not two
    int m_wheel = 0;       ///< turned since the last whole step
    GLint m_maxTexture = kSharpWidth;
    bool m_usable = true;
    bool m_initialised = false;
    bool m_isWarm = false;
};

} // namespace lumiscope
