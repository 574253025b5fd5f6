// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/input/Exif.h"

#include <cctype>
#include <cstdio>
#include <cstring>

namespace pnotool {
namespace {

constexpr std::uint16_t kDateTime = 0x0132;
constexpr std::uint16_t kExifDirectory = 0x8769;
constexpr std::uint16_t kDateTimeOriginal = 0x9003;
constexpr std::uint16_t kSubSecTimeOriginal = 0x9291;
constexpr std::uint16_t kTypeText = 2;

/// Reads numbers out of the block; beyond its end they are 0.
class Block
{
public:
    explicit Block(const std::string& bytes)
        : m_bytes(bytes)
        , m_bigEndian(bytes.compare(0, 2, "MM") == 0)
    {}

    std::uint32_t number(std::uint64_t at, int width) const
    {
        std::uint32_t value = 0;
        if (at + static_cast<std::uint64_t>(width) > m_bytes.size()) return 0;
        for (int i = 0; i < width; ++i) {
            const int place = m_bigEndian ? i : width - 1 - i;
            value = value << 8 | static_cast<std::uint8_t>(m_bytes[at + static_cast<std::uint64_t>(place)]);
        }
        return value;
    }

    /// Position of a directory's entry; 0 when it has none.
    std::uint64_t entry(std::uint64_t directory, std::uint16_t tag) const
    {
        const std::uint32_t count = number(directory, 2);
        for (std::uint32_t i = 0; i < count; ++i)
            if (number(directory + 2 + 12ULL * i, 2) == tag) return directory + 2 + 12ULL * i;
        return 0;
    }

    std::string text(std::uint64_t directory, std::uint16_t tag) const
    {
        const std::uint64_t at = entry(directory, tag);
        if (at == 0 || number(at + 2, 2) != kTypeText) return {};
        const std::uint32_t size = number(at + 4, 4);
        const std::uint64_t start = size <= 4 ? at + 8 : number(at + 8, 4);
        if (start + size > m_bytes.size()) return {};
        return std::string(m_bytes.substr(start, size).c_str());
    }

private:
    const std::string& m_bytes;
    bool m_bigEndian;
};

bool valid(const CaptureMoment& moment)
{
    return moment.year >= 1970 && moment.year <= 2100 && moment.month >= 1 && moment.month <= 12 &&
           moment.day >= 1 && moment.day <= 31 && moment.hour <= 23 && moment.minute <= 59 &&
           moment.second <= 59;
}

std::uint32_t milliseconds(const std::string& digits)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const bool digit = i < digits.size() && std::isdigit(static_cast<unsigned char>(digits[i])) != 0;
        value = value * 10 + (digit ? static_cast<std::uint32_t>(digits[i] - '0') : 0);
    }
    return value;
}

} // namespace

std::optional<CaptureMoment> momentFromExif(const std::string& block)
{
    if (block.size() < 8 || (block.compare(0, 2, "II") != 0 && block.compare(0, 2, "MM") != 0))
        return std::nullopt;
    const Block data(block);
    const std::uint64_t first = data.number(4, 4);
    if (const std::uint64_t pointer = data.entry(first, kExifDirectory)) {
        const std::uint64_t exif = data.number(pointer + 8, 4);
        const auto moment =
            momentFromExifText(data.text(exif, kDateTimeOriginal), data.text(exif, kSubSecTimeOriginal));
        if (moment) return moment;
    }
    return momentFromExifText(data.text(first, kDateTime), "");
}

std::optional<CaptureMoment> momentFromExifText(const std::string& text, const std::string& fraction)
{
    CaptureMoment moment;
    if (std::sscanf(text.c_str(), "%4u:%2u:%2u %2u:%2u:%2u", &moment.year, &moment.month, &moment.day,
                    &moment.hour, &moment.minute, &moment.second) != 6 ||
        !valid(moment))
        return std::nullopt;
    moment.millisecond = milliseconds(fraction);
    return moment;
}

std::optional<CaptureMoment> momentFromIso8601(const std::string& text)
{
    CaptureMoment moment;
    int used = 0;
    if (std::sscanf(text.c_str(), "%4u-%2u-%2u%n", &moment.year, &moment.month, &moment.day, &used) != 3)
        return std::nullopt;
    std::string rest = text.substr(static_cast<std::size_t>(used));
    const auto take = [&](const char* format, std::uint32_t& value) {
        int taken = 0;
        if (std::sscanf(rest.c_str(), format, &value, &taken) != 1 || taken == 0) return false;
        rest.erase(0, static_cast<std::size_t>(taken));
        return true;
    };
    if (!rest.empty()) {
        if ((rest[0] != 'T' && rest[0] != ' ') || (rest[0] = 'T', !take("T%2u%n", moment.hour)) ||
            !take(":%2u%n", moment.minute))
            return std::nullopt;
        if (rest[0] == ':' && !take(":%2u%n", moment.second)) return std::nullopt;
        if (rest[0] == '.' || rest[0] == ',') {
            moment.millisecond = milliseconds(rest.substr(1));
            rest.erase(0, 1 + std::strspn(rest.c_str() + 1, "0123456789"));
        }
        std::uint32_t zone = 0;
        if (rest == "Z")
            rest.clear();
        else if (rest[0] == '+' || rest[0] == '-') {
            rest[0] = '+';
            if (!take("+%2u%n", zone) || (rest[0] == ':' && rest.erase(0, 1).empty())) return std::nullopt;
            if (!rest.empty() && !take("%2u%n", zone)) return std::nullopt;
        }
    }
    if (!rest.empty() || !valid(moment)) return std::nullopt;
    return moment;
}

} // namespace pnotool
