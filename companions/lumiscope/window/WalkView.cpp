// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Pictures and painting; mouse and keys are in WalkInput.cpp.

#include "companions/lumiscope/window/WalkView.h"

#include "companions/lumiscope/scene/Walk.h"
#include "companions/lumiscope/window/FloorQuad.h"
#include "views/gl/GlView.h"
#include "views/gl/OverlayQuad.h"
#include "views/gl/Texture.h"

#include <cmath>

namespace lumiscope {

namespace {

constexpr double kUploadAtOnce_ms = 6.0;
constexpr double kUploadAll_ms = 1e6;
constexpr int kFrame_ms = 16;

QImage resource(const char* name)
{
    return QImage(QStringLiteral(":/Tourwright/Resources/") + QLatin1String(name) + QStringLiteral(".png"));
}

/// Heading of the way from one station to another; nothing when no link leads there.
std::optional<double> headingOfLink(const WalkTour& tour, int from, int to)
{
    const Station& station = tour.stations[static_cast<std::size_t>(from)];
    for (const Neighbour& neighbour : station.neighbours)
        if (neighbour.station == to) return neighbour.marker.azimuth + station.node.direction;
    return {};
}

} // namespace

WalkView::WalkView(QWidget* parent)
    : QOpenGLWidget(parent)
{
    RequestViewContext(this);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_AcceptTouchEvents);
    for (const char* name : {"LinkPhoto1", "LinkPhoto2", "LinkInfo1", "LinkInfo2"})
        m_iconImages.push_back(resource(name).rgbSwapped());
    MarkerImages markers;
    markers.photo = &m_iconImages[0];
    markers.photoSelected = &m_iconImages[1];
    markers.info = &m_iconImages[2];
    markers.infoSelected = &m_iconImages[3];
    m_icons.setUp(nullptr, markers);
    connect(&m_frames, &QTimer::timeout, this, QOverload<>::of(&QWidget::update));
    connect(&m_uploads, &QTimer::timeout, this, &WalkView::upload);
}

WalkView::~WalkView()
{
    if (!m_initialised) return;
    makeCurrent();
    release();
    doneCurrent();
}

void WalkView::release()
{
    m_textures.release(*this);
    m_program.release(*this);
    glDeleteTextures(static_cast<GLsizei>(m_iconTextures.size()), m_iconTextures.data());
    glDeleteTextures(1, &m_marker);
    glDeleteTextures(1, &m_markerTaken);
}

void WalkView::showTour(WalkTour* tour)
{
    m_tour = tour;
    m_visitor.emplace(tour);
    m_visitor->resize({width(), height()});
    m_icons.show(&here().node);
    Q_EMIT turned(); // there is nothing to paint yet
}

Station& WalkView::here()
{
    return m_tour->stations[static_cast<std::size_t>(m_visitor->station())];
}

void WalkView::initializeGL()
{
    initializeOpenGLFunctions();
    SetViewClearColor(*this);
    glEnable(GL_BLEND);
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &m_maxTexture);
    m_program.initialise(*this, QSize(1, 1));
    m_usable = m_program.program() != 0;
    for (const QImage& image : m_iconImages)
        m_iconTextures.push_back(UploadTexture(*this, image, GL_RGBA));
    const QImage marker = resource("LinkNeighborB2");
    m_marker = UploadTexture(*this, marker.rgbSwapped(), GL_RGBA);
    m_markerTaken = UploadTexture(*this, marker, GL_RGBA); // red and blue change places: blue turns orange
    m_initialised = true;
    for (const EarlyPicture& early : m_early)
        m_textures.add(*this, early.station, early.width, early.picture, m_program);
    m_early.clear();
    m_uploads.start(0);
}

void WalkView::resizeGL(int width, int height)
{
    if (m_visitor) m_visitor->resize({width, height});
}

void WalkView::addPicture(int station, int width, const QImage& picture)
{
    if (!m_initialised) return m_early.push_back({station, width, picture});
    makeCurrent();
    m_textures.add(*this, station, width, picture, m_program);
    doneCurrent();
    m_uploads.start(0);
}

void WalkView::keepPictures(const std::vector<PictureOrder>& orders, int destination)
{
    if (!m_initialised || !m_visitor) return;
    m_destination = destination;
    makeCurrent();
    m_textures.keep(*this, orders, {m_visitor->station(), m_from, destination});
    doneCurrent();
}

void WalkView::upload()
{
    if (!m_initialised || !m_visitor) return;
    const int first = m_destination >= 0 ? m_destination : m_visitor->station();
    const bool awaited = !isReady(first) && m_textures.isWaiting(first);
    if (isWalking() && !awaited) return m_uploads.stop(); // every moment belongs to the blend
    makeCurrent();
    const std::vector<int> completed =
        m_textures.upload(*this, first, awaited ? kUploadAll_ms : kUploadAtOnce_ms, awaited);
    doneCurrent();
    if (!m_textures.isBusy()) m_uploads.stop();
    for (const int station : completed) {
        if (station == m_visitor->station()) update();
        Q_EMIT ready(station);
    }
}

void WalkView::walkTo(int station)
{
    m_walkHeading = headingOfLink(*m_tour, m_visitor->station(), station);
    m_from = m_visitor->station();
    m_pressed = m_dragging = false;
    m_visitor->goTo(station);
    m_icons.show(&here().node);
    m_icons.selectPhoto(-1);
    m_taken.reset();
    m_walkClock.start();
    m_frames.start(kFrame_ms);
    Q_EMIT hovered(QString(), QPoint());
    changed();
}

void WalkView::zoom(int steps)
{
    if (!m_visitor) return;
    m_visitor->zoom(steps);
    changed();
}

void WalkView::changed()
{
    update();
    Q_EMIT turned();
}

void WalkView::warmUp()
{
    if (m_isWarm || m_program.program() == 0) return;
    m_isWarm = true;
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 1, 1);
    const Matrix4 anywhere = IdentityMatrix();
    m_program.draw(*this, anywhere);
    m_program.draw(*this, anywhere, 0.5f);
    UseOverlayBlending(*this);
    m_program.useForOverlays(*this);
    DrawOverlayQuad(*this, m_program.program(), QRect(0, 0, 1, 1), size(), m_marker);
    glDisable(GL_SCISSOR_TEST);
}

void WalkView::paintGL()
{
    warmUp();
    glClear(GL_COLOR_BUFFER_BIT);
    if (!m_visitor) return;
    drawSpheres();
    if (m_program.program() == 0) return;
    if (!isWalking()) {
        drawMarkers();
        drawHotspots();
    }
    if (isReady(m_visitor->station()))
        Q_EMIT painted(m_visitor->station(), m_textures.width(m_visitor->station()));
}

void WalkView::drawSpheres()
{
    const int station = m_visitor->station();
    WalkFrame frame;
    if (isWalking()) {
        const double elapsed_s = static_cast<double>(m_walkClock.nsecsElapsed()) * 1e-9;
        frame = walkFrame(elapsed_s);
        if (elapsed_s >= kWalk_s) {
            m_from = -1;
            m_frames.stop();
            m_uploads.start(0);
            Q_EMIT walked();
        }
    }
    const auto draw = [&](int each, double shift, float opacity) {
        PanoramaSphere* sphere = m_textures.sphere(each);
        if (!sphere) return;
        const double direction = m_tour->stations[static_cast<std::size_t>(each)].node.direction;
        const double azimuth = m_walkHeading.value_or(0.0) - direction;
        sphere->draw(*this,
                     spherePlacement(m_visitor->cameraFor(each), m_visitor->size(), azimuth,
                                     m_walkHeading ? shift : 0.0),
                     opacity);
    };
    draw(station, frame.reachedShift, 1.0f);
    if (isWalking()) draw(m_from, frame.leftBehindShift, frame.leftBehindOpacity);
}

void WalkView::drawMarkers()
{
    UseOverlayBlending(*this);
    const auto& neighbours = m_visitor->here().neighbours;
    const Matrix4 mvp = spherePlacement(m_visitor->camera(), m_visitor->size(), 0.0, 0.0);
    for (std::size_t i = neighbours.size(); i-- > 0;) { // the nearest last, on top
        const MarkerSpot spot = m_visitor->spot(neighbours[i]);
        if (spot.target.isNull()) continue;
        const GLuint texture = m_taken == static_cast<int>(i) ? m_markerTaken : m_marker;
        if (!spot.atEdge) {
            drawFloorQuad(*this, m_program.program(), mvp, floorMarker(neighbours[i].marker), texture);
            continue;
        }
        m_program.useForOverlays(*this);
        QRect flat(0, 0, 64, 24);
        flat.moveCenter(spot.target.center());
        DrawOverlayQuad(*this, m_program.program(), flat, size(), texture);
    }
}

void WalkView::drawHotspots()
{
    const auto quads = m_icons.place(m_visitor->camera(), m_visitor->size());
    m_program.useForOverlays(*this);
    UseOverlayBlending(*this);
    for (const IconQuad& quad : quads)
        DrawOverlayQuad(*this, m_program.program(), quad.rectangle, size(),
                        m_iconTextures[static_cast<std::size_t>(quad.image)], quad.span);
}

} // namespace lumiscope
