// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/pnomaker/Metadata.h"

#include <cstdint>

namespace pnotest {
namespace {

std::string number(std::uint32_t value, int bytes, bool bigEndian)
{
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> (8 * (bigEndian ? bytes - 1 - i : i)));
    return text;
}

} // namespace

std::string exifBlock(const std::string& time, const std::string& fraction, bool bigEndian)
{
    const auto n = [&](std::uint32_t value, int bytes) { return number(value, bytes, bigEndian); };
    const std::string timeText = time + '\0', fractionText = fraction + '\0';
    // Header 8, first directory 2 + 12 + 4, second 2 + 24 + 4, then the texts.
    constexpr std::uint32_t kSecond = 26, kTexts = 56;
    std::string block = bigEndian ? "MM" : "II";
    block += n(42, 2) + n(8, 4);
    block += n(1, 2) + n(0x8769, 2) + n(4, 2) + n(1, 4) + n(kSecond, 4) + n(0, 4);
    block +=
        n(2, 2) + n(0x9003, 2) + n(2, 2) + n(static_cast<std::uint32_t>(timeText.size()), 4) + n(kTexts, 4);
    block += n(0x9291, 2) + n(2, 2) + n(static_cast<std::uint32_t>(fractionText.size()), 4);
    if (fractionText.size() <= 4)
        block += (fractionText + std::string(4, '\0')).substr(0, 4);
    else
        block += n(kTexts + static_cast<std::uint32_t>(timeText.size()), 4);
    return block + n(0, 4) + timeText + (fractionText.size() > 4 ? fractionText : std::string());
}

std::string gpanoPacket(const std::string& prefix, const std::array<int, 6>& crop,
                        const std::string& projection)
{
    static constexpr std::array<const char*, 6> kNames = {
        "FullPanoWidthPixels",          "FullPanoHeightPixels",  "CroppedAreaImageWidthPixels",
        "CroppedAreaImageHeightPixels", "CroppedAreaLeftPixels", "CroppedAreaTopPixels"};
    std::string packet =
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/"
        "22-rdf-syntax-ns#\"><rdf:Description rdf:about=\"\" xmlns:" +
        prefix + "=\"http://ns.google.com/photos/1.0/panorama/\" " + prefix + ":UsePanoramaViewer=\"True\" " +
        prefix + ":ProjectionType=\"" + projection + "\"";
    for (std::size_t i = 0; i < kNames.size(); ++i)
        packet += " " + prefix + ":" + kNames[i] + "=\"" + std::to_string(crop[i]) + "\"";
    return packet + "/></rdf:RDF></x:xmpmeta>";
}

} // namespace pnotest
