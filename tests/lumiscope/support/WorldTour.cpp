// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/lumiscope/support/WorldTour.h"

#include "project/PanoIdentity.h"
#include "project/SaveTour.h"
#include "tests/support/JpegTiles.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QtEndian>

#include <cmath>
#include <cstring>
#include <map>

namespace {

constexpr double kPi = 3.14159265358979323846;

int wrapped(int sector)
{
    return (sector % kSectors + kSectors) % kSectors;
}

pnotest::Colour colourOf(int sector, int band)
{
    // Neighbours differ much, so that a shift of a degree shows.
    const bool odd = sector % 2 != 0;
    return {static_cast<std::uint8_t>(sector * 15), static_cast<std::uint8_t>(odd ? 200 : 60),
            static_cast<std::uint8_t>(40 + band * 55)};
}

const pnotest::Bytes& tile(int sector, int band)
{
    static std::map<std::pair<int, int>, pnotest::Bytes> made;
    pnotest::Bytes& bytes = made[{sector, band}];
    if (bytes.empty()) bytes = pnotest::solidJpeg(colourOf(sector, band));
    return bytes;
}

/// Only the levels that whole pictures and thumbnails are made from.
pnotest::TileSource worldTiles(int turnedSectors)
{
    return [turnedSectors](int level, int column, int row) -> pnotest::Bytes {
        const int columns = level == 10 ? 32 : level == 8 ? 16 : level == 0 ? 1 : 0;
        if (columns == 0) return {};
        if (columns == 1) return tile(0, 0);
        // Column 0 is the rightmost: its azimuths begin at -pi.
        const int azimuthSector = column * kSectors / columns - kSectors / 2;
        return tile(wrapped(azimuthSector + turnedSectors), row * 2 * kBands / columns);
    };
}

QByteArray panoramaFile(const char* identity, int sectors)
{
    pnotest::PnoOptions options;
    options.identity = identity;
    options.tiles = worldTiles(sectors);
    const pnotest::Bytes bytes = pnotest::panorama(options);
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size())};
}

} // namespace

QColor worldColour(double heading, double polar)
{
    const int sector = wrapped(static_cast<int>(std::floor(heading / kSector)));
    const auto colour = colourOf(sector, static_cast<int>(polar / kPi * kBands));
    return {colour.red, colour.green, colour.blue};
}

WorldTour::WorldTour()
    : m_folder(QDir::tempPath() + QStringLiteral(u"/漫游 été XXXXXX"))
{}

QString WorldTour::write(const QString& name, const QByteArray& bytes) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write a test file");
    return file.fileName();
}

PanoNode& WorldTour::add(const char* identity, const QString& name, double x, double y,
                         const QByteArray& bytes)
{
    auto node = std::make_unique<PanoNode>();
    node->id = panoIdFromName(identity);
    std::strncpy(node->parameters.identity, identity, sizeof node->parameters.identity - 1);
    node->parameters.max_zoom_level = 10;
    node->parameters.mosaic_pixel_size = 256;
    node->base_name = name;
    node->file_path = write(name + QStringLiteral(".pno"), bytes);
    node->position_x = x;
    node->position_y = y;
    project.panoramas.push_back(std::move(node));
    return *project.panoramas.back();
}

PanoNode& WorldTour::addStation(const char* identity, const QString& name, int sectors, double x, double y)
{
    PanoNode& node = add(identity, name, x, y, panoramaFile(identity, sectors));
    node.direction = sectors * kSector;
    return node;
}

PanoNode& WorldTour::addBrokenStation(const char* identity, const QString& name, double x, double y)
{
    return add(identity, name, x, y, "no panorama");
}

void WorldTour::link(int first, int second)
{
    const PanoNode& a = *project.panoramas[static_cast<std::size_t>(first)];
    const PanoNode& b = *project.panoramas[static_cast<std::size_t>(second)];
    auto link = std::make_unique<PanoLink>();
    link->id_0 = static_cast<qint64>(a.id);
    link->id_1 = static_cast<qint64>(b.id);
    std::memcpy(link->name_0, a.parameters.identity, sizeof link->name_0);
    std::memcpy(link->name_1, b.parameters.identity, sizeof link->name_1);
    const double dx = b.position_x - a.position_x, dy = b.position_y - a.position_y;
    const double a01 = std::atan2(dy, dx) - a.direction;
    const double a10 = std::atan2(-dy, -dx) - b.direction;
    link->rot_0 = std::remainder(-a01, 2 * kPi);
    link->rot_1 = std::remainder(-a10 - kPi, 2 * kPi);
    link->spacing = std::hypot(dx, dy);
    link->icon_y0 = link->icon_y1 = kPi - std::atan2(link->spacing, kHeight_m);
    project.links.push_back(std::move(link));
}

void WorldTour::addPhoto(int station, double azimuth, double polar, const QString& caption,
                         const QColor& colour)
{
    PhotoHotspot photo;
    photo.sphere_x = azimuth;
    photo.sphere_y = polar;
    photo.caption = caption;
    auto& photos = project.panoramas[static_cast<std::size_t>(station)]->photos;
    photo.photo_path = path(QStringLiteral("photo %1-%2.png").arg(station).arg(photos.size()));
    QImage picture(1600, 1200, QImage::Format_RGB32);
    picture.fill(colour);
    if (!picture.save(photo.photo_path)) qFatal("cannot write a test photo");
    photos.append(photo);
}

void WorldTour::addInfo(int station, double azimuth, double polar, const QString& caption,
                        const QString& content)
{
    InfoHotspot info;
    info.sphere_x = azimuth;
    info.sphere_y = polar;
    info.caption = caption;
    info.content = content;
    project.panoramas[static_cast<std::size_t>(station)]->infos.append(info);
}

void WorldTour::addPlan(QSize size)
{
    QImage plan(size, QImage::Format_RGB32);
    plan.fill(Qt::white);
    const QString file = path(QStringLiteral("A-00000000.png"));
    if (!plan.save(file)) qFatal("cannot write a test plan");
    for (const auto& node : project.panoramas) {
        node->plan_src = file;
        node->plan_center_x = static_cast<qint32>(size.width() / 2 + std::lround(node->position_x * 50));
        node->plan_center_y = static_cast<qint32>(size.height() / 2 - std::lround(node->position_y * 50));
    }
}

QString WorldTour::save(int entry)
{
    const QString file = path(QStringLiteral(u"一次 tour.roa"));
    if (!saveTour(project, entry, file)) qFatal("cannot save a test tour");
    return file;
}

QByteArray withDescription(const QByteArray& tour, const QByteArray& from, const QByteArray& to)
{
    constexpr int kLengthAt = 2 + 2 + 256;
    constexpr int kDataAt = kLengthAt + 4;
    const int length = qFromLittleEndian<qint32>(tour.constData() + kLengthAt);
    QByteArray xml = tour.mid(kDataAt, length);
    if (!xml.contains(from)) qFatal("the description has no such text");
    xml.replace(from, to);
    char newLength[4];
    qToLittleEndian<qint32>(xml.size(), newLength);
    return tour.left(kLengthAt) + QByteArray(newLength, 4) + xml + tour.mid(kDataAt + length);
}
