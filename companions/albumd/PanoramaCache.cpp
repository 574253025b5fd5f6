// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/PanoramaCache.h"

#include <algorithm>

namespace albumd {

std::shared_ptr<PnoFile> PanoramaCache::open(const std::string& path)
{
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        const auto found = std::find_if(m_files.begin(), m_files.end(),
                                        [&](const auto& each) { return each.first == path; });
        if (found != m_files.end()) {
            m_files.splice(m_files.begin(), m_files, found);
            return found->second;
        }
    }
    auto file = std::make_shared<PnoFile>();
    if (file->Open(path.c_str()) != pno::Ok) return nullptr;
    const std::lock_guard<std::mutex> guard(m_lock);
    m_files.emplace_front(path, file);
    if (m_files.size() > m_most) m_files.pop_back();
    return file;
}

} // namespace albumd
