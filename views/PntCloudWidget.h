// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/cloud/CloudCamera.h"
#include "views/cloud/PointCloud.h"
#include "views/cloud/PointSet.h"
#include "views/CloudPoints.h"
#include "views/PntCloudOwner.h"

#include <QOpenGLFunctions>
#include <QOpenGLWidget>
#include <QTimer>

#include <array>
#include <optional>

/// The merged point cloud of the scene, seen from above or at a slant. The left button turns and tilts, the
/// right one pans, the wheel zooms; points in a drawn box can be cut away. Repaints itself about sixty times
/// a second.
class PntCloudWidget : public QOpenGLWidget, protected QOpenGLFunctions
{
    Q_OBJECT

public:
    /// Smallest size that the view takes over, in pixels; below it keeps the picture of the last one.
    static constexpr int kMinimumWidth = 321;
    static constexpr int kMinimumHeight = 241;

    explicit PntCloudWidget(QWidget* parent = nullptr);
    ~PntCloudWidget() override;

    /// One call after construction: the icons, held by the owner, who outlives the view; bytes in R, G, B, A
    /// order.
    void setUp(PntCloudOwner* owner, const QImage* boxSelect, const QImage* boxSelectOn,
               const QImage* remove);

    /// Shows a point-cloud file; a file that cannot be shown leaves the view empty. The camera stays, but
    /// for its scale. May be called before the view is first shown.
    /// @param path  absolute
    void LoadPointCloud(const QString& path);

    /// Back to the empty state: no cloud, the first view of the camera, no drag, no box mode.
    void ResetPointCloud();

    /// In box mode, cuts the points in the selection away, rewrites the file, tells the owner and loads the
    /// file anew. When it cannot be written the points are gone from the held cloud only: the picture stays
    /// until the next load.
    void DeleteSelectedPoints();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;

private:
    friend class PntCloudWidgetProbe; ///< of the tests

    void pressLeft(QPoint at);
    void drawSelection();
    void drawIcons();

    PntCloudOwner* m_owner = nullptr;
    enum Icon
    {
        BoxSelect,
        BoxSelectOn,
        Remove
    };
    std::array<const QImage*, 3> m_icons{};

    QString m_path;
    std::optional<cloud::PointCloud> m_cloud; ///< as the file holds it, for deletion and uploading
    cloud::PointSet m_thinned;
    bool m_loaded = false;

    cloud::ViewSize m_size;
    cloud::Camera m_camera;

    bool m_rotating = false;
    bool m_panning = false;
    bool m_drawingSelection = false;
    QPoint m_press;
    cloud::Camera m_cameraAtPress;
    bool m_boxMode = false;
    QRect m_selection; ///< widget pixels, its second corner the last one drawn to

    bool m_glInitialised = false;
    bool m_uploaded = false;
    CloudPoints m_points;
    GLuint m_overlayProgram = 0;
    GLuint m_lineProgram = 0;
    std::array<GLuint, 3> m_iconTextures{};
    QTimer m_repaint;
};
