// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Opened panorama files, so that not each tile reads a directory anew.

#pragma once

#include "linking/pno/PnoFile.h"

#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace albumd {

/// The readers used last, 155 KB each. A stored file never changes under its name.
class PanoramaCache
{
public:
    explicit PanoramaCache(std::size_t most)
        : m_most(most)
    {}

    /// Null when the file cannot be read.
    std::shared_ptr<PnoFile> open(const std::string& path);

private:
    std::size_t m_most;
    std::mutex m_lock;
    std::list<std::pair<std::string, std::shared_ptr<PnoFile>>> m_files; ///< the last used first
};

} // namespace albumd
