// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/pictures/PanoramaLoader.h"

#include "linking/pictures/PanoramaPicture.h"

namespace lumiscope {

namespace {

const QColor kMissingTile(96, 96, 100);

QImage assemble(const PictureOrder& order)
{
    QImage picture(order.width, order.width / 2, QImage::Format_RGB888);
    if (picture.isNull()) return picture; // no memory for it
    picture.fill(kMissingTile);
    return assemblePanorama(order.path, &picture) ? picture : QImage();
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
    m_orders = std::move(orders);
    m_changed.wakeAll();
}

bool PanoramaLoader::next(PictureOrder* order)
{
    const QMutexLocker lock(&m_mutex);
    while (!m_ending && m_orders.empty())
        m_changed.wait(&m_mutex);
    if (m_ending) return false;
    *order = m_orders.front();
    m_orders.erase(m_orders.begin());
    return true;
}

void PanoramaLoader::run()
{
    PictureOrder order;
    while (next(&order))
        Q_EMIT loaded(order.station, order.width, assemble(order));
}

} // namespace lumiscope
