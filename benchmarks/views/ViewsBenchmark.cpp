// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A frame of the panorama view against a bare GL loop that draws the same triangles with the same texture:
// from the start of the paint routine until the pixels are there, both in a view of the toolkit, whose own
// work of bringing them to the window is left out. Alternating rounds over a turning camera, medians. Wants a
// display.
//   bench_views [WIDTH HEIGHT]    default: 1056 x 930, the view's size in the main window

#include "project/PanoNode.h"
#include "views/gl/Matrix4.h"
#include "views/HotSpotWidget.h"
#include "views/sphere/SphereMatrices.h"
#include "views/sphere/SphereMesh.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QOpenGLShaderProgram>
#include <QWindow>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int kFrames = 60;
constexpr int kRounds = 7;
constexpr double kLimit = 1.3;
constexpr int kIcons = 20;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

QImage noise()
{
    QImage image(8192, 4096, QImage::Format_RGB888);
    unsigned state = 1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.bytesPerLine(); ++x)
            image.scanLine(y)[x] = static_cast<uchar>((state = state * 1664525u + 1013904223u) >> 24);
    }
    return image;
}

double yawOfFrame(int frame)
{
    return 0.05 * frame;
}

Matrix4 mvpOfFrame(int frame, sphere::ViewSize size)
{
    return Multiply(Multiply(sphere::perspectiveMatrix(size, 1.0), LookAt({0, 0, 0}, {1, 0, 0}, {0, 0, 1})),
                    sphere::modelMatrix(yawOfFrame(frame), sphere::kHalfPi));
}

/// What anybody would write to draw this sphere, nothing else.
class BareLoop
{
public:
    void initialise(QOpenGLFunctions* functions, const QImage& panorama)
    {
        gl = functions;
        m_program.addShaderFromSourceCode(
            QOpenGLShader::Vertex, "attribute vec3 p; attribute vec2 t; uniform mat4 m; varying vec2 v;\n"
                                   "void main() { gl_Position = m * vec4(p, 1); v = t; }\n");
        m_program.addShaderFromSourceCode(QOpenGLShader::Fragment,
                                          "uniform sampler2D s; varying vec2 v;\n"
                                          "void main() { gl_FragColor = texture2D(s, v); }\n");
        m_program.bindAttributeLocation("p", 0);
        m_program.bindAttributeLocation("t", 1);
        m_program.link();
        m_program.bind();
        m_matrix = m_program.uniformLocation("m");

        const auto vertices = sphere::meshVertices();
        const auto indices = sphere::meshIndices();
        m_count = static_cast<GLsizei>(indices.size());
        GLuint buffers[2];
        gl->glGenBuffers(2, buffers);
        gl->glBindBuffer(GL_ARRAY_BUFFER, buffers[0]);
        gl->glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size() * 20), vertices.data(),
                         GL_STATIC_DRAW);
        gl->glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers[1]);
        gl->glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indices.size() * 2), indices.data(),
                         GL_STATIC_DRAW);
        gl->glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 20, nullptr);
        gl->glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 20, reinterpret_cast<const void*>(12));
        gl->glEnableVertexAttribArray(0);
        gl->glEnableVertexAttribArray(1);
        gl->glGenTextures(1, &m_texture);
        gl->glBindTexture(GL_TEXTURE_2D, m_texture);
        gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, panorama.width(), panorama.height(), 0, GL_RGB,
                         GL_UNSIGNED_BYTE, panorama.constBits());
        gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    }

    void draw(int frame, sphere::ViewSize size)
    {
        gl->glClear(GL_COLOR_BUFFER_BIT);
        gl->glBindTexture(GL_TEXTURE_2D, m_texture); // a view's buffer unbinds it when it is made
        gl->glUniformMatrix4fv(m_matrix, 1, GL_FALSE, mvpOfFrame(frame, size).data());
        gl->glDrawElements(GL_TRIANGLES, m_count, GL_UNSIGNED_SHORT, nullptr);
    }

private:
    QOpenGLFunctions* gl = nullptr;
    QOpenGLShaderProgram m_program;
    GLint m_matrix = -1;
    GLsizei m_count = 0;
    GLuint m_texture = 0;
};

/// Counts its frames and the time of their drawing.
template <class View>
class Timed : public View
{
public:
    using View::View;

    /// Turns to the next direction and paints it, as often as asked.
    /// @return milliseconds of drawing per frame
    double paintFrames(int count)
    {
        // Painting is asked for and waited for: the toolkit drops repaints that follow too soon.
        m_painted = 0;
        m_drawing_ms = 0;
        while (m_painted < count) {
            View::turn(m_painted);
            View::update();
            QCoreApplication::processEvents(QEventLoop::AllEvents);
        }
        return m_drawing_ms / m_painted;
    }

protected:
    void paintGL() override
    {
        QElapsedTimer timer;
        timer.start();
        View::paintGL();
        View::context()->functions()->glFinish();
        m_drawing_ms += static_cast<double>(timer.nsecsElapsed()) * 1e-6;
        ++m_painted;
    }

private:
    int m_painted = 0;
    double m_drawing_ms = 0;
};

/// The bare loop inside a view of the toolkit.
class BareView : public QOpenGLWidget
{
public:
    explicit BareView(const QImage& panorama)
        : m_panorama(panorama)
    {}
    void turn(int frame) { m_frame = frame; }

protected:
    void initializeGL() override { m_loop.initialise(context()->functions(), m_panorama); }
    void paintGL() override { m_loop.draw(m_frame, {width(), height()}); }

private:
    const QImage& m_panorama;
    BareLoop m_loop;
    int m_frame = 0;
};

class PanoramaView : public HotSpotWidget
{
public:
    /// As a user does it, by a drag to the side; where no icon is in the way.
    void turn(int)
    {
        const auto send = [this](QEvent::Type type, QPoint at, Qt::MouseButton button) {
            QMouseEvent event(type, at, button, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(this, &event);
        };
        send(QEvent::MouseButtonPress, {width() / 2, 5}, Qt::LeftButton);
        send(QEvent::MouseMove, {width() / 2 - 25, 5}, Qt::NoButton);
        send(QEvent::MouseButtonRelease, {width() / 2 - 25, 5}, Qt::LeftButton);
    }
};

void showAt(QWidget& view, QSize size)
{
    view.resize(size);
    view.show();
    while (!view.windowHandle() || !view.windowHandle()->isExposed() || view.size() != size)
        QCoreApplication::processEvents();
}

} // namespace

int main(int argc, char** argv)
{
    QSurfaceFormat format;
    format.setSwapInterval(0);
    QSurfaceFormat::setDefaultFormat(format);
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QSize size =
        arguments.size() > 2 ? QSize(arguments[1].toInt(), arguments[2].toInt()) : QSize(1056, 930);
    if (size.width() < HotSpotWidget::kMinimumWidth || size.height() < HotSpotWidget::kMinimumHeight) {
        std::fprintf(stderr, "usage: bench_views [WIDTH HEIGHT], at least %d x %d\n",
                     HotSpotWidget::kMinimumWidth, HotSpotWidget::kMinimumHeight);
        return 2;
    }

    const QImage panorama = noise();
    QImage icon(56, 56, QImage::Format_ARGB32);
    icon.fill(QColor(255, 0, 0, 128));
    MarkerImages markers;
    markers.photo = markers.photoSelected = markers.info = markers.infoSelected = &icon;
    PanoNode bare, decorated;
    for (int i = 0; i < kIcons; ++i) {
        PhotoHotspot photo;
        photo.sphere_x = i * 0.3;
        decorated.photos.append(photo);
    }

    Timed<PanoramaView> view;
    view.setUp(nullptr, &panorama, markers, HotSpotWidget::Hotspots, 0);
    Timed<BareView> loop(panorama);

    std::vector<double> drawing, drawingIcons, drawingBare;
    for (int round = 0; round < kRounds; ++round) {
        view.showPanorama(&bare);
        showAt(view, size);
        view.paintFrames(1); // uploads the picture
        drawing.push_back(view.paintFrames(kFrames));
        view.showPanorama(&decorated);
        view.paintFrames(1);
        drawingIcons.push_back(view.paintFrames(kFrames));
        view.hide();

        showAt(loop, size);
        loop.paintFrames(1);
        drawingBare.push_back(loop.paintFrames(kFrames));
        loop.hide();
    }

    const double peer = median(drawingBare);
    std::printf(
        "panorama view %d x %d: %.2f ms a frame; bare loop: %.2f ms (medians of %d rounds of %d frames)\n",
        size.width(), size.height(), median(drawing), peer, kRounds, kFrames);
    std::printf("ratio %.2f (limit %.1f)\n", median(drawing) / peer, kLimit);
    std::printf("with %d icons: %.2f ms a frame, ratio %.2f\n", kIcons, median(drawingIcons),
                median(drawingIcons) / peer);
    return 0;
}
