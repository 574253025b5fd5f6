// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/FileStore.h"

#include "companions/albumd/RandomName.h"

#include <cstdio>
#include <filesystem>
#include <set>

namespace fs = std::filesystem;

namespace albumd {
namespace {

std::string_view textOf(FileKind kind)
{
    switch (kind) {
    case FileKind::Panorama:
        return "panorama";
    case FileKind::Model:
        return "model";
    case FileKind::Photo:
        break;
    }
    return "photo";
}

std::string_view endingOf(FileKind kind)
{
    switch (kind) {
    case FileKind::Panorama:
        return ".pno";
    case FileKind::Model:
        return ".dat";
    case FileKind::Photo:
        break;
    }
    return ".photo";
}

bool makeFolder(const fs::path& folder)
{
    std::error_code error;
    if (fs::is_directory(folder, error)) return true;
    fs::create_directories(folder, error);
    return fs::is_directory(folder, error) && flushFolder(folder.parent_path().string());
}

} // namespace

FileStore::FileStore(Database& database, std::string dataFolder)
    : m_database(database)
    , m_folder(std::move(dataFolder))
{}

bool FileStore::prepare(std::string* error)
{
    const fs::path folder(m_folder);
    std::error_code ignored;
    fs::remove_all(folder / "incoming", ignored);
    if (!makeFolder(folder / "incoming") || !makeFolder(folder / "files")) {
        *error = m_folder + ": no folder can be made in it";
        return false;
    }
    forgetMissingFiles();
    removeStrayFiles();
    removeStrayViews();
    return true;
}

void FileStore::forgetMissingFiles()
{
    const std::lock_guard<std::mutex> guard(m_database.lock);
    std::vector<std::pair<std::int64_t, std::string>> missing;
    {
        Query query(m_database, "SELECT user, stored, bytes FROM files");
        while (query.row()) {
            std::error_code error;
            const fs::path path = fs::path(folderOf(query.integer(0))) / query.text(1);
            if (fs::file_size(path, error) != static_cast<std::uintmax_t>(query.integer(2)) || error)
                missing.emplace_back(query.integer(0), query.text(1));
        }
    }
    for (const auto& [user, stored] : missing) {
        std::fprintf(stderr, "albumd: %s/%s is missing or not whole; it is listed no more\n",
                     folderOf(user).c_str(), stored.c_str());
        if (!Query(m_database, "DELETE FROM files WHERE user = ? AND stored = ?")
                 .bind(user)
                 .bind(stored)
                 .run())
            return;
    }
}

void FileStore::removeStrayFiles()
{
    std::set<std::string> known;
    {
        const std::lock_guard<std::mutex> guard(m_database.lock);
        Query query(m_database, "SELECT user, stored FROM files");
        while (query.row())
            known.insert((fs::path(folderOf(query.integer(0))) / query.text(1)).string());
        if (query.failed()) return;
    }
    std::error_code error;
    std::vector<fs::path> strays;
    for (const auto& user : fs::directory_iterator(fs::path(m_folder) / "files", error))
        for (const auto& entry : fs::directory_iterator(user.path(), error))
            if (!known.count(entry.path().string())) strays.push_back(entry.path());
    for (const fs::path& stray : strays)
        fs::remove(stray, error);
}

void FileStore::removeStrayViews()
{
    std::error_code error;
    std::vector<fs::path> strays;
    for (const auto& user : fs::directory_iterator(fs::path(m_folder) / "views", error))
        for (const auto& entry : fs::directory_iterator(user.path(), error)) {
            const fs::path file = fs::path(m_folder) / "files" / user.path().filename() / entry.path().stem();
            std::error_code ignored;
            if (!fs::exists(file, ignored)) strays.push_back(entry.path());
        }
    for (const fs::path& stray : strays)
        fs::remove(stray, error);
}

IncomingFile FileStore::incoming() const
{
    return IncomingFile((fs::path(m_folder) / "incoming" / randomLetters(24)).string());
}

FileStore::Room::~Room()
{
    const std::lock_guard<std::mutex> guard(m_store.m_roomLock);
    m_store.m_taken[m_account.id] -= m_taken;
}

FileStore::Room FileStore::room(const Account& account, FileKind kind, std::string_view name)
{
    const auto earlier = find(account.id, kind, name);
    return Room(*this, account, earlier ? earlier->bytes : 0);
}

bool FileStore::Room::take(std::int64_t bytes)
{
    const std::int64_t beyond = bytes - m_replaced;
    if (beyond <= m_taken) return true;
    const std::lock_guard<std::mutex> guard(m_store.m_roomLock);
    std::int64_t& all = m_store.m_taken[m_account.id];
    const std::int64_t more = beyond - m_taken;
    if (more > m_account.quota - m_store.used(m_account.id) - all) return false;
    all += more;
    m_taken = beyond;
    return true;
}

FileStore::Kept FileStore::enter(const Account& account, FileKind kind, const std::string& name,
                                 const std::string& stored, std::int64_t bytes, std::string* earlier)
{
    const std::lock_guard<std::mutex> guard(m_database.lock);
    Transaction transaction(m_database);
    std::int64_t others = 0;
    {
        Query query(m_database, "SELECT stored FROM files WHERE user = ? AND kind = ? AND name = ?");
        if (query.bind(account.id).bind(textOf(kind)).bind(name).row()) *earlier = query.text(0);
        Query sum(m_database, "SELECT COALESCE(SUM(bytes), 0) FROM files WHERE user = ? AND stored <> ?");
        if (!sum.bind(account.id).bind(*earlier).row()) return Kept::Failed;
        others = sum.integer(0);
    }
    if (others + bytes > account.quota) return Kept::NoRoom;
    const bool entered =
        Query(m_database, "INSERT INTO files(user, kind, name, stored, bytes) VALUES(?, ?, ?, ?, ?) "
                          "ON CONFLICT(user, kind, name) DO UPDATE SET stored = excluded.stored, "
                          "bytes = excluded.bytes")
            .bind(account.id)
            .bind(textOf(kind))
            .bind(name)
            .bind(stored)
            .bind(bytes)
            .run() &&
        transaction.commit();
    return entered ? Kept::Yes : Kept::Failed;
}

FileStore::Kept FileStore::keep(const Account& account, FileKind kind, const std::string& name,
                                IncomingFile& file)
{
    const fs::path folder = folderOf(account.id);
    const std::string stored =
        name.substr(0, name.find('.')) + '.' + randomLetters(12) + std::string(endingOf(kind));
    const std::string path = (folder / stored).string();
    if (!makeFolder(folder) || !file.moveTo(path)) return Kept::Failed;
    std::string earlier;
    const Kept kept = enter(account, kind, name, stored, file.bytes(), &earlier);
    std::error_code ignored;
    if (kept != Kept::Yes) {
        fs::remove(path, ignored);
    } else if (!earlier.empty()) {
        fs::remove(folder / earlier, ignored);
        for (const char* ending : {".json", ".png", ".points"})
            fs::remove(viewsOf(account.id, earlier) + ending, ignored);
    }
    return kept;
}

std::optional<StoredFile> FileStore::find(std::int64_t user, FileKind kind, std::string_view name)
{
    const std::lock_guard<std::mutex> guard(m_database.lock);
    Query query(m_database, "SELECT stored, bytes FROM files WHERE user = ? AND kind = ? AND name = ?");
    if (!query.bind(user).bind(textOf(kind)).bind(name).row()) return std::nullopt;
    const std::string stored = query.text(0);
    return StoredFile{(fs::path(folderOf(user)) / stored).string(), stored, query.integer(1),
                      viewsOf(user, stored)};
}

std::vector<std::string> FileStore::names(std::int64_t user, FileKind kind)
{
    const std::lock_guard<std::mutex> guard(m_database.lock);
    std::vector<std::string> all;
    Query query(m_database, "SELECT name FROM files WHERE user = ? AND kind = ? ORDER BY name");
    query.bind(user).bind(textOf(kind));
    while (query.row())
        all.push_back(query.text(0));
    return all;
}

std::int64_t FileStore::used(std::int64_t user)
{
    const std::lock_guard<std::mutex> guard(m_database.lock);
    Query query(m_database, "SELECT COALESCE(SUM(bytes), 0) FROM files WHERE user = ?");
    return query.bind(user).row() ? query.integer(0) : 0;
}

bool FileStore::makeViewsFolder(const StoredFile& file) const
{
    return makeFolder(fs::path(file.views).parent_path());
}

std::string FileStore::viewsOf(std::int64_t user, const std::string& stored) const
{
    return (fs::path(m_folder) / "views" / std::to_string(user) / stored).string();
}

std::string FileStore::folderOf(std::int64_t user) const
{
    return (fs::path(m_folder) / "files" / std::to_string(user)).string();
}

} // namespace albumd
