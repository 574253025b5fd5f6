// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The point-cloud view against the least that its work could cost: loading against reading the file and
// copying its bytes, deletion against one pass over the planes, a frame against a bare GL loop that draws the
// same points. Alternating rounds, medians. Wants a display.
//   bench_cloud [POINTS [FRAME_POINTS]]    default: 20 million and 2 million

#include "benchmarks/cloud/BareCloudView.h"
#include "benchmarks/cloud/SampleCloud.h"
#include "views/cloud/PointCloudFile.h"
#include "views/cloud/PointDeletion.h"
#include "views/cloud/PointThinning.h"
#include "views/CloudPoints.h"
#include "views/PntCloudWidget.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QMouseEvent>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QTemporaryDir>
#include <QWindow>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

constexpr int kRounds = 7;
constexpr int kFrames = 10;
constexpr double kLoadLimit = 4.0, kDeletionLimit = 3.0, kFrameLimit = 1.3;
const QSize kViewSize(542, 463); // in the main window

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

template <class Work>
double milliseconds(const Work& work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) * 1e-6;
}

void printRatio(const char* what, double ours, const char* peerName, double peer, double limit)
{
    std::printf("%s: %.1f ms; %s: %.1f ms; ratio %.2f (limit %.1f)\n", what, ours, peerName, peer,
                ours / peer, limit);
}

/// Reads the file and copies what was read.
void readAndCopy(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) return;
    const auto size = static_cast<std::size_t>(file.size());
    const std::unique_ptr<char[]> read(new char[size]), copy(new char[size]);
    if (file.read(read.get(), qint64(size)) != qint64(size)) return;
    std::memcpy(copy.get(), read.get(), size);
    // So that the copy is not left out as unused.
    volatile char last = copy[size - 1];
    (void)last;
}

/// What the view does from the file to the points in the buffers of the driver.
void load(const QString& path, QOpenGLContext& context, CloudPoints* points)
{
    cloud::PointCloud cloud;
    if (cloud::readPointCloud(path, &cloud) != cloud::ReadStatus::Ok) return;
    const auto thinned = cloud::thinnedPoints(cloud);
    if (!thinned || !points->upload(context, cloud, *thinned)) std::printf("not loaded\n");
    context.functions()->glFinish();
}

void benchLoading(const QString& path, const char* order)
{
    QOpenGLContext context;
    QSurfaceFormat format;
    format.setVersion(2, 1);
    context.setFormat(format);
    QOffscreenSurface surface;
    surface.create();
    if (!context.create() || !context.makeCurrent(&surface)) return;

    std::vector<double> ours, peer;
    for (int round = 0; round < kRounds; ++round) {
        peer.push_back(milliseconds([&] { readAndCopy(path); }));
        CloudPoints points;
        points.initialise(*context.functions());
        ours.push_back(milliseconds([&] { load(path, context, &points); }));
        points.release(*context.functions());
    }
    printRatio(order, median(ours), "reading and copying the same bytes", median(peer), kLoadLimit);
}

/// Every byte read once and added up.
std::uint64_t passOver(const cloud::PointCloud& cloud)
{
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < cloud.dataBytes(); ++i)
        sum += cloud.data()[i];
    return sum;
}

void benchDeletion(const cloud::PointCloud& cloud, const char* order)
{
    cloud::Camera camera;
    camera.scale = cloud::Quantisation(cloud.header()).steps;
    camera.zoom = 0.1;
    camera.pan_x = 50;
    camera.pan_y = 25;
    camera.tilt = 0.3;
    const cloud::ViewSize size{kViewSize.width(), kViewSize.height()};
    const QRect leftHalf(QPoint(-100000, -100000), QPoint(size.width / 2 - 1, 100000));

    std::vector<double> ours, marking, pass, copy;
    std::size_t left = 0;
    for (int round = 0; round < kRounds; ++round) {
        pass.push_back(milliseconds([&] {
            volatile std::uint64_t sum = passOver(cloud);
            (void)sum;
        }));
        copy.push_back(milliseconds([&] {
            cloud::PointCloud twin;
            if (twin.allocate(cloud.header())) std::memcpy(twin.data(), cloud.data(), cloud.dataBytes());
        }));
        double marked = 0;
        ours.push_back(milliseconds([&] {
            cloud::PointSet deleted;
            marked = milliseconds([&] { deleted = cloud::pointsInBox(cloud, camera, size, leftHalf); });
            const auto rest = cloud::without(deleted, cloud);
            left = rest ? rest->size() : 0;
        }));
        marking.push_back(marked);
    }
    printRatio(order, median(ours), "one copying pass over the planes", median(copy), kDeletionLimit);
    std::printf("    marking %.1f ms of it; %zu of %zu points left; a pass that only reads: %.1f ms\n",
                median(marking), left, cloud.size(), median(pass));
}

/// Counts its frames and the time of their drawing.
template <class View>
class Timed : public View
{
public:
    /// @return milliseconds of drawing per frame
    double paintFrames(int count)
    {
        // Painting is asked for and waited for: the toolkit drops repaints that follow too soon.
        m_painted = 0;
        m_drawing_ms = 0;
        while (m_painted < count) {
            View::update();
            QCoreApplication::processEvents(QEventLoop::AllEvents);
        }
        return m_drawing_ms / m_painted;
    }

protected:
    void paintGL() override
    {
        m_drawing_ms += milliseconds([this] {
            View::paintGL();
            View::context()->functions()->glFinish();
        });
        ++m_painted;
    }

private:
    int m_painted = 0;
    double m_drawing_ms = 0;
};

void showAt(QWidget& view, QSize size)
{
    view.resize(size);
    view.show();
    while (!view.windowHandle() || !view.windowHandle()->isExposed() || view.size() != size)
        QCoreApplication::processEvents();
}

void benchFrame(const QString& path, const cloud::PointCloud& cloud)
{
    std::vector<cloud::Vertex> all(cloud.size());
    const cloud::VertexDecoder decoder(cloud);
    decoder.decodeAll(all.data());
    const cloud::PointSet thinnedSet = cloud::thinnedPoints(cloud).value();
    std::vector<cloud::Vertex> thinned(thinnedSet.size());
    decoder.decode(thinnedSet, thinned.data());

    QImage icon(56, 56, QImage::Format_ARGB32);
    icon.fill(Qt::white);
    Timed<PntCloudWidget> view;
    view.setUp(nullptr, &icon, &icon, &icon);
    view.LoadPointCloud(path);
    Timed<BareCloudView> loop;
    loop.show({&thinned, &all});
    cloud::Camera camera; // the view's own first one
    camera.scale = cloud::Quantisation(cloud.header()).steps;
    loop.look(camera);

    std::vector<double> ours, peer;
    for (int round = 0; round < kRounds; ++round) {
        showAt(view, kViewSize);
        view.paintFrames(1); // uploads the points
        ours.push_back(view.paintFrames(kFrames));
        view.hide();
        showAt(loop, kViewSize);
        loop.paintFrames(1);
        peer.push_back(loop.paintFrames(kFrames));
        loop.hide();
    }
    printRatio("a frame", median(ours), "bare loop", median(peer), kFrameLimit);
}

} // namespace

int main(int argc, char** argv)
{
    QSurfaceFormat format;
    format.setSwapInterval(0);
    QSurfaceFormat::setDefaultFormat(format);
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const std::size_t points = arguments.size() > 1 ? arguments[1].toULongLong() : 20'000'000;
    const std::size_t framePoints = arguments.size() > 2 ? arguments[2].toULongLong() : 2'000'000;
    if (points == 0 || points > 400'000'000 || framePoints == 0 || framePoints > 400'000'000) {
        std::fprintf(stderr, "usage: bench_cloud [POINTS [FRAME_POINTS]], each from 1 to 400000000\n");
        return 2;
    }

    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("cloud.tmp"));
    std::printf("%zu points, %d rounds\n", points, kRounds);
    for (const PointOrder order : {PointOrder::AlongACurve, PointOrder::Shuffled}) {
        const bool curve = order == PointOrder::AlongACurve;
        const cloud::PointCloud cloud = sampleCloud(points, order);
        if (!cloud::writePointCloud(path, cloud)) return 1;
        benchLoading(path, curve ? "loading, points along a curve" : "loading, points shuffled");
        benchDeletion(cloud,
                      curve ? "deleting half, points along a curve" : "deleting half, points shuffled");
    }
    std::printf("%zu points, %d rounds of %d frames\n", framePoints, kRounds, kFrames);
    const cloud::PointCloud cloud = sampleCloud(framePoints, PointOrder::AlongACurve);
    if (!cloud::writePointCloud(path, cloud)) return 1;
    benchFrame(path, cloud);
    return 0;
}
