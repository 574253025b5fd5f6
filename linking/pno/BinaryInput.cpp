// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#ifndef _FILE_OFFSET_BITS
#define _FILE_OFFSET_BITS 64 // NOLINT: what makes fseeko take 64 bits on 32-bit systems
#endif

#include "linking/pno/BinaryInput.h"

#ifndef _WIN32
#include <sys/types.h>
#endif

namespace pno {
namespace {

bool seekFrom(std::FILE* file, std::int64_t position, int origin)
{
#ifdef _WIN32
    return _fseeki64(file, position, origin) == 0;
#else
    static_assert(sizeof(off_t) >= sizeof position, "panoramas may lie beyond 2 GiB of a file");
    return fseeko(file, position, origin) == 0;
#endif
}

std::int64_t tell(std::FILE* file)
{
#ifdef _WIN32
    return _ftelli64(file);
#else
    return ftello(file);
#endif
}

} // namespace

BinaryInput::BinaryInput(const char* path)
    : m_file(path ? std::fopen(path, "rb") : nullptr)
{
    // Everything is read in whole blocks right after a seek: a buffer would only read bytes nobody asked for.
    if (m_file) std::setvbuf(m_file.get(), nullptr, _IONBF, 0);
}

bool BinaryInput::seek(std::int64_t position)
{
    return seekFrom(m_file.get(), position, SEEK_SET);
}

bool BinaryInput::read(void* target, std::size_t bytes)
{
    return bytes == 0 || std::fread(target, 1, bytes, m_file.get()) == bytes;
}

std::int64_t BinaryInput::measure()
{
    if (!seekFrom(m_file.get(), 0, SEEK_END)) return -1;
    const std::int64_t length = tell(m_file.get());
    return seek(0) ? length : -1;
}

} // namespace pno
