// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/PendingFile.h"

#include "nexomap/src/Failure.h"

namespace nexomap {

namespace fs = std::filesystem;

PendingFile::PendingFile(const fs::path& path)
    : m_path(path)
    , m_part(path)
{
    m_part += ".part";
    m_file.open(m_part, std::ios::binary | std::ios::trunc);
    check(m_file.is_open());
}

PendingFile::PendingFile(PendingFile&& other) noexcept
    : m_path(std::move(other.m_path))
    , m_part(std::move(other.m_part))
    , m_file(std::move(other.m_file))
{
    other.m_part.clear();
}

PendingFile::~PendingFile()
{
    if (m_part.empty()) return;
    m_file.close();
    std::error_code ignored;
    fs::remove(m_part, ignored);
}

void PendingFile::check(bool good)
{
    if (!good) throw Failure(NEXOMAP_CANNOT_WRITE, "cannot write " + m_path.string());
}

void PendingFile::write(const void* data, std::size_t size)
{
    m_file.write(static_cast<const char*>(data), std::streamsize(size));
    check(m_file.good());
}

void PendingFile::writeAt(std::uint64_t offset, const void* data, std::size_t size)
{
    m_file.seekp(std::streamoff(offset));
    write(data, size);
}

void PendingFile::close()
{
    if (!m_file.is_open()) return;
    m_file.close();
    check(!m_file.fail());
}

void PendingFile::finish()
{
    close();
    std::error_code error;
    fs::rename(m_part, m_path, error);
    check(!error);
    m_part.clear();
}

} // namespace nexomap
