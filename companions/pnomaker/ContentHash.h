// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>

namespace pnomaker {

/// A 64-bit hash of a stream of bytes, for naming contents (not against forgery). The same stream gives the
/// same value on every machine, however it is cut into pieces.
class ContentHash
{
public:
    void add(const std::uint8_t* bytes, std::size_t size);
    std::uint64_t value() const;

private:
    void mix(const std::uint8_t* block);

    static constexpr std::size_t kBlock = 32;
    std::uint64_t m_lanes[4] = {0x9E3779B97F4A7C15u, 0xC2B2AE3D27D4EB4Fu, 0x165667B19E3779F9u,
                                0x27D4EB2F165667C5u};
    std::uint64_t m_size = 0;
    std::uint8_t m_rest[kBlock] = {};
    std::size_t m_restSize = 0;
};

} // namespace pnomaker
