// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/files/WorkingFolder.h"

#include "nexomap/src/Failure.h"

#include <chrono>
#include <fstream>

namespace nexomap {
namespace fs = std::filesystem;
namespace {

fs::path unfinished(const fs::path& path)
{
    fs::path name = path;
    name += ".part";
    return name;
}

void writeUnfinished(const fs::path& path, const Bytes& bytes)
{
    std::ofstream file(unfinished(path), std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    file.close();
    if (file.fail()) {
        std::error_code ignored;
        fs::remove(unfinished(path), ignored);
        throw Failure(NEXOMAP_CANNOT_WRITE, "cannot write " + path.string());
    }
}

void finish(const fs::path& path)
{
    std::error_code error;
    fs::rename(unfinished(path), path, error);
    if (!error) return;
    std::error_code ignored;
    fs::remove(unfinished(path), ignored);
    throw Failure(NEXOMAP_CANNOT_WRITE, "cannot write " + path.string() + ": " + error.message());
}

} // namespace

WorkingFolder::WorkingFolder(const std::string& folder)
    : m_folder(folder)
{
    std::error_code error;
    if (!fs::is_directory(m_folder, error)) throw Failure(NEXOMAP_BAD_ARGUMENT, "no such folder: " + folder);
}

bool WorkingFolder::has(const std::string& name) const
{
    std::error_code error;
    return fs::is_regular_file(pathOf(name), error);
}

void WorkingFolder::write(const std::string& name, const Bytes& bytes) const
{
    writeFile(pathOf(name), bytes);
}

void WorkingFolder::writeAll(const std::vector<std::pair<std::string, Bytes>>& files) const
{
    std::size_t written = 0;
    try {
        for (; written < files.size(); ++written)
            writeUnfinished(pathOf(files[written].first), files[written].second);
    } catch (const Failure&) {
        std::error_code ignored;
        for (std::size_t k = 0; k < written; ++k)
            fs::remove(unfinished(pathOf(files[k].first)), ignored);
        throw;
    }
    for (const auto& file : files)
        finish(pathOf(file.first));
}

void WorkingFolder::makeNewest(const std::string& name) const
{
    std::error_code error;
    const fs::path path = pathOf(name);
    fs::file_time_type newest = fs::file_time_type::min();
    for (const fs::directory_entry& entry : fs::directory_iterator(m_folder, error)) {
        if (entry.path().extension() != path.extension() || entry.path() == path) continue;
        const fs::file_time_type time = entry.last_write_time(error);
        if (!error) newest = std::max(newest, time);
    }
    // Programs compare to the millisecond at best; some file systems count in steps of two seconds.
    for (const auto tick : {std::chrono::milliseconds(20), std::chrono::milliseconds(2100)}) {
        const fs::file_time_type own = fs::last_write_time(path, error);
        if (error || newest == fs::file_time_type::min() || own >= newest + std::chrono::milliseconds(10))
            return;
        fs::last_write_time(path, newest + tick, error);
    }
}

void WorkingFolder::remove(const std::string& name) const noexcept
{
    std::error_code ignored;
    try {
        fs::remove(pathOf(name), ignored);
    } catch (...) { // no memory for a path: the file stays, which harms nobody
    }
}

Bytes readFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamoff size = file ? std::streamoff(file.tellg()) : -1;
    if (size < 0) throw Failure(NEXOMAP_BAD_FILE, "cannot open " + path.string());
    Bytes bytes(static_cast<std::size_t>(size));
    file.seekg(0);
    file.read(reinterpret_cast<char*>(bytes.data()), size);
    if (file.gcount() != size) throw Failure(NEXOMAP_BAD_FILE, "cannot read " + path.string());
    return bytes;
}

void writeFile(const fs::path& path, const Bytes& bytes)
{
    writeUnfinished(path, bytes);
    finish(path);
}

} // namespace nexomap
