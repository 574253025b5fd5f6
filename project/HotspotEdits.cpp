// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/HotspotEdits.h"

namespace hotspots {

namespace {

template <class Hotspot>
void addTo(QList<Hotspot>& list, double azimuth, double polar)
{
    Hotspot hotspot;
    hotspot.sphere_x = azimuth;
    hotspot.sphere_y = polar;
    list.append(hotspot);
}

template <class Hotspot>
bool has(const QList<Hotspot>& list, int row)
{
    return row >= 0 && row < list.size();
}

template <class Hotspot>
bool removeFrom(QList<Hotspot>& list, int row)
{
    if (!has(list, row)) return false;
    list.removeAt(row);
    return true;
}

bool store(QString& field, const QString& text)
{
    if (field == text) return false;
    field = text;
    return true;
}

} // namespace

void addPhoto(PanoNode& panorama, double azimuth, double polar)
{
    addTo(panorama.photos, azimuth, polar);
}

void addInfo(PanoNode& panorama, double azimuth, double polar)
{
    addTo(panorama.infos, azimuth, polar);
}

PhotoHotspot* photoAt(PanoNode* panorama, int row)
{
    return panorama && has(panorama->photos, row) ? &panorama->photos[row] : nullptr;
}

InfoHotspot* infoAt(PanoNode* panorama, int row)
{
    return panorama && has(panorama->infos, row) ? &panorama->infos[row] : nullptr;
}

bool removePhoto(PanoNode& panorama, int row)
{
    return removeFrom(panorama.photos, row);
}

bool removeInfo(PanoNode& panorama, int row)
{
    return removeFrom(panorama.infos, row);
}

bool setCaption(PhotoHotspot& photo, const QString& caption)
{
    return store(photo.caption, caption);
}

bool setCaption(InfoHotspot& info, const QString& caption)
{
    return store(info.caption, caption);
}

bool setContent(InfoHotspot& info, const QString& content)
{
    return store(info.content, content);
}

QString sizeCell(const PhotoHotspot& photo)
{
    return QStringLiteral("%1x%2").arg(photo.photo_width).arg(photo.photo_height);
}

QString lengthCell(const InfoHotspot& info)
{
    return QString::number(info.content.size());
}

} // namespace hotspots
