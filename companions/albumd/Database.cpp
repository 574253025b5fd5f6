// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/Database.h"

#include <sqlite3.h>

namespace albumd {
namespace {

constexpr int kBusy_ms = 10'000; ///< add-user may run beside the service

/// Persisted: a change needs a new user_version and a step from the earlier one.
constexpr const char* kTables = R"(
CREATE TABLE IF NOT EXISTS users(
    id INTEGER PRIMARY KEY, email TEXT NOT NULL UNIQUE, hash TEXT NOT NULL, quota INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS wrong_tries(
    who TEXT PRIMARY KEY, day INTEGER NOT NULL, count INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS tokens(
    hash TEXT PRIMARY KEY, user INTEGER NOT NULL REFERENCES users(id) ON DELETE CASCADE,
    ends INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS files(
    user INTEGER NOT NULL REFERENCES users(id), kind TEXT NOT NULL, name TEXT NOT NULL,
    stored TEXT NOT NULL, bytes INTEGER NOT NULL, PRIMARY KEY(user, kind, name));
CREATE TABLE IF NOT EXISTS albums(
    id TEXT PRIMARY KEY, user INTEGER NOT NULL REFERENCES users(id), name TEXT NOT NULL,
    entry TEXT NOT NULL, direction REAL NOT NULL, elevation REAL NOT NULL, view_angle REAL NOT NULL,
    made INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS album_panoramas(
    album TEXT NOT NULL REFERENCES albums(id) ON DELETE CASCADE, place INTEGER NOT NULL,
    pano TEXT NOT NULL, located INTEGER NOT NULL DEFAULT 0,
    x REAL, y REAL, z REAL, vertex_x REAL, vertex_y REAL, direction REAL,
    plan_x INTEGER, plan_y INTEGER, plan TEXT, PRIMARY KEY(album, pano));
CREATE TABLE IF NOT EXISTS hotspots(
    album TEXT NOT NULL REFERENCES albums(id) ON DELETE CASCADE, pano TEXT NOT NULL,
    place INTEGER NOT NULL, is_photo INTEGER NOT NULL, x REAL NOT NULL, y REAL NOT NULL,
    caption TEXT NOT NULL, content TEXT NOT NULL, PRIMARY KEY(album, pano, place));
CREATE TABLE IF NOT EXISTS links(
    album TEXT NOT NULL REFERENCES albums(id) ON DELETE CASCADE, pano_0 TEXT NOT NULL, pano_1 TEXT NOT NULL,
    rot_0 REAL, rot_1 REAL, tilt_x0 REAL, tilt_x1 REAL, tilt_y0 REAL, icon_y0 REAL, icon_y1 REAL,
    spacing REAL, mode INTEGER, PRIMARY KEY(album, pano_0, pano_1));
PRAGMA user_version = 1;
)";

} // namespace

Database::~Database()
{
    sqlite3_close(m_handle);
}

bool Database::open(const std::string& path, std::string* error)
{
    const bool opened = sqlite3_open_v2(path.c_str(), &m_handle,
                                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX,
                                        nullptr) == SQLITE_OK;
    if (opened) {
        sqlite3_busy_timeout(m_handle, kBusy_ms);
        if (execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON")) {
            std::int64_t version = 0;
            {
                Query query(*this, "PRAGMA user_version");
                if (query.row()) version = query.integer(0);
            }
            if (version > 1) {
                *error = path + " was written by a newer albumd";
                return false;
            }
            if (execute("BEGIN IMMEDIATE")) {
                if (execute(kTables) && execute("COMMIT")) return true;
            }
        }
    }
    *error = path + ": " + this->error();
    return false;
}

bool Database::execute(const char* sql)
{
    return sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

std::string Database::error() const
{
    return sqlite3_errmsg(m_handle);
}

Query::Query(Database& database, const char* sql)
{
    m_failed = sqlite3_prepare_v2(database.handle(), sql, -1, &m_statement, nullptr) != SQLITE_OK;
}

Query::~Query()
{
    sqlite3_finalize(m_statement);
}

Query& Query::bind(std::int64_t value)
{
    m_failed |= sqlite3_bind_int64(m_statement, m_next++, value) != SQLITE_OK;
    return *this;
}

Query& Query::bind(double value)
{
    m_failed |= sqlite3_bind_double(m_statement, m_next++, value) != SQLITE_OK;
    return *this;
}

Query& Query::bind(std::string_view text)
{
    m_failed |= sqlite3_bind_text(m_statement, m_next++, text.empty() ? "" : text.data(),
                                  static_cast<int>(text.size()), SQLITE_TRANSIENT) != SQLITE_OK;
    return *this;
}

bool Query::row()
{
    if (m_failed) return false;
    const int result = sqlite3_step(m_statement);
    m_failed = result != SQLITE_ROW && result != SQLITE_DONE;
    return result == SQLITE_ROW;
}

std::int64_t Query::integer(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

double Query::real(int column) const
{
    return sqlite3_column_double(m_statement, column);
}

std::string Query::text(int column) const
{
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
    return bytes ? std::string(bytes, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column)))
                 : std::string();
}

Transaction::Transaction(Database& database)
    : m_database(database)
    , m_open(database.execute("BEGIN IMMEDIATE"))
{}

Transaction::~Transaction()
{
    if (m_open && !m_database.execute("ROLLBACK")) m_open = false;
}

bool Transaction::commit()
{
    if (!m_open || !m_database.execute("COMMIT")) return false;
    m_open = false;
    return true;
}

} // namespace albumd
