// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/Service.h"

#include "companions/albumd/Replies.h"

#include <algorithm>
#include <filesystem>

namespace albumd {
namespace {

constexpr const char* kPostPaths[] = {
    "/upload",       "/create_roaming_album", "/set_albumpano_location", "/set_albumpano_linktags",
    "/add_panolink", "/upload_linkmodel",     "/upload_linkphoto"};

httplib::Headers guards()
{
    return {{"X-Content-Type-Options", "nosniff"},
            {"Referrer-Policy", "no-referrer"},
            {"X-Frame-Options", "DENY"},
            {"Cross-Origin-Resource-Policy", "same-origin"},
            {"Content-Security-Policy", "default-src 'none'; frame-ancestors 'none'"}};
}

bool isCount(const std::string& text)
{
    return !text.empty() && text.size() <= 18 &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// What is wrong with the way the body comes; 0 when nothing.
int bodyProblem(const httplib::Request& request, std::int64_t mostBytes)
{
    const std::size_t lengths = request.get_header_value_count("Content-Length");
    const std::string length = request.get_header_value("Content-Length");
    const bool chunked = request.has_header("Transfer-Encoding");
    if (request.has_header("Content-Encoding") || request.is_multipart_form_data()) return 415;
    if (lengths > 1 || (lengths == 1 && (chunked || !isCount(length)))) return 400;
    if (lengths == 0 && !chunked) return mostBytes > 0 ? 411 : 0;
    if (mostBytes == 0) return lengths == 1 && std::stoll(length) == 0 ? 0 : 400;
    return lengths == 1 && std::stoll(length) > mostBytes ? 413 : 0;
}

void turnAway(httplib::Response& response, int status, const char* reason)
{
    refuse(response, status, reason);
    BoundedServer::giveUpRequest(response);
}

} // namespace

bool openDatabase(Database& database, const std::string& folder, std::string* error)
{
    return database.open((std::filesystem::path(folder) / "albumd.sqlite").string(), error);
}

Service::Service(const ServiceOptions& options)
    : m_options(options)
    , m_accounts(m_database, options.tokenLife_s, options.clock)
    , m_files(m_database, options.folder)
    , m_albums(m_database)
    , m_views(m_files)
    , m_uploads(m_accounts, m_files, m_albums, m_views, options.clock)
    , m_pages(m_files, m_albums, m_views)
    , m_server(options.patience)
{
    m_server.set_default_headers(guards());
    m_server.set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
        return route(request, response);
    });
    for (const char* path : kPostPaths)
        m_server.Post(path, [this](const httplib::Request& request, httplib::Response& response,
                                   const httplib::ContentReader& content) {
            m_uploads.post(request, response, content);
        });
    m_server.set_exception_handler(
        [](const httplib::Request&, httplib::Response& response, std::exception_ptr) {
            turnAway(response, 500, "this went wrong here");
        });
}

bool Service::open(std::string* error)
{
    return openDatabase(m_database, m_options.folder, error) && m_files.prepare(error);
}

httplib::Server::HandlerResponse Service::route(const httplib::Request& request, httplib::Response& response)
{
    using httplib::Server;
    const RequestTarget target(request.target);
    const bool reads = request.method == "GET" || request.method == "HEAD";
    const std::int64_t mostBytes = request.method == "POST" ? UploadRequests::mostBytes(target.path()) : 0;
    const int problem = bodyProblem(request, mostBytes);
    if (!reads && request.method != "POST")
        turnAway(response, 405, "this method is not known here");
    else if (problem != 0)
        turnAway(response, problem, "the request's body is not as it should be");
    else if (reads)
        get(target, request, response);
    else if (mostBytes == 0)
        turnAway(response, 404, "there is nothing here");
    else
        return Server::HandlerResponse::Unhandled;
    return Server::HandlerResponse::Handled;
}

void Service::get(const RequestTarget& target, const httplib::Request& request, httplib::Response& response)
{
    if (target.path() == "/login") return m_uploads.login(target, response);
    if (target.path() == "/get_pano_list") return m_uploads.listPanoramas(target, response);
    if (!m_pages.answer(target, request, response)) refuse(response, 404, "there is nothing here");
}

} // namespace albumd
