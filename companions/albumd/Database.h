// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A SQLite database and its statements, as far as the service needs them.

#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace albumd {

/// One connection. Whoever uses it holds `lock` for as long as his statements live.
class Database
{
public:
    Database() = default;
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Opens or makes the file and brings its tables up to date. A commit is on the disk when it returns.
    [[nodiscard]] bool open(const std::string& path, std::string* error);

    [[nodiscard]] bool execute(const char* sql);

    std::string error() const;
    sqlite3* handle() const { return m_handle; }

    std::mutex lock;

private:
    sqlite3* m_handle = nullptr;
};

/// One statement: bind from left to right, then step through its rows.
class Query
{
public:
    Query(Database& database, const char* sql);
    ~Query();
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;

    Query& bind(std::int64_t value);
    Query& bind(double value);
    Query& bind(std::string_view text);

    /// Steps to the next row. False at the end and on an error; `failed` tells them apart.
    bool row();

    /// For statements without rows. False on an error.
    [[nodiscard]] bool run() { return !row() && !m_failed; }

    bool failed() const { return m_failed; }

    std::int64_t integer(int column) const; ///< columns count from 0
    double real(int column) const;
    std::string text(int column) const;

private:
    sqlite3_stmt* m_statement = nullptr;
    int m_next = 1;
    bool m_failed = false;
};

/// Everything until `commit`, or nothing.
class Transaction
{
public:
    explicit Transaction(Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    [[nodiscard]] bool commit();

private:
    Database& m_database;
    bool m_open;
};

} // namespace albumd
