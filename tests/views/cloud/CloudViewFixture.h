// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/views/cloud/CloudBytes.h"
#include "tests/views/GlWindowFixture.h"
#include "views/PntCloudOwner.h"
#include "views/PntCloudWidget.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QTemporaryDir>

#include <memory>

class MockCloudOwner : public PntCloudOwner
{
public:
    MOCK_METHOD(bool, confirmPointDeletion, (), (override));
    MOCK_METHOD(void, pointCloudRewritten, (const QString& path), (override));
};

/// Sets what only a long row of mouse movements could set, and reads what pictures do not tell.
class PntCloudWidgetProbe
{
public:
    static void look(PntCloudWidget& view, cloud::Camera camera)
    {
        camera.scale = view.m_camera.scale;
        view.m_camera = camera;
    }
    static cloud::Camera camera(const PntCloudWidget& view) { return view.m_camera; }
    static cloud::ViewSize size(const PntCloudWidget& view) { return view.m_size; }
    static QRect selection(const PntCloudWidget& view) { return view.m_selection; }
    static bool boxMode(const PntCloudWidget& view) { return view.m_boxMode; }
    static bool loaded(const PntCloudWidget& view) { return view.m_loaded; }
    static bool dragging(const PntCloudWidget& view)
    {
        return view.m_rotating || view.m_panning || view.m_drawingSelection;
    }
    static std::size_t heldPoints(const PntCloudWidget& view)
    {
        return view.m_cloud ? view.m_cloud->size() : 0;
    }
};

/// A point-cloud view in a window of its own, with plainly coloured icons and an owner that records.
class CloudViewFixture : public GlWindowFixture
{
protected:
    using Probe = PntCloudWidgetProbe;

    CloudViewFixture();
    QOpenGLWidget* widget() const override { return view.get(); }

    void show(QSize size = {542, 463}) { showWindow(size); }
    /// Writes a cloud's file and loads it.
    void load(const QByteArray& file);
    void load() { load(bytes.file()); }
    QString path() const { return m_folder.filePath(QStringLiteral("cloud.tmp")); }

    using GlWindowFixture::frame;
    QImage frame(const cloud::Camera& camera);

    /// Pixel of a point of `bytes` by the view's camera.
    QPoint pixelOf(const CloudDot& dot) const;

    void click(QPoint at);
    void drag(QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton);

    /// Pixels of exactly this colour.
    static int countOf(const QImage& frame, QColor colour);

    testing::NiceMock<MockCloudOwner> owner;
    QImage box, boxOn, remove;
    CloudBytes bytes;
    std::unique_ptr<PntCloudWidget> view;

    static inline const QPoint kBoxIcon{20, 20}, kDeleteIcon{70, 30};
    static inline const QColor kBox{250, 10, 20}, kBoxOn{10, 250, 20}, kRemove{20, 10, 250};
    static inline const QColor kGrey{160, 160, 164};

private:
    QTemporaryDir m_folder;
};
