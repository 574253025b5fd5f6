// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/Spill.h"

#include <fstream>

namespace nexomap {

namespace fs = std::filesystem;

SpillFolder::SpillFolder(const fs::path& working_folder, std::size_t budget_bytes)
    : m_path(working_folder / name())
    , m_budget(budget_bytes)
{
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

SpillFolder::~SpillFolder()
{
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

fs::path SpillFolder::newFile()
{
    std::error_code error;
    fs::create_directory(m_path, error);
    if (error) throw Failure(NEXOMAP_CANNOT_WRITE, "cannot make " + m_path.string() + ": " + error.message());
    return m_path / std::to_string(m_files++);
}

void appendBytes(const fs::path& path, const void* bytes, std::size_t size)
{
    std::ofstream file(path, std::ios::binary | std::ios::app);
    file.write(static_cast<const char*>(bytes), std::streamsize(size));
    file.close();
    if (file.fail()) throw Failure(NEXOMAP_CANNOT_WRITE, "cannot write " + path.string());
}

std::size_t readBytes(const fs::path& path, std::uint64_t offset, void* bytes, std::size_t size)
{
    std::ifstream file(path, std::ios::binary);
    file.seekg(std::streamoff(offset));
    file.read(static_cast<char*>(bytes), std::streamsize(size));
    return std::size_t(file.gcount());
}

} // namespace nexomap
