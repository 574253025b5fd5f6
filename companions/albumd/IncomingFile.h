// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A file on its way in: written piece by piece, brought to the disk, then moved to its place in one step.

#pragma once

#include <cstdint>
#include <string>

namespace albumd {

/// Gone on destruction unless it was moved.
class IncomingFile
{
public:
    /// @param path  must not exist yet
    explicit IncomingFile(std::string path);
    ~IncomingFile();
    IncomingFile(IncomingFile&& other) noexcept;
    IncomingFile(const IncomingFile&) = delete;
    IncomingFile& operator=(const IncomingFile&) = delete;

    [[nodiscard]] bool write(const char* data, std::size_t size);

    /// Brings the bytes to the disk and closes the file.
    [[nodiscard]] bool finish();

    /// Moves the finished file; it has its new name for good when this returns true.
    [[nodiscard]] bool moveTo(const std::string& path);

    const std::string& path() const { return m_path; }
    std::int64_t bytes() const { return m_bytes; }

private:
    std::string m_path;
    int m_handle = -1;
    std::int64_t m_bytes = 0;
    bool m_made = false;
};

/// Brings a folder's entries to the disk, where the system has a call for it.
[[nodiscard]] bool flushFolder(const std::string& folder);

} // namespace albumd
