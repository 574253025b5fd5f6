// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/UploadRequests.h"

#include "companions/albumd/BoundedServer.h"
#include "companions/albumd/Fragments.h"
#include "companions/albumd/Names.h"
#include "companions/albumd/PanoramaCheck.h"
#include "companions/albumd/Replies.h"
#include "linking/pno/PnoFormat.h"

#include <algorithm>
#include <set>

namespace albumd {
namespace {

constexpr std::int64_t kKibi = 1024;
constexpr std::int64_t kMebi = kKibi * kKibi;
constexpr std::size_t kMostPanoramas = 10'000; ///< in an album
constexpr const char* kNoRoom = "the account has no room left";
constexpr std::size_t kLongestNotes = 1024; ///< bytes of an album's name

struct Bound
{
    std::string_view path;
    std::int64_t bytes;
};

constexpr Bound kBounds[] = {
    {"/upload", pno::kMaxFileBytes},         {"/create_roaming_album", kMebi},
    {"/set_albumpano_location", 16 * kKibi}, {"/set_albumpano_linktags", 4 * kMebi},
    {"/add_panolink", 16 * kKibi},           {"/upload_linkmodel", 64 * kMebi},
    {"/upload_linkphoto", 256 * kMebi},
};

std::vector<std::string> lines(std::string_view text)
{
    std::vector<std::string> all;
    for (;;) {
        const std::size_t end = text.find("\r\n");
        all.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos) return all;
        text.remove_prefix(end + 2);
    }
}

bool isPlainLine(std::string_view text)
{
    return isUtf8(text) && std::none_of(text.begin(), text.end(), [](char c) { return c >= 0 && c < ' '; });
}

} // namespace

struct UploadRequests::Call
{
    RequestTarget target;
    httplib::Response& response;
    const httplib::ContentReader& content;
    Account account;
    std::int64_t mostBytes;
    std::int64_t statedBytes; ///< -1: not stated

    /// Without the body.
    void turnAway(int status, const char* reason) const
    {
        refuse(response, status, reason);
        BoundedServer::giveUpRequest(response);
    }
};

UploadRequests::UploadRequests(Accounts& accounts, FileStore& files, Albums& albums, CloudViews& views,
                               Clock clock)
    : m_accounts(accounts)
    , m_files(files)
    , m_albums(albums)
    , m_views(views)
    , m_clock(std::move(clock))
{}

void UploadRequests::login(const RequestTarget& target, httplib::Response& response)
{
    const Accounts::Login login = m_accounts.login(target.item("email"), target.item("password"));
    switch (login.result) {
    case Accounts::Login::Welcome:
        // Eight lines: uploading programs look at the second, and at their number.
        return answerOk(response,
                        login.token + "\r\n" + login.account.email + "\r\n" +
                            std::to_string(m_accounts.tokenLife()) + "\r\n" +
                            std::to_string(login.account.quota) + "\r\n" +
                            std::to_string(m_files.used(login.account.id)) + "\r\n" +
                            std::to_string(m_files.names(login.account.id, FileKind::Panorama).size()) +
                            "\r\n" + std::to_string(m_albums.list(login.account.id).size()));
    case Accounts::Login::Wrong:
        return answerError(response, login.triesLeft);
    case Accounts::Login::Busy:
        return refuse(response, 503, "too many logins at once");
    case Accounts::Login::Failed:
        return refuse(response, 500, "the accounts cannot be read");
    }
}

void UploadRequests::listPanoramas(const RequestTarget& target, httplib::Response& response)
{
    const auto account = m_accounts.owner(target.item("token"));
    if (!account) return refuse(response, 403, "log in first");
    std::string all;
    for (const std::string& id : m_files.names(account->id, FileKind::Panorama))
        all += (all.empty() ? "" : "\r\n") + id;
    answerOk(response, all);
}

std::int64_t UploadRequests::mostBytes(std::string_view path)
{
    for (const Bound& bound : kBounds)
        if (bound.path == path) return bound.bytes;
    return 0;
}

void UploadRequests::post(const httplib::Request& request, httplib::Response& response,
                          const httplib::ContentReader& content)
{
    RequestTarget target(request.target);
    const auto account = m_accounts.owner(target.item("token"));
    const std::string path = target.path();
    const bool stated = request.has_header("Content-Length");
    Call call{std::move(target), response,
              content,           account.value_or(Account()),
              mostBytes(path),   stated ? request.get_header_value<std::int64_t>("Content-Length") : -1};
    if (!account) return call.turnAway(403, "log in first");
    if (path == "/upload") return uploadPanorama(call);
    if (path == "/create_roaming_album") return createAlbum(call);
    if (path == "/set_albumpano_location") return setLocation(call);
    if (path == "/set_albumpano_linktags") return setLinkTags(call);
    if (path == "/add_panolink") return addLink(call);
    if (path == "/upload_linkmodel") return uploadModel(call);
    if (path == "/upload_linkphoto") return uploadPhoto(call);
    call.turnAway(404, "there is nothing here");
}

/// Takes the body in, piece by piece. Without room for it the body is let pass all the same: the client reads
/// our reply only when it has sent everything.
bool UploadRequests::receiveFile(Call& call, IncomingFile& file, FileStore::Room& room)
{
    bool hasRoom = call.statedBytes < 0 || room.take(call.statedBytes);
    bool written = true;
    std::int64_t received = 0;
    const bool whole = call.content([&](const char* data, std::size_t size) {
        received += static_cast<std::int64_t>(size);
        if (received > call.mostBytes) return false;
        hasRoom = hasRoom && room.take(received);
        written = written && (!hasRoom || file.write(data, size));
        return written;
    });
    if (received > call.mostBytes) {
        call.turnAway(413, "the file is too large");
    } else if (!written) {
        call.turnAway(500, "the file cannot be stored");
    } else if (!whole || (call.statedBytes >= 0 && received != call.statedBytes)) {
        call.turnAway(400, "the file ended early");
    } else if (!hasRoom) {
        answerError(call.response, 1, kNoRoom);
    } else if (!file.finish()) {
        refuse(call.response, 500, "the file cannot be stored");
    } else {
        return true;
    }
    return false;
}

bool UploadRequests::receiveText(Call& call, std::string* text)
{
    const bool whole = call.content([&](const char* data, std::size_t size) {
        if (text->size() + size > static_cast<std::size_t>(call.mostBytes)) return false;
        text->append(data, size);
        return true;
    });
    if (!whole) call.turnAway(400, "the text ended early or is too long");
    return whole;
}

void UploadRequests::keep(Call& call, FileKind kind, const std::string& name, IncomingFile& file)
{
    switch (m_files.keep(call.account, kind, name, file)) {
    case FileStore::Kept::Yes:
        return answerOk(call.response);
    case FileStore::Kept::NoRoom:
        return answerError(call.response, 1, kNoRoom);
    case FileStore::Kept::Failed:
        return refuse(call.response, 500, "the file cannot be stored");
    }
}

bool UploadRequests::ownsPanorama(const Call& call, const std::string& id)
{
    return isPanoramaId(id) && m_files.find(call.account.id, FileKind::Panorama, id);
}

void UploadRequests::uploadPanorama(Call& call)
{
    const std::string id = call.target.item("panoid");
    if (!isPanoramaId(id)) return call.turnAway(400, "panoid is no panorama's id");
    FileStore::Room room = m_files.room(call.account, FileKind::Panorama, id);
    IncomingFile file = m_files.incoming();
    if (!receiveFile(call, file, room)) return;
    if (!isPanorama(file.path(), id))
        return refuse(call.response, 400, "this is no sound panorama of that id");
    keep(call, FileKind::Panorama, id, file);
}

void UploadRequests::createAlbum(Call& call)
{
    std::string text;
    if (!receiveText(call, &text)) return;
    Album album;
    album.user = call.account.id;
    album.name = call.target.item("albumnotes");
    album.entry = call.target.item("entrypanoid");
    album.made = m_clock();
    const auto direction = call.target.number("direction");
    const auto elevation = call.target.number("elevation");
    const auto view_angle = call.target.number("viewangle");
    if (album.name.empty() || album.name.size() > kLongestNotes || !isPlainLine(album.name))
        return answerError(call.response, 2, "the album's name is no good");
    if (call.target.item("albummode") != "1" || !direction || !elevation || !view_angle)
        return answerError(call.response, 2, "how the album is shown first is not said");
    album.direction = *direction;
    album.elevation = *elevation;
    album.view_angle = *view_angle;
    std::set<std::string> known;
    const std::vector<std::string> ids = lines(text);
    if (ids.size() > kMostPanoramas) return answerError(call.response, 2, "too many panoramas");
    for (const std::string& id : ids) {
        if (!known.insert(id).second) return answerError(call.response, 2, "a panorama stands there twice");
        if (!ownsPanorama(call, id)) return answerError(call.response, 2, "a panorama is not there");
        album.panoramas.push_back({id, std::nullopt, {}});
    }
    if (!known.count(album.entry))
        return answerError(call.response, 2, "the first panorama is none of the album's");
    if (!m_albums.create(&album)) return refuse(call.response, 500, "the album cannot be stored");
    answerOk(call.response, album.id);
}

bool UploadRequests::ofOwnAlbum(Call& call, const std::string& pano)
{
    const std::string album = call.target.item("albumid");
    const bool good = isAlbumId(album) && isPanoramaId(pano) && m_albums.holds(call.account.id, album, pano);
    if (!good) refuse(call.response, 404, "no album of yours has this panorama");
    return good;
}

void UploadRequests::setLocation(Call& call)
{
    std::string text;
    const std::string pano = call.target.item("panoid");
    if (!receiveText(call, &text) || !ofOwnAlbum(call, pano)) return;
    Location location;
    if (!readLocation(text, &location)) return refuse(call.response, 400, "this is no location");
    if (!m_albums.setLocation(call.target.item("albumid"), pano, location))
        return refuse(call.response, 500, "the location cannot be stored");
    answerOk(call.response);
}

void UploadRequests::setLinkTags(Call& call)
{
    std::string text;
    const std::string pano = call.target.item("panoid");
    if (!receiveText(call, &text) || !ofOwnAlbum(call, pano)) return;
    std::vector<Hotspot> hotspots;
    if (!readHotspots(text, &hotspots)) return refuse(call.response, 400, "these are no hotspots");
    if (!m_albums.setHotspots(call.target.item("albumid"), pano, hotspots))
        return refuse(call.response, 500, "the hotspots cannot be stored");
    answerOk(call.response);
}

void UploadRequests::addLink(Call& call)
{
    std::string text;
    const std::string pano_0 = call.target.item("panoid0");
    const std::string pano_1 = call.target.item("panoid1");
    if (!receiveText(call, &text) || !ofOwnAlbum(call, pano_0) || !ofOwnAlbum(call, pano_1)) return;
    Link link;
    if (!readLink(text, &link) || link.pano_0 != pano_0 || link.pano_1 != pano_1)
        return refuse(call.response, 400, "this is no link of these panoramas");
    if (!m_albums.addLink(call.target.item("albumid"), link))
        return refuse(call.response, 500, "the link cannot be stored");
    answerOk(call.response);
}

void UploadRequests::uploadModel(Call& call)
{
    const std::string pano_0 = call.target.item("panoid0");
    const std::string pano_1 = call.target.item("panoid1");
    const std::string level = call.target.item("levelSel");
    if (!ownsPanorama(call, pano_0) || !ownsPanorama(call, pano_1) || !isLevel(level))
        return call.turnAway(400, "this belongs to no panoramas of yours");
    const std::string name = pano_0 + '_' + pano_1 + '_' + level;
    FileStore::Room room = m_files.room(call.account, FileKind::Model, name);
    IncomingFile file = m_files.incoming();
    if (receiveFile(call, file, room)) keep(call, FileKind::Model, name, file);
}

void UploadRequests::uploadPhoto(Call& call)
{
    const std::string pano = call.target.item("panoid");
    const std::string name = call.target.item("photoname");
    if (!isPhotoName(name) || name.substr(0, 14) != pano || !ownsPanorama(call, pano))
        return call.turnAway(400, "this belongs to no panorama of yours");
    FileStore::Room room = m_files.room(call.account, FileKind::Photo, name);
    IncomingFile file = m_files.incoming();
    if (!receiveFile(call, file, room)) return;
    keep(call, FileKind::Photo, name, file);
    // Now, so that the first visitor need not wait for it. One that cannot be shown is kept all the same.
    const auto stored =
        isCloudName(name) ? m_files.find(call.account.id, FileKind::Photo, name) : std::nullopt;
    if (stored) m_views.describe(*stored);
}

} // namespace albumd
