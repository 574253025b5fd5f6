// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/pictures/PanoramaTextures.h"

#include <QElapsedTimer>
#include <QOpenGLFunctions>

#include <algorithm>

namespace lumiscope {

namespace {

constexpr int kPixelsAtOnce = 1 << 20; ///< a few milliseconds even without a graphics card

} // namespace

void PanoramaTextures::add(QOpenGLFunctions& gl, int station, int width, const QImage& picture,
                           const PanoramaSphere& like)
{
    if (picture.isNull() || has(station, width)) return;
    m_slots.emplace_back();
    Slot& slot = m_slots.back();
    slot.station = station;
    slot.width = width;
    slot.waiting = picture;
    slot.sphere.initialiseLike(gl, like, QSize(0, 0));
}

bool PanoramaTextures::uploadStep(QOpenGLFunctions& gl, Slot& slot)
{
    const int height = slot.waiting.height();
    const int count = std::min(std::max(1, kPixelsAtOnce / slot.waiting.width()), height - slot.rows);
    slot.sphere.setRows(gl, slot.waiting, slot.rows, count);
    slot.rows += count;
    if (slot.rows < height) return false;
    slot.waiting = QImage();
    return true;
}

std::vector<int> PanoramaTextures::upload(QOpenGLFunctions& gl, int first, double budget_ms, bool awaited)
{
    QElapsedTimer timer;
    timer.start();
    std::vector<int> completed;
    while (isBusy() && static_cast<double>(timer.nsecsElapsed()) < budget_ms * 1e6) {
        auto slot = std::find_if(m_slots.begin(), m_slots.end(), [&](const Slot& each) {
            return !each.isComplete() && each.station == first;
        });
        if (slot == m_slots.end())
            slot = std::find_if(m_slots.begin(), m_slots.end(),
                                [](const Slot& each) { return !each.isComplete(); });
        if (!uploadStep(gl, *slot)) continue;
        completed.push_back(slot->station);
        if (awaited && slot->station == first) break;
    }
    return completed;
}

bool PanoramaTextures::isBusy() const
{
    return std::any_of(m_slots.begin(), m_slots.end(), [](const Slot& slot) { return !slot.isComplete(); });
}

bool PanoramaTextures::isWaiting(int station) const
{
    return std::any_of(m_slots.begin(), m_slots.end(),
                       [&](const Slot& slot) { return slot.station == station && !slot.isComplete(); });
}

bool PanoramaTextures::has(int station, int width) const
{
    return std::any_of(m_slots.begin(), m_slots.end(),
                       [&](const Slot& slot) { return slot.station == station && slot.width == width; });
}

const PanoramaTextures::Slot* PanoramaTextures::best(int station) const
{
    const Slot* found = nullptr;
    for (const Slot& slot : m_slots)
        if (slot.station == station && slot.isComplete() && (!found || slot.width > found->width))
            found = &slot;
    return found;
}

PanoramaSphere* PanoramaTextures::sphere(int station)
{
    return const_cast<PanoramaSphere*>(best(station) ? &best(station)->sphere : nullptr);
}

int PanoramaTextures::width(int station) const
{
    const Slot* slot = best(station);
    return slot ? slot->width : 0;
}

void PanoramaTextures::keep(QOpenGLFunctions& gl, const std::vector<PictureOrder>& orders,
                            const std::vector<int>& stations)
{
    for (auto slot = m_slots.begin(); slot != m_slots.end();) {
        const bool ordered = std::any_of(orders.begin(), orders.end(), [&](const PictureOrder& order) {
            return order.station == slot->station && order.width == slot->width;
        });
        const bool seen = std::find(stations.begin(), stations.end(), slot->station) != stations.end();
        const bool outdone = slot->isComplete() && width(slot->station) > slot->width;
        if ((ordered || seen) && !outdone) {
            ++slot;
            continue;
        }
        slot->sphere.release(gl);
        slot = m_slots.erase(slot);
    }
}

void PanoramaTextures::release(QOpenGLFunctions& gl)
{
    for (Slot& slot : m_slots)
        slot.sphere.release(gl);
    m_slots.clear();
}

} // namespace lumiscope
