// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/input/SphereFacts.h"

#include <charconv>

namespace pnotool {
namespace {

constexpr char kNamespace[] = "http://ns.google.com/photos/1.0/panorama/";
constexpr char kBlanks[] = " \t\r\n";

std::string namespacePrefix(const std::string& xmp)
{
    const std::size_t uri = xmp.find(kNamespace);
    const std::size_t binding = uri == std::string::npos ? uri : xmp.rfind("xmlns:", uri);
    if (binding == std::string::npos) return {};
    const std::size_t start = binding + 6;
    return xmp.substr(start, xmp.find_first_of(" \t\r\n=", start) - start);
}

/// Value of prefix:name, as prefix:name="value" or <prefix:name>value</prefix:name>; empty when not there.
std::string property(const std::string& xmp, const std::string& name)
{
    for (std::size_t at = xmp.find(name); at != std::string::npos; at = xmp.find(name, at + 1)) {
        std::size_t next = at + name.size();
        if (at > 0 && xmp[at - 1] == '<' && next < xmp.size() && xmp[next] == '>')
            return xmp.substr(next + 1, xmp.find('<', next) - next - 1);
        next = xmp.find_first_not_of(kBlanks, next);
        if (next == std::string::npos || xmp[next] != '=') continue;
        next = xmp.find_first_not_of(kBlanks, next + 1);
        if (next == std::string::npos || (xmp[next] != '"' && xmp[next] != '\'')) continue;
        return xmp.substr(next + 1, xmp.find(xmp[next], next + 1) - next - 1);
    }
    return {};
}

bool number(const std::string& xmp, const std::string& name, double& value)
{
    const std::string text = property(xmp, name);
    const std::size_t start = text.find_first_not_of(kBlanks);
    if (start == std::string::npos) return false;
    return std::from_chars(text.data() + start, text.data() + text.size(), value).ec == std::errc();
}

} // namespace

SphereFacts sphereFacts(const std::string& xmp)
{
    SphereFacts facts;
    std::string prefix = namespacePrefix(xmp);
    if (prefix.empty()) return facts;
    prefix += ':';
    facts.projection = property(xmp, prefix + "ProjectionType");
    SphereCrop crop;
    if (number(xmp, prefix + "FullPanoWidthPixels", crop.full_width) &&
        number(xmp, prefix + "FullPanoHeightPixels", crop.full_height) &&
        number(xmp, prefix + "CroppedAreaImageWidthPixels", crop.width) &&
        number(xmp, prefix + "CroppedAreaImageHeightPixels", crop.height) &&
        number(xmp, prefix + "CroppedAreaLeftPixels", crop.left) &&
        number(xmp, prefix + "CroppedAreaTopPixels", crop.top))
        facts.crop = crop;
    return facts;
}

} // namespace pnotool
