// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// An album as a web page: the page, what it is made of, and the pictures that it shows.

#pragma once

#include "companions/albumd/Albums.h"
#include "companions/albumd/CloudViews.h"
#include "companions/albumd/FileStore.h"
#include "companions/albumd/PanoramaCache.h"
#include "companions/albumd/RequestTarget.h"

#include <httplib.h>

namespace albumd {

/// /album/ID                                  the page
/// /album/ID/tour                             what the page has to know, as JSON
/// /album/ID/tile/PANORAMA/LEVEL/COLUMN/ROW   a tile as it stands in the panorama file
/// /album/ID/photo/NAME                       a photo or plan
/// /album/ID/cloud/NAME                       a cloud from above, as PNG
/// /album/ID/cloud/NAME/points                the thinned points of a cloud, see CloudTopView
/// /web/NAME                                  script and style
class PageRequests
{
public:
    PageRequests(FileStore& files, Albums& albums, CloudViews& views);

    /// False when there is nothing of that path.
    bool answer(const RequestTarget& target, const httplib::Request& request, httplib::Response& response);

private:
    bool page(const std::string& id, const httplib::Request& request, httplib::Response& response);
    bool tour(const std::string& id, httplib::Response& response);
    bool tile(const std::vector<std::string>& parts, httplib::Response& response);
    bool photo(const std::string& id, const std::string& name, httplib::Response& response);

    bool cloud(const std::vector<std::string>& parts, httplib::Response& response);

    FileStore& m_files;
    Albums& m_albums;
    CloudViews& m_views;
    PanoramaCache m_panoramas;
};

} // namespace albumd
