// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The requests that a program sends while it uploads a tour.

#pragma once

#include "companions/albumd/Accounts.h"
#include "companions/albumd/Albums.h"
#include "companions/albumd/CloudViews.h"
#include "companions/albumd/FileStore.h"
#include "companions/albumd/RequestTarget.h"

#include <httplib.h>

#include <string>
#include <string_view>

namespace albumd {

class UploadRequests
{
public:
    UploadRequests(Accounts& accounts, FileStore& files, Albums& albums, CloudViews& views, Clock clock);

    void login(const RequestTarget& target, httplib::Response& response);
    void listPanoramas(const RequestTarget& target, httplib::Response& response);

    /// Bytes that a request to this path may bring along; 0 for a path that takes none.
    static std::int64_t mostBytes(std::string_view path);

    /// A POST request to one of the paths that `mostBytes` knows.
    void post(const httplib::Request& request, httplib::Response& response,
              const httplib::ContentReader& content);

private:
    struct Call;

    void uploadPanorama(Call& call);
    void createAlbum(Call& call);
    void setLocation(Call& call);
    void setLinkTags(Call& call);
    void addLink(Call& call);
    void uploadModel(Call& call);
    void uploadPhoto(Call& call);

    bool receiveFile(Call& call, IncomingFile& file, FileStore::Room& room);
    bool receiveText(Call& call, std::string* text);
    void keep(Call& call, FileKind kind, const std::string& name, IncomingFile& file);
    bool ownsPanorama(const Call& call, const std::string& id);
    bool ofOwnAlbum(Call& call, const std::string& pano);

    Accounts& m_accounts;
    FileStore& m_files;
    Albums& m_albums;
    CloudViews& m_views;
    Clock m_clock;
};

} // namespace albumd
