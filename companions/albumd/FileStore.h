// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What accounts have uploaded: whole files only, under names of the service's own making.

#pragma once

#include "companions/albumd/Accounts.h"
#include "companions/albumd/Database.h"
#include "companions/albumd/IncomingFile.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace albumd {

/// Persisted in the database: never renamed.
enum class FileKind
{
    Panorama, ///< name: its id
    Model,    ///< match data; name: id, "_", id, "_", level
    Photo,    ///< name: the photo's
};

struct StoredFile
{
    std::string path;
    std::string stored; ///< the file's own name, another one with each upload
    std::int64_t bytes = 0;
    std::string views; ///< what is derived from it is kept under this path and an ending, see CloudViews
};

/// Below the data folder: incoming/ holds what is still coming, files/USER/ what is whole. A row in the
/// database appears when its file is on the disk, so that a row always has its file; a file without a row is
/// the remains of an upload that was cut off, and goes at the next start. views/USER/ holds what was derived
/// from files, and goes with them.
class FileStore
{
public:
    FileStore(Database& database, std::string dataFolder);

    /// Makes the folders and clears what an earlier run left half done. For the one process that serves.
    [[nodiscard]] bool prepare(std::string* error);

    /// A file to receive an upload into.
    IncomingFile incoming() const;

    /// Room that an upload under way takes of an account's quota, given back on destruction. What the upload
    /// is to replace makes room for it.
    class Room
    {
    public:
        ~Room();
        Room(const Room&) = delete;
        Room& operator=(const Room&) = delete;

        /// True when the account has room for `bytes` in all for this upload.
        bool take(std::int64_t bytes);

    private:
        friend class FileStore;
        Room(FileStore& store, const Account& account, std::int64_t replaced)
            : m_store(store)
            , m_account(account)
            , m_replaced(replaced)
        {}

        FileStore& m_store;
        Account m_account;
        std::int64_t m_replaced;  ///< bytes of the earlier file of that name
        std::int64_t m_taken = 0; ///< beyond those
    };
    Room room(const Account& account, FileKind kind, std::string_view name);

    enum class Kept
    {
        Yes,
        NoRoom, ///< the earlier file became smaller, or went, while this one was under way
        Failed
    };

    /// Puts a whole file in its place, on the disk, instead of an earlier one of that name.
    [[nodiscard]] Kept keep(const Account& account, FileKind kind, const std::string& name,
                            IncomingFile& file);

    std::optional<StoredFile> find(std::int64_t user, FileKind kind, std::string_view name);

    /// The folder of its `views`.
    [[nodiscard]] bool makeViewsFolder(const StoredFile& file) const;

    /// In order of their names.
    std::vector<std::string> names(std::int64_t user, FileKind kind);

    /// Bytes of all files of the account.
    std::int64_t used(std::int64_t user);

private:
    Kept enter(const Account& account, FileKind kind, const std::string& name, const std::string& stored,
               std::int64_t bytes, std::string* earlier);
    std::string folderOf(std::int64_t user) const;
    std::string viewsOf(std::int64_t user, const std::string& stored) const;
    void forgetMissingFiles();
    void removeStrayFiles();
    void removeStrayViews();

    Database& m_database;
    std::string m_folder;
    std::mutex m_roomLock;
    std::map<std::int64_t, std::int64_t> m_taken; ///< by uploads under way
};

} // namespace albumd
