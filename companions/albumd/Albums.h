// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Albums: which panoramas a tour has, where they stand, what hangs on them, how they are linked.

#pragma once

#include "companions/albumd/Database.h"
#include "companions/albumd/Fragments.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace albumd {

struct AlbumPanorama
{
    std::string id;
    std::optional<Location> location;
    std::vector<Hotspot> hotspots;
};

struct Album
{
    std::string id; ///< 14 letters; who knows it may look
    std::int64_t user = 0;
    std::string name;
    std::string entry;                                   ///< panorama shown first
    double direction = 0, elevation = 0, view_angle = 0; ///< radians: how it is shown first
    std::int64_t made = 0;                               ///< seconds since 1970
    std::vector<AlbumPanorama> panoramas;
    std::vector<Link> links;
};

/// All calls that change something return false when the database fails, and leave it as it was.
class Albums
{
public:
    explicit Albums(Database& database)
        : m_database(database)
    {}

    /// @param album  without an id, which it gets; panoramas by their ids alone
    [[nodiscard]] bool create(Album* album);

    /// True for an album of this account that holds the panorama.
    bool holds(std::int64_t user, std::string_view album, std::string_view pano);

    [[nodiscard]] bool setLocation(std::string_view album, std::string_view pano, const Location& location);
    [[nodiscard]] bool setHotspots(std::string_view album, std::string_view pano,
                                   const std::vector<Hotspot>& hotspots);
    [[nodiscard]] bool addLink(std::string_view album, const Link& link);
    [[nodiscard]] bool remove(std::string_view album);

    std::optional<Album> find(std::string_view album);

    /// Without what belongs to them, the newest first.
    /// @param user  all accounts' when 0
    std::vector<Album> list(std::int64_t user);

    /// Whose album it is, when it shows this panorama, or this photo or plan; nullopt otherwise.
    std::optional<std::int64_t> ownerOfPanorama(std::string_view album, std::string_view pano);
    std::optional<std::int64_t> ownerOfPhoto(std::string_view album, std::string_view photo);

private:
    Database& m_database;
};

} // namespace albumd
