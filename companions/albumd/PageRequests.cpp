// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/PageRequests.h"

#include "companions/albumd/AlbumPage.h"
#include "companions/albumd/Names.h"
#include "companions/albumd/TourDescription.h"
#include "companions/albumd/WebFiles.h"

#include <charconv>
#include <fstream>
#include <optional>

namespace albumd {
namespace {

constexpr std::size_t kOpenPanoramas = 64;
constexpr std::size_t kPieceBytes = 256 * 1024;

std::optional<int> toPlace(const std::string& text)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.size() > 4 || error != std::errc() || end != text.data() + text.size() || value < 0)
        return std::nullopt;
    return value;
}

/// Only what a browser takes for a picture and for nothing else leaves as one; empty otherwise.
std::string pictureType(const std::string& start)
{
    using namespace std::string_literals;
    if (start.compare(0, 3, "\xFF\xD8\xFF") == 0) return "image/jpeg";
    if (start.compare(0, 8, "\x89PNG\r\n\x1A\n") == 0) return "image/png";
    if (start.compare(0, 4, "RIFF") == 0 && start.compare(8, 4, "WEBP") == 0) return "image/webp";
    if (start.compare(0, 4, "GIF8") == 0) return "image/gif";
    if (start.compare(0, 2, "BM") == 0) return "image/bmp";
    return std::string();
}

void sendFile(const std::shared_ptr<std::ifstream>& file, std::size_t bytes, const std::string& type,
              httplib::Response& response)
{
    response.set_content_provider(
        bytes, type, [file](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
            std::string piece(std::min(length, kPieceBytes), '\0');
            file->clear();
            file->seekg(static_cast<std::streamoff>(offset));
            file->read(piece.data(), static_cast<std::streamsize>(piece.size()));
            return file->gcount() > 0 && sink.write(piece.data(), static_cast<std::size_t>(file->gcount()));
        });
}

} // namespace

PageRequests::PageRequests(FileStore& files, Albums& albums, CloudViews& views)
    : m_files(files)
    , m_albums(albums)
    , m_views(views)
    , m_panoramas(kOpenPanoramas)
{}

bool PageRequests::answer(const RequestTarget& target, const httplib::Request& request,
                          httplib::Response& response)
{
    const std::vector<std::string> parts = target.parts();
    if (parts.size() == 2 && parts[0] == "web") return answerWebFile(parts[1], response);
    if (parts.size() < 2 || parts[0] != "album") return false;
    if (parts.size() == 2) return page(parts[1], request, response);
    if (!isAlbumId(parts[1])) return false;
    if (parts.size() == 3 && parts[2] == "tour") return tour(parts[1], response);
    if (parts.size() == 4 && parts[2] == "photo") return photo(parts[1], parts[3], response);
    if (parts.size() >= 4 && parts[2] == "cloud") return cloud(parts, response);
    return parts.size() == 7 && parts[2] == "tile" && tile(parts, response);
}

bool PageRequests::page(const std::string& id, const httplib::Request& request, httplib::Response& response)
{
    const auto album = isAlbumId(id) ? m_albums.find(id) : std::nullopt;
    const bool chinese = request.get_header_value("Accept-Language").substr(0, 2) == "zh";
    response.status = album ? 200 : 404;
    response.set_header("Cache-Control", "no-cache");
    setPage(response, album ? albumPage(*album, chinese) : missingPage(chinese));
    return true;
}

bool PageRequests::tour(const std::string& id, httplib::Response& response)
{
    const auto album = m_albums.find(id);
    if (!album) return false;
    response.status = 200;
    response.set_header("Cache-Control", "no-cache");
    response.set_content(describeTour(*album, m_files, m_panoramas, m_views), "application/json");
    return true;
}

bool PageRequests::tile(const std::vector<std::string>& parts, httplib::Response& response)
{
    const auto level = toPlace(parts[4]);
    const auto column = toPlace(parts[5]);
    const auto row = toPlace(parts[6]);
    if (!isPanoramaId(parts[3]) || !level || !column || !row) return false;
    const auto owner = m_albums.ownerOfPanorama(parts[1], parts[3]);
    const auto stored = owner ? m_files.find(*owner, FileKind::Panorama, parts[3]) : std::nullopt;
    const auto file = stored ? m_panoramas.open(stored->path) : nullptr;
    if (!file) return false;
    std::uint32_t size = 0;
    const PnoBytes bytes = file->ReadTile(*level, *column, *row, &size);
    if (!bytes) return false;
    const auto* start = reinterpret_cast<const char*>(bytes.get());
    const std::string type = pictureType(std::string(start, std::min<std::size_t>(size, 16)));
    if (type.empty()) return false;
    response.status = 200;
    // The address names the stored file, which never changes.
    response.set_header("Cache-Control", "private, max-age=604800, immutable");
    response.set_content(start, size, type);
    return true;
}

bool PageRequests::photo(const std::string& id, const std::string& name, httplib::Response& response)
{
    if (!isPhotoName(name)) return false;
    const auto owner = m_albums.ownerOfPhoto(id, name);
    const auto stored = owner ? m_files.find(*owner, FileKind::Photo, name) : std::nullopt;
    if (!stored) return false;
    const auto file = std::make_shared<std::ifstream>(stored->path, std::ios::binary);
    std::string start(16, '\0');
    file->read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(file->gcount()));
    const std::string type = pictureType(start);
    if (type.empty()) return false;
    response.status = 200;
    response.set_header("Cache-Control", "no-cache");
    sendFile(file, static_cast<std::size_t>(stored->bytes), type, response);
    return true;
}

bool PageRequests::cloud(const std::vector<std::string>& parts, httplib::Response& response)
{
    const bool asPoints = parts.size() == 5 && parts[4] == "points";
    if ((parts.size() != 4 && !asPoints) || !isCloudName(parts[3])) return false;
    const auto owner = m_albums.ownerOfPhoto(parts[1], parts[3]);
    const auto stored = owner ? m_files.find(*owner, FileKind::Photo, parts[3]) : std::nullopt;
    if (!stored || !m_views.describe(*stored)) return false;
    const auto file = std::make_shared<std::ifstream>(
        asPoints ? CloudViews::points(*stored) : CloudViews::picture(*stored), std::ios::binary);
    file->seekg(0, std::ios::end);
    const auto bytes = static_cast<std::streamoff>(file->tellg());
    if (!*file || bytes <= 0) return false;
    response.status = 200;
    // The address names the stored file, which never changes.
    response.set_header("Cache-Control", "private, max-age=604800, immutable");
    sendFile(file, static_cast<std::size_t>(bytes), asPoints ? "application/octet-stream" : "image/png",
             response);
    return true;
}

} // namespace albumd
