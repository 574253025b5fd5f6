// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The album service: which request goes where, and what is turned away at the door.

#pragma once

#include "companions/albumd/BoundedServer.h"
#include "companions/albumd/PageRequests.h"
#include "companions/albumd/UploadRequests.h"

#include <string>

namespace albumd {

struct ServiceOptions
{
    std::string folder; ///< data folder; must be there
    std::int64_t tokenLife_s = 12 * 60 * 60;
    Patience patience;
    Clock clock = systemClock;
};

/// Everything that one process serves.
class Service
{
public:
    explicit Service(const ServiceOptions& options);

    /// Opens the data folder, for this process alone.
    [[nodiscard]] bool open(std::string* error);

    BoundedServer& server() { return m_server; }
    Accounts& accounts() { return m_accounts; }
    Albums& albums() { return m_albums; }

private:
    httplib::Server::HandlerResponse route(const httplib::Request& request, httplib::Response& response);
    void get(const RequestTarget& target, const httplib::Request& request, httplib::Response& response);

    ServiceOptions m_options;
    Database m_database;
    Accounts m_accounts;
    FileStore m_files;
    Albums m_albums;
    CloudViews m_views;
    UploadRequests m_uploads;
    PageRequests m_pages;
    BoundedServer m_server;
};

/// The accounts' database in the folder, without serving.
[[nodiscard]] bool openDatabase(Database& database, const std::string& folder, std::string* error);

} // namespace albumd
