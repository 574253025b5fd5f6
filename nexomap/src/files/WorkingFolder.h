// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace nexomap {

using Bytes = std::vector<std::uint8_t>;

/// The folder where the library leaves its files. Names are bare and in the system's local encoding. A file
/// appears under its name only when it is whole. Functions throw Failure(NEXOMAP_CANNOT_WRITE).
class WorkingFolder
{
public:
    /// @throws Failure(NEXOMAP_BAD_ARGUMENT) when the folder does not exist
    explicit WorkingFolder(const std::string& folder);

    std::filesystem::path pathOf(const std::string& name) const { return m_folder / name; }
    bool has(const std::string& name) const;
    void write(const std::string& name, const Bytes& bytes) const;
    /// All of them or none, as far as the file system lets us: every file is complete before any is renamed.
    void writeAll(const std::vector<std::pair<std::string, Bytes>>& files) const;
    /// Makes the file younger than all others of its ending, by at least one tick of the file system's clock.
    void makeNewest(const std::string& name) const;
    /// Missing files are fine.
    void remove(const std::string& name) const noexcept;

private:
    std::filesystem::path m_folder;
};

/// @throws Failure(NEXOMAP_BAD_FILE)
Bytes readFile(const std::filesystem::path& path);
/// Writes beside the file and renames. @throws Failure(NEXOMAP_CANNOT_WRITE)
void writeFile(const std::filesystem::path& path, const Bytes& bytes);

} // namespace nexomap
