// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/support/TestFiles.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

namespace fs = std::filesystem;

namespace pnotest {
namespace {

[[noreturn]] void giveUp(const std::string& what)
{
    std::fprintf(stderr, "test files: cannot make %s\n", what.c_str());
    std::abort();
}

} // namespace

TemporaryFolder::TemporaryFolder()
{
    std::random_device seed;
    for (int attempt = 0; attempt < 100; ++attempt) {
        const fs::path path =
            fs::temp_directory_path() / ("tw-test-" + std::to_string(seed()) + std::to_string(seed()));
        std::error_code error;
        if (!fs::create_directory(path, error)) continue;
        m_path = path.u8string();
        return;
    }
    giveUp("a temporary folder");
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    fs::remove_all(fs::u8path(m_path), ignored);
}

std::string TemporaryFolder::write(const std::string& name, const Bytes& bytes) const
{
    const std::string full = path(name);
    std::error_code ignored;
    fs::create_directories(fs::u8path(full).parent_path(), ignored);
    // A new file: some file systems flush one that is cut and written again to the disk, and tests write
    // many.
    fs::remove(fs::u8path(full), ignored);
    std::ofstream file(fs::u8path(full), std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) giveUp(full);
    return full;
}

} // namespace pnotest
