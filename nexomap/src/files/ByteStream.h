// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

namespace nexomap {

/// Appends numbers little-endian, whatever the machine's order.
class ByteWriter
{
public:
    template <class Number>
    void put(Number value)
    {
        static_assert(std::is_arithmetic_v<Number>, "numbers only");
        std::uint64_t bits = 0;
        if constexpr (std::is_floating_point_v<Number>) {
            std::conditional_t<sizeof(Number) == 8, std::uint64_t, std::uint32_t> raw;
            std::memcpy(&raw, &value, sizeof raw);
            bits = raw;
        } else {
            bits = static_cast<std::uint64_t>(value);
        }
        for (std::size_t k = 0; k < sizeof(Number); ++k)
            bytes.push_back(std::uint8_t(bits >> (8 * k)));
    }
    /// Exactly `width` bytes, filled up with zeros.
    void putText(const std::string& text, std::size_t width)
    {
        for (std::size_t k = 0; k < width; ++k)
            bytes.push_back(k < text.size() ? std::uint8_t(text[k]) : 0);
    }

    std::vector<std::uint8_t> bytes;
};

/// Reads what ByteWriter wrote. Past the end it gives zeros and says so; nothing is allocated by what it
/// reads.
class ByteReader
{
public:
    ByteReader(const std::uint8_t* data, std::size_t size)
        : m_data(data)
        , m_size(size)
    {}

    template <class Number>
    Number get()
    {
        std::uint64_t bits = 0;
        if (left() < sizeof(Number)) {
            m_failed = true;
            m_at = m_size;
            return Number(0);
        }
        for (std::size_t k = 0; k < sizeof(Number); ++k)
            bits |= std::uint64_t(m_data[m_at++]) << (8 * k);
        if constexpr (std::is_floating_point_v<Number>) {
            const auto raw =
                static_cast<std::conditional_t<sizeof(Number) == 8, std::uint64_t, std::uint32_t>>(bits);
            Number value;
            std::memcpy(&value, &raw, sizeof value);
            return value;
        } else {
            return static_cast<Number>(bits);
        }
    }
    /// Up to the first zero of a field of `width` bytes.
    std::string getText(std::size_t width)
    {
        std::string text;
        bool ended = false;
        for (std::size_t k = 0; k < width; ++k) {
            const auto c = get<std::uint8_t>();
            ended = ended || c == 0;
            if (!ended) text.push_back(char(c));
        }
        return text;
    }

    std::size_t left() const { return m_size - m_at; }
    bool failed() const { return m_failed; }

private:
    const std::uint8_t* m_data;
    std::size_t m_size, m_at = 0;
    bool m_failed = false;
};

} // namespace nexomap
