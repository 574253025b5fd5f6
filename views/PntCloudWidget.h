// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/PntCloudOwner.h"

#include <QOpenGLFunctions>
#include <QOpenGLWidget>

/// The merged point cloud of the scene, seen from above or at a slant.
class PntCloudWidget : public QOpenGLWidget, protected QOpenGLFunctions
{
    Q_OBJECT

public:
    explicit PntCloudWidget(QWidget* parent = nullptr);

    /// One call after construction: the icons, held by the owner, who outlives the view; bytes in R, G, B, A
    /// order.
    void setUp(PntCloudOwner* owner, const QImage* boxSelect, const QImage* boxSelectOn,
               const QImage* remove);

    /// Shows a point-cloud file; a file that cannot be shown leaves the view empty.
    /// @param path  absolute
    void LoadPointCloud(const QString& path);

    /// Back to the empty state: no cloud.
    void ResetPointCloud();

protected:
    void initializeGL() override;
    void paintGL() override;

private:
    PntCloudOwner* m_owner = nullptr;
    const QImage* m_boxSelect = nullptr;
    const QImage* m_boxSelectOn = nullptr;
    const QImage* m_remove = nullptr;
};
