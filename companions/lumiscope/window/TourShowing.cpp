// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the window does with a tour: takes what the threads bring, and follows the visitor.

#include "companions/lumiscope/pictures/LoadPlan.h"
#include "companions/lumiscope/window/ContentPanel.h"
#include "companions/lumiscope/window/MapPanel.h"
#include "companions/lumiscope/window/ViewerWindow.h"
#include "companions/lumiscope/window/WalkView.h"
#include "project/PhotoPicture.h"

#include <QFileInfo>
#include <QLabel>
#include <QPointer>
#include <QThreadPool>
#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace lumiscope {

void ViewerWindow::open(const QString& path)
{
    m_tourName = QFileInfo(path).completeBaseName();
    setWindowTitle(tr("%1 - Lumiscope").arg(m_tourName));
    if (!m_scratch.isValid())
        return showMessage(tr("No temporary folder can be made: %1").arg(m_scratch.error()));
    m_patience.start();
    m_loader = std::make_unique<TourLoader>(path, m_scratch.path(), m_application);
    connectLoading();
    // The entry's picture is begun at once, whatever this thread is doing.
    PanoramaLoader* const pictures = m_pictures.get();
    connect(
        m_loader.get(), &TourLoader::entryReady, pictures,
        [pictures](int station, const QString& panorama) {
            pictures->want({{station, kCoarseWidth, panorama}});
        },
        Qt::DirectConnection);
    m_loader->pauseAfterEntry();
    m_loader->start();
}

void ViewerWindow::connectLoading()
{
    connect(m_loader.get(), &TourLoader::described, this, &ViewerWindow::showTour);
    connect(m_loader.get(), &TourLoader::panoramaReady, this, &ViewerWindow::takePanorama);
    connect(m_loader.get(), &TourLoader::photoReady, this,
            [this](int station, int photo, const QString& path) {
                m_tour.stations[static_cast<std::size_t>(station)].node.photos[photo].photo_path = path;
                if (m_awaitedPhoto == std::make_pair(station, photo)) showPhoto(path);
            });
    connect(m_loader.get(), &TourLoader::mapReady, this, [this](const MapPicture& map) {
        m_maps.insert(map.plan, map);
        showSheet();
    });
    connect(m_loader.get(), &TourLoader::failed, this, &ViewerWindow::fail);
    connect(m_loader.get(), &QThread::finished, this, &ViewerWindow::endOfTour);
}

void ViewerWindow::showMessage(const QString& message)
{
    m_message->setText(message);
    m_message->show();
    m_view->hide();
    m_notice->hide();
    m_place->hide();
    m_map->hide();
    m_mapButton->hide();
    for (QToolButton* each : m_buttons)
        each->hide();
}

void ViewerWindow::showTour(const WalkTour& tour)
{
    m_tour = tour;
    m_view->showTour(&m_tour);
    showSheet();
}

void ViewerWindow::showControls()
{
    if (m_mapButton->isVisible()) return;
    for (QToolButton* each : m_buttons)
        each->show();
    m_mapButton->show();
    m_map->setVisible(!m_folded);
}

void ViewerWindow::takePanorama(int station, const QString& path, const QString& name)
{
    PanoNode& node = m_tour.stations[static_cast<std::size_t>(station)].node;
    node.file_path = path;
    node.base_name = name;
    orderPictures();
    showPlace();
}

void ViewerWindow::fail(const QString& message)
{
    // What is there already can be walked through all the same.
    const bool nothingThere = std::all_of(m_tour.stations.begin(), m_tour.stations.end(),
                                          [](const auto& each) { return each.node.file_path.isEmpty(); });
    if (nothingThere) return showMessage(message);
    m_place->setText(message);
    layOut();
}

void ViewerWindow::endOfTour()
{
    m_complete = true;
    if (m_tour.stations.empty()) return;
    if (m_awaitedPhoto.first >= 0) showPhoto(QString()); // it is not in the tour
    if (m_destination >= 0 && cannotShow(m_destination)) arrive(m_destination);
    orderPictures();
    showPlace();
}

bool ViewerWindow::cannotShow(int station) const
{
    const bool missing =
        m_complete && m_tour.stations[static_cast<std::size_t>(station)].node.file_path.isEmpty();
    return missing || m_broken.count({station, kCoarseWidth}) > 0;
}

void ViewerWindow::takePicture(int station, int width, const QImage& picture)
{
    m_pictures->taken(station, width);
    if (m_tour.stations.empty()) return;
    if (!picture.isNull()) return m_view->addPicture(station, width, picture);
    m_broken.insert({station, width});
    m_loader->goOn();
    if (cannotShow(station)) arrive(station);
    orderPictures();
    showPlace();
}

void ViewerWindow::goTo(int station)
{
    if (station == m_view->visitor()->station()) {
        m_destination = -1;
        return showPlace();
    }
    m_destination = station;
    if (m_view->isReady(station) || cannotShow(station)) return arrive(station);
    m_patience.start();
    orderPictures();
    showPlace();
}

void ViewerWindow::arrive(int station)
{
    if (station == m_destination) {
        m_destination = -1;
        m_view->walkTo(station);
        showSheet();
    }
    showPlace();
}

void ViewerWindow::seeFrame(int station, int width)
{
    if (m_seen == std::make_pair(station, width)) return;
    m_seen = {station, width};
    m_loader->goOn();
    showControls(); // not before the first frame, which they would only delay
    showPlace();
    orderPictures();
}

void ViewerWindow::orderPictures()
{
    if (m_view->isWalking()) return m_pictures->want({});
    const LoadState state{m_view->visitor()->station(), m_destination, m_view->takesSharpPictures()};
    std::vector<PictureOrder> orders = loadPlan(m_tour, state);
    m_view->keepPictures(orders, m_destination);
    const auto done = [this](const PictureOrder& order) {
        return m_view->hasPicture(order.station, order.width) ||
               m_view->hasPicture(order.station, kSharpWidth) ||
               m_broken.count({order.station, order.width}) > 0;
    };
    orders.erase(std::remove_if(orders.begin(), orders.end(), done), orders.end());
    const int awaited = m_destination >= 0 ? m_destination : state.station;
    if (!orders.empty() && orders.front().station == awaited && !m_view->isReady(awaited)) orders.resize(1);
    m_pictures->want(std::move(orders));
}

void ViewerWindow::showPlace()
{
    const int station = m_view->visitor()->station();
    const QString name = m_tour.stations[static_cast<std::size_t>(station)].node.base_name;
    m_place->setText(name);
    m_place->setVisible(!name.isEmpty() && m_mapButton->isVisible());
    const bool loading = m_destination >= 0 || (!m_view->isReady(station) && !cannotShow(station));
    const bool broken = !loading && cannotShow(station) && !m_view->isReady(station);
    if (broken) showControls();
    if (broken) m_notice->setText(tr("This panorama cannot be shown. Its markers and the map lead on."));
    if (loading) m_notice->setText(tr("Loading..."));
    m_notice->setVisible((loading && !m_patience.isActive()) || broken);
    layOut();
}

void ViewerWindow::showSheet()
{
    const int station = m_view->visitor()->station();
    const QString plan = m_tour.stations[static_cast<std::size_t>(station)].node.plan_src;
    const auto map = m_maps.constFind(plan);
    const bool hasPlan = map != m_maps.constEnd() && !map->image.isNull();
    m_map->showSheet(&m_tour, hasPlan ? mapSheet(m_tour, *map) : stationSheet(m_tour));
    turnMap();
}

void ViewerWindow::turnMap()
{
    const Visitor& visitor = *m_view->visitor();
    const double larger = std::max(visitor.size().width, visitor.size().height);
    const double half = std::atan(visitor.size().width / (larger * visitor.look().zoom));
    m_map->setVisitor(visitor.station(), visitor.look().heading, 2.0 * half);
}

void ViewerWindow::openPhoto(int photo)
{
    const PhotoHotspot& hotspot = m_view->visitor()->here().node.photos[photo];
    m_photo->open(hotspot.caption);
    hover(QString(), QPoint());
    ++m_photoTicket;
    const bool unpacked = hotspot.photo_path.contains(QLatin1Char('/'));
    if (unpacked || m_complete) return showPhoto(hotspot.photo_path);
    m_awaitedPhoto = {m_view->visitor()->station(), photo};
}

void ViewerWindow::showPhoto(const QString& path)
{
    m_awaitedPhoto = {-1, -1};
    const quint64 ticket = m_photoTicket;
    const QPointer<ViewerWindow> window(this);
    QThreadPool::globalInstance()->start([window, ticket, path] {
        const QImage picture = loadPhoto(path);
        QMetaObject::invokeMethod(
            window.data(),
            [window, ticket, picture] {
                if (ticket == window->m_photoTicket) window->m_photo->setPhoto(picture);
            },
            Qt::QueuedConnection);
    });
}

void ViewerWindow::openInfo(int info)
{
    const InfoHotspot& hotspot = m_view->visitor()->here().node.infos[info];
    hover(QString(), QPoint());
    m_text->open(hotspot.caption, hotspot.content);
}

} // namespace lumiscope
