// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/Albums.h"

#include "companions/albumd/RandomName.h"

namespace albumd {
namespace {

Album readHead(const Query& query)
{
    Album album;
    album.id = query.text(0);
    album.user = query.integer(1);
    album.name = query.text(2);
    album.entry = query.text(3);
    album.direction = query.real(4);
    album.elevation = query.real(5);
    album.view_angle = query.real(6);
    album.made = query.integer(7);
    return album;
}

void readPanoramas(Database& database, Album& album)
{
    Query query(database,
                "SELECT pano, located, x, y, z, vertex_x, vertex_y, direction, plan_x, plan_y, plan "
                "FROM album_panoramas WHERE album = ? ORDER BY place");
    query.bind(album.id);
    while (query.row()) {
        AlbumPanorama& added = album.panoramas.emplace_back();
        added.id = query.text(0);
        if (query.integer(1) != 0)
            added.location =
                Location{query.real(2), query.real(3),    query.real(4),    query.real(5), query.real(6),
                         query.real(7), query.integer(8), query.integer(9), query.text(10)};
    }
}

void readHotspots(Database& database, const std::string& album, AlbumPanorama& panorama)
{
    Query query(database, "SELECT is_photo, x, y, caption, content FROM hotspots "
                          "WHERE album = ? AND pano = ? ORDER BY place");
    query.bind(album).bind(panorama.id);
    while (query.row())
        panorama.hotspots.push_back(
            {query.integer(0) != 0, query.real(1), query.real(2), query.text(3), query.text(4)});
}

void readLinks(Database& database, Album& album)
{
    Query query(database,
                "SELECT pano_0, pano_1, rot_0, rot_1, tilt_x0, tilt_x1, tilt_y0, icon_y0, icon_y1, spacing, "
                "mode FROM links WHERE album = ? ORDER BY rowid");
    query.bind(album.id);
    while (query.row())
        album.links.push_back({query.text(0), query.text(1), query.real(2), query.real(3), query.real(4),
                               query.real(5), query.real(6), query.real(7), query.real(8), query.real(9),
                               query.integer(10)});
}

} // namespace

bool Albums::create(Album* album)
{
    const std::string id = randomLetters(14);
    const std::lock_guard<std::mutex> guard(m_database.lock);
    Transaction transaction(m_database);
    bool good =
        Query(m_database, "INSERT INTO albums(id, user, name, entry, direction, elevation, view_angle, made) "
                          "VALUES(?, ?, ?, ?, ?, ?, ?, ?)")
            .bind(id)
            .bind(album->user)
            .bind(album->name)
            .bind(album->entry)
            .bind(album->direction)
            .bind(album->elevation)
            .bind(album->view_angle)
            .bind(album->made)
            .run();
    std::int64_t place = 0;
    for (const AlbumPanorama& panorama : album->panoramas)
        good = good && Query(m_database, "INSERT INTO album_panoramas(album, place, pano) VALUES(?, ?, ?)")
                           .bind(id)
                           .bind(place++)
                           .bind(panorama.id)
                           .run();
    if (!good || !transaction.commit()) return false;
    album->id = id;
    return true;
}

bool Albums::holds(std::int64_t user, std::string_view album, std::string_view pano)
{
    const auto owner = ownerOfPanorama(album, pano);
    return owner && *owner == user;
}

bool Albums::setLocation(std::string_view album, std::string_view pano, const Location& location)
{
    const std::lock_guard<std::mutex> guard(m_database.lock);
    return Query(m_database,
                 "UPDATE album_panoramas SET located = 1, x = ?, y = ?, z = ?, vertex_x = ?, vertex_y = ?, "
                 "direction = ?, plan_x = ?, plan_y = ?, plan = ? WHERE album = ? AND pano = ?")
        .bind(location.x)
        .bind(location.y)
        .bind(location.z)
        .bind(location.vertex_x)
        .bind(location.vertex_y)
        .bind(location.direction)
        .bind(location.plan_x)
        .bind(location.plan_y)
        .bind(location.plan)
        .bind(album)
        .bind(pano)
        .run();
}

bool Albums::setHotspots(std::string_view album, std::string_view pano, const std::vector<Hotspot>& hotspots)
{
    const std::lock_guard<std::mutex> guard(m_database.lock);
    Transaction transaction(m_database);
    bool good =
        Query(m_database, "DELETE FROM hotspots WHERE album = ? AND pano = ?").bind(album).bind(pano).run();
    std::int64_t place = 0;
    for (const Hotspot& hotspot : hotspots)
        good = good &&
               Query(m_database, "INSERT INTO hotspots(album, pano, place, is_photo, x, y, caption, content) "
                                 "VALUES(?, ?, ?, ?, ?, ?, ?, ?)")
                   .bind(album)
                   .bind(pano)
                   .bind(place++)
                   .bind(std::int64_t(hotspot.isPhoto))
                   .bind(hotspot.x)
                   .bind(hotspot.y)
                   .bind(hotspot.caption)
                   .bind(hotspot.content)
                   .run();
    return good && transaction.commit();
}

bool Albums::addLink(std::string_view album, const Link& link)
{
    const std::lock_guard<std::mutex> guard(m_database.lock);
    return Query(m_database,
                 "INSERT OR REPLACE INTO links(album, pano_0, pano_1, rot_0, rot_1, tilt_x0, tilt_x1, "
                 "tilt_y0, icon_y0, icon_y1, spacing, mode) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
        .bind(album)
        .bind(link.pano_0)
        .bind(link.pano_1)
        .bind(link.rot_0)
        .bind(link.rot_1)
        .bind(link.tilt_x0)
        .bind(link.tilt_x1)
        .bind(link.tilt_y0)
        .bind(link.icon_y0)
        .bind(link.icon_y1)
        .bind(link.spacing)
        .bind(link.mode)
        .run();
}

bool Albums::remove(std::string_view album)
{
    const std::lock_guard<std::mutex> guard(m_database.lock);
    return Query(m_database, "DELETE FROM albums WHERE id = ?").bind(album).run();
}

std::optional<Album> Albums::find(std::string_view album)
{
    const std::lock_guard<std::mutex> guard(m_database.lock);
    Query query(m_database,
                "SELECT id, user, name, entry, direction, elevation, view_angle, made FROM albums "
                "WHERE id = ?");
    if (!query.bind(album).row()) return std::nullopt;
    Album found = readHead(query);
    readPanoramas(m_database, found);
    for (AlbumPanorama& panorama : found.panoramas)
        readHotspots(m_database, found.id, panorama);
    readLinks(m_database, found);
    return found;
}

std::vector<Album> Albums::list(std::int64_t user)
{
    const std::lock_guard<std::mutex> guard(m_database.lock);
    std::vector<Album> all;
    Query query(m_database,
                "SELECT id, user, name, entry, direction, elevation, view_angle, made FROM albums "
                "WHERE user = ?1 OR ?1 = 0 ORDER BY made DESC, id");
    query.bind(user);
    while (query.row())
        all.push_back(readHead(query));
    return all;
}

std::optional<std::int64_t> Albums::ownerOfPanorama(std::string_view album, std::string_view pano)
{
    const std::lock_guard<std::mutex> guard(m_database.lock);
    Query query(m_database,
                "SELECT user FROM albums JOIN album_panoramas ON album = id WHERE id = ? AND pano = ?");
    if (!query.bind(album).bind(pano).row()) return std::nullopt;
    return query.integer(0);
}

std::optional<std::int64_t> Albums::ownerOfPhoto(std::string_view album, std::string_view photo)
{
    const std::lock_guard<std::mutex> guard(m_database.lock);
    Query query(m_database,
                "SELECT user FROM albums WHERE id = ?1 AND (EXISTS(SELECT 1 FROM hotspots WHERE album = ?1 "
                "AND is_photo = 1 AND content = ?2) OR EXISTS(SELECT 1 FROM album_panoramas WHERE "
                "album = ?1 AND plan = ?2))");
    if (photo.empty() || !query.bind(album).bind(photo).row()) return std::nullopt;
    return query.integer(0);
}

} // namespace albumd
