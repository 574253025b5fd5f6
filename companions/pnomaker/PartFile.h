// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace pnomaker {

/// An output file that appears under its name only when whole: written beside it as NAME.part-PROCESS,
/// flushed to the disk and renamed. Destroyed before that, it leaves nothing behind.
class PartFile
{
public:
    /// @param path  local 8-bit encoding
    explicit PartFile(std::string path);
    ~PartFile();
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    /// The name that an unfinished output of this process has, for those who must clear up after a signal.
    static std::string partName(const std::string& path);

    bool open();
    bool write(const void* data, std::size_t size);
    bool seek(std::int64_t position);
    bool commit(); ///< false: nothing of it is left, an earlier file of that name stands untouched
    std::int64_t written() const { return m_written; } ///< bytes handed to write() so far
    std::string error() const;                         ///< one line, after a false

private:
    bool fail(const char* what);

    std::string m_path;
    std::string m_part;
    std::FILE* m_file = nullptr;
    bool m_made = false;
    std::int64_t m_written = 0;
    std::string m_error;
};

} // namespace pnomaker
