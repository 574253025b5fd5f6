// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What pages show of the clouds that were uploaded, made once and kept beside them.

#pragma once

#include "companions/albumd/FileStore.h"

#include <mutex>
#include <optional>
#include <string>

namespace albumd {

/// A cloud file's picture, its thinned points, and what a page has to know of both. Kept below views/ in the
/// data folder under the cloud's own name, which changes with each upload. One is made at a time.
class CloudViews
{
public:
    explicit CloudViews(FileStore& files)
        : m_files(files)
    {}

    /// Of a stored cloud; made now where there is none yet. One that cannot be read is not tried again.
    /// @return JSON {width, height, scale, left, top, points, origin, step, stepZ}, see CloudTopView; nothing
    /// for a file that is no cloud
    std::optional<std::string> describe(const StoredFile& cloud);

    /// Paths of files that are there when `describe` has answered.
    static std::string picture(const StoredFile& cloud);
    static std::string points(const StoredFile& cloud);

private:
    bool make(const StoredFile& cloud);
    bool write(const std::string& path, const char* data, std::size_t size);

    FileStore& m_files;
    std::mutex m_making;
};

} // namespace albumd
