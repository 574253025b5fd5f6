// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Failure.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <vector>

namespace nexomap {

/// A folder for what a merge lays aside, inside the working folder; gone when the merge ends, however it
/// ends. What a merge that was killed left there is removed first.
class SpillFolder
{
public:
    /// @param budget_bytes  what all spills together may keep in memory
    SpillFolder(const std::filesystem::path& working_folder, std::size_t budget_bytes);
    ~SpillFolder();
    SpillFolder(const SpillFolder&) = delete;
    SpillFolder& operator=(const SpillFolder&) = delete;

    static const char* name() { return "merge-spill"; }

    std::filesystem::path newFile();
    std::size_t budget() const { return m_budget; }
    std::size_t inMemory() const { return m_in_memory; }
    void account(std::ptrdiff_t bytes) { m_in_memory = std::size_t(std::ptrdiff_t(m_in_memory) + bytes); }

private:
    std::filesystem::path m_path;
    std::size_t m_budget, m_in_memory = 0;
    int m_files = 0;
};

/// Bytes appended to a file. @throws Failure(NEXOMAP_CANNOT_WRITE)
void appendBytes(const std::filesystem::path& path, const void* bytes, std::size_t size);
/// @return how many bytes there were, up to `size`. @throws Failure(NEXOMAP_CANNOT_WRITE)
std::size_t readBytes(const std::filesystem::path& path, std::uint64_t offset, void* bytes, std::size_t size);

/// A sequence of plain records that goes to disk when told to. Records keep their order.
template <class Record>
class Spill
{
public:
    explicit Spill(SpillFolder& folder)
        : m_folder(&folder)
    {}

    void append(const Record* records, std::size_t count)
    {
        const std::size_t held = m_recent.capacity();
        m_recent.insert(m_recent.end(), records, records + count);
        // What is allocated counts: growing lists hold up to twice what is in them.
        m_folder->account(std::ptrdiff_t((m_recent.capacity() - held) * sizeof(Record)));
        m_size += count;
    }
    std::uint64_t size() const { return m_size; }
    std::size_t recentBytes() const { return m_recent.size() * sizeof(Record); }
    /// Writes what is in memory to disk.
    void flush()
    {
        if (m_recent.empty()) return;
        if (m_path.empty()) m_path = m_folder->newFile();
        appendBytes(m_path, m_recent.data(), recentBytes());
        m_on_disk += m_recent.size();
        m_folder->account(-std::ptrdiff_t(m_recent.capacity() * sizeof(Record)));
        std::vector<Record>().swap(m_recent); // assigning {} would keep the memory
    }
    /// Piece by piece. @param take  (const Record*, std::size_t)
    template <class Take>
    void forEachBlock(const Take& take) const
    {
        constexpr std::size_t kPiece = 1 << 16;
        std::vector<Record> piece;
        for (std::uint64_t from = 0; from < m_on_disk; from += piece.size()) {
            piece.resize(std::size_t(std::min<std::uint64_t>(kPiece, m_on_disk - from)));
            const std::size_t bytes = piece.size() * sizeof(Record);
            if (readBytes(m_path, from * sizeof(Record), piece.data(), bytes) != bytes)
                throw Failure(NEXOMAP_CANNOT_WRITE, "cannot read back " + m_path.string());
            take(piece.data(), piece.size());
        }
        if (!m_recent.empty()) take(m_recent.data(), m_recent.size());
    }

private:
    SpillFolder* m_folder;
    std::filesystem::path m_path;
    std::vector<Record> m_recent;
    std::uint64_t m_size = 0, m_on_disk = 0;
};

} // namespace nexomap
