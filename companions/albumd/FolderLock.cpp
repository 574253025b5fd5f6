// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/FolderLock.h"

#include <filesystem>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

namespace albumd {

FolderLock::FolderLock(const std::string& folder)
{
    const std::string path = (std::filesystem::path(folder) / "albumd.lock").string();
#ifdef _WIN32
    if (_sopen_s(&m_handle, path.c_str(), _O_CREAT | _O_RDWR, _SH_DENYRW, _S_IREAD | _S_IWRITE) != 0)
        m_handle = -1;
#else
    m_handle = ::open(path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
    if (m_handle >= 0 && ::flock(m_handle, LOCK_EX | LOCK_NB) != 0) {
        ::close(m_handle);
        m_handle = -1;
    }
#endif
}

FolderLock::~FolderLock()
{
    if (m_handle < 0) return;
#ifdef _WIN32
    _close(m_handle);
#else
    ::close(m_handle);
#endif
}

} // namespace albumd
