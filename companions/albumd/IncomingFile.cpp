// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/IncomingFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace albumd {
namespace {

#ifdef _WIN32
int createFile(const char* path)
{
    return _open(path, _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
}
std::int64_t writeSome(int handle, const char* data, std::size_t size)
{
    return _write(handle, data, static_cast<unsigned>(size < (1u << 30) ? size : (1u << 30)));
}
bool flushFile(int handle)
{
    return _commit(handle) == 0;
}
bool closeFile(int handle)
{
    return _close(handle) == 0;
}
#else
int createFile(const char* path)
{
    return ::open(path, O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
}
std::int64_t writeSome(int handle, const char* data, std::size_t size)
{
    return ::write(handle, data, size);
}
bool flushFile(int handle)
{
    return ::fsync(handle) == 0;
}
bool closeFile(int handle)
{
    return ::close(handle) == 0;
}
#endif

} // namespace

IncomingFile::IncomingFile(std::string path)
    : m_path(std::move(path))
    , m_handle(createFile(m_path.c_str()))
    , m_made(m_handle >= 0)
{}

IncomingFile::~IncomingFile()
{
    if (m_handle >= 0) closeFile(m_handle);
    if (m_made) std::remove(m_path.c_str());
}

IncomingFile::IncomingFile(IncomingFile&& other) noexcept
    : m_path(std::move(other.m_path))
    , m_handle(std::exchange(other.m_handle, -1))
    , m_bytes(other.m_bytes)
    , m_made(std::exchange(other.m_made, false))
{}

bool IncomingFile::write(const char* data, std::size_t size)
{
    while (size > 0) {
        const std::int64_t written = m_handle < 0 ? -1 : writeSome(m_handle, data, size);
        if (written < 0 && errno == EINTR && m_handle >= 0) continue;
        if (written <= 0) return false;
        data += written;
        size -= static_cast<std::size_t>(written);
        m_bytes += written;
    }
    return m_handle >= 0;
}

bool IncomingFile::finish()
{
    if (m_handle < 0) return false;
    const bool flushed = flushFile(m_handle);
    return closeFile(std::exchange(m_handle, -1)) && flushed;
}

bool IncomingFile::moveTo(const std::string& path)
{
    std::error_code error;
    std::filesystem::rename(m_path, path, error);
    if (error) return false;
    m_made = false;
    if (flushFolder(std::filesystem::path(path).parent_path().string())) return true;
    std::filesystem::remove(path, error);
    return false;
}

bool flushFolder(const std::string& folder)
{
#ifdef _WIN32
    static_cast<void>(folder);
    return true;
#else
    const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) return false;
    const bool flushed = ::fsync(handle) == 0;
    ::close(handle);
    return flushed;
#endif
}

} // namespace albumd
