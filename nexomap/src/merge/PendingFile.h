// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>

namespace nexomap {

/// A file that appears under its name only when it is whole: it grows beside its place and is removed again
/// unless it is finished. Several can be made whole first and finished together.
/// Functions throw Failure(NEXOMAP_CANNOT_WRITE).
class PendingFile
{
public:
    explicit PendingFile(const std::filesystem::path& path);
    PendingFile(PendingFile&& other) noexcept;
    PendingFile& operator=(PendingFile&&) = delete;
    ~PendingFile();

    void write(const void* data, std::size_t size);
    /// Anywhere in the file; what was never written reads as zeros.
    void writeAt(std::uint64_t offset, const void* data, std::size_t size);
    /// Everything is on its way to the disk, and nothing failed until here. No writing afterwards.
    void close();
    /// Closes, then takes the file's place.
    void finish();
    /// Where the bytes stand until then.
    const std::filesystem::path& placeholder() const { return m_part; }

private:
    void check(bool good);

    std::filesystem::path m_path, m_part; ///< m_part is empty when nothing is left to remove
    std::ofstream m_file;
};

} // namespace nexomap
