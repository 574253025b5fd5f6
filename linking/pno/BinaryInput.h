// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>

/// Reading of binary files with 64-bit positions on every system.
namespace pno {

class BinaryInput
{
public:
    /// @param path  zero-terminated, local 8-bit encoding; null counts as a file that cannot be opened
    explicit BinaryInput(const char* path);

    bool isOpen() const { return m_file != nullptr; }
    /// False for a negative position, too.
    bool seek(std::int64_t position);
    /// False when fewer bytes are there. `bytes` may be 0.
    bool read(void* target, std::size_t bytes);
    /// Bytes from the file's start to its end, -1 on failure; leaves the position at the start.
    std::int64_t measure();

private:
    struct Close
    {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Close> m_file;
};

} // namespace pno
