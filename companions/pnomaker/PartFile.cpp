// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnomaker/PartFile.h"

#include <cerrno>
#include <cstring>
#include <utility>

#ifdef _WIN32
#include <io.h>
#include <process.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace pnomaker {
namespace {

#ifdef _WIN32
int processId()
{
    return _getpid();
}
bool flushToDisk(std::FILE* file)
{
    return _commit(_fileno(file)) == 0;
}
bool replaceFile(const std::string& from, const std::string& to)
{
    return MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}
int seekFile(std::FILE* file, std::int64_t position)
{
    return _fseeki64(file, position, SEEK_SET);
}
#else
int processId()
{
    return static_cast<int>(getpid());
}
bool flushToDisk(std::FILE* file)
{
    return fsync(fileno(file)) == 0;
}
bool replaceFile(const std::string& from, const std::string& to)
{
    return std::rename(from.c_str(), to.c_str()) == 0;
}
int seekFile(std::FILE* file, std::int64_t position)
{
    return fseeko(file, static_cast<off_t>(position), SEEK_SET);
}
#endif

} // namespace

PartFile::PartFile(std::string path)
    : m_path(std::move(path))
    , m_part(partName(m_path))
{}

PartFile::~PartFile()
{
    if (m_file) std::fclose(m_file);
    if (m_made) std::remove(m_part.c_str());
}

std::string PartFile::partName(const std::string& path)
{
    return path + ".part-" + std::to_string(processId());
}

bool PartFile::open()
{
    m_file = std::fopen(m_part.c_str(), "wb");
    if (!m_file) return fail("cannot be written");
    m_made = true;
    return true;
}

bool PartFile::write(const void* data, std::size_t size)
{
    m_written += static_cast<std::int64_t>(size);
    return std::fwrite(data, 1, size, m_file) == size || fail("cannot be written");
}

bool PartFile::seek(std::int64_t position)
{
    return seekFile(m_file, position) == 0 || fail("cannot be written");
}

bool PartFile::commit()
{
    if (std::fflush(m_file) != 0 || !flushToDisk(m_file)) return fail("cannot be written");
    const int closed = std::fclose(m_file);
    m_file = nullptr;
    if (closed != 0) return fail("cannot be written");
    if (!replaceFile(m_part, m_path)) return fail("cannot be put in place");
    m_made = false;
    return true;
}

bool PartFile::fail(const char* what)
{
    if (m_error.empty())
        m_error = m_path + ": " + what + (errno ? std::string(": ") + std::strerror(errno) : std::string());
    return false;
}

std::string PartFile::error() const
{
    return m_error;
}

} // namespace pnomaker
