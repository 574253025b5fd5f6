// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/pictures/PanoramaLoader.h"

#include "linking/pictures/PanoramaPicture.h"

#include <algorithm>

namespace lumiscope {

namespace {

const QColor kMissingTile(96, 96, 100);

QImage assemble(const PictureOrder& order)
{
    QImage picture(order.width, order.width / 2, QImage::Format_RGB888);
    if (picture.isNull()) return picture; // no memory for it
    return assemblePanorama(order.path, &picture, kMissingTile) ? picture : QImage();
}

} // namespace

PanoramaLoader::PanoramaLoader(QObject* parent)
    : QThread(parent)
{}

PanoramaLoader::~PanoramaLoader()
{
    {
        const QMutexLocker lock(&m_mutex);
        m_ending = true;
        m_changed.wakeAll();
    }
    wait();
}

void PanoramaLoader::want(std::vector<PictureOrder> orders)
{
    const QMutexLocker lock(&m_mutex);
    const auto underway = [this](const PictureOrder& order) {
        return std::find(m_underway.begin(), m_underway.end(), order) != m_underway.end();
    };
    orders.erase(std::remove_if(orders.begin(), orders.end(), underway), orders.end());
    m_orders = std::move(orders);
    m_changed.wakeAll();
}

void PanoramaLoader::taken(int station, int width)
{
    const QMutexLocker lock(&m_mutex);
    const PictureOrder order{station, width, QString()};
    m_underway.erase(std::remove(m_underway.begin(), m_underway.end(), order), m_underway.end());
}

bool PanoramaLoader::next(PictureOrder* order)
{
    const QMutexLocker lock(&m_mutex);
    while (!m_ending && m_orders.empty())
        m_changed.wait(&m_mutex);
    if (m_ending) return false;
    *order = m_orders.front();
    m_orders.erase(m_orders.begin());
    m_underway.push_back(*order);
    return true;
}

void PanoramaLoader::run()
{
    PictureOrder order;
    while (next(&order))
        Q_EMIT loaded(order.station, order.width, assemble(order));
}

} // namespace lumiscope
