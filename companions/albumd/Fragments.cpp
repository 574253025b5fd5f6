// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/Fragments.h"

#include "companions/albumd/Names.h"

#include <charconv>
#include <cmath>

namespace albumd {
namespace {

constexpr double kLargest = 1e12; ///< of any number; keeps sums and the page's arithmetic finite

bool toNumber(std::string_view text, double* value)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), *value);
    return error == std::errc() && end == text.data() + text.size() && std::isfinite(*value) &&
           std::fabs(*value) < kLargest;
}

bool toNumber(std::string_view text, std::int64_t* value)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), *value);
    return error == std::errc() && end == text.data() + text.size() &&
           std::fabs(static_cast<double>(*value)) < kLargest;
}

/// Takes the fragment apart from its start; after the first thing that does not fit nothing does.
class Cursor
{
public:
    explicit Cursor(std::string_view text)
        : m_rest(text)
        , m_good(isUtf8(text))
    {}

    Cursor& expect(std::string_view token)
    {
        m_good = m_good && m_rest.substr(0, token.size()) == token;
        if (m_good) m_rest.remove_prefix(token.size());
        return *this;
    }

    /// A blank, the name, "=" with or without blanks around it, and the opening quotation mark.
    Cursor& attribute(std::string_view name)
    {
        expect(" ").expect(name);
        skipBlanks();
        expect("=");
        skipBlanks();
        return expect("\"");
    }

    template <typename Value>
    Cursor& number(std::string_view name, Value* value)
    {
        attribute(name);
        m_good = m_good && toNumber(until("\""), value);
        return *this;
    }

    Cursor& text(std::string_view name, std::string* value)
    {
        attribute(name);
        *value = until("\"");
        return *this;
    }

    /// Blanks, tabs and line ends, as far as they go.
    Cursor& space()
    {
        while (!m_rest.empty() && std::string_view(" \t\r\n").find(m_rest[0]) != std::string_view::npos)
            m_rest.remove_prefix(1);
        return *this;
    }

    bool atEnd() const { return m_good && m_rest.empty(); }
    bool good() const { return m_good; }
    std::string_view rest() const { return m_rest; }

private:
    void skipBlanks()
    {
        while (!m_rest.empty() && m_rest[0] == ' ')
            m_rest.remove_prefix(1);
    }

    /// What stands before the next `mark`, which is taken, too.
    std::string_view until(std::string_view mark)
    {
        const std::size_t found = m_rest.find(mark);
        m_good = m_good && found != std::string_view::npos;
        if (!m_good) return {};
        const std::string_view value = m_rest.substr(0, found);
        m_rest.remove_prefix(found + mark.size());
        return value;
    }

    std::string_view m_rest;
    bool m_good;
};

bool endsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

void replaceAll(std::string& text, std::string_view what, std::string_view by)
{
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
        text.replace(at, what.size(), by);
}

std::string unescaped(std::string_view content)
{
    std::string text(content);
    replaceAll(text, "&lt;", "<");
    replaceAll(text, "&gt;", ">");
    replaceAll(text, "&amp;", "&");
    return text;
}

std::string goodPhotoName(std::string_view name)
{
    return isPhotoName(name) ? std::string(name) : std::string();
}

/// Start of the next hotspot at the beginning of a line, `from` or later; npos without one. A caption cannot
/// hold a line end, and content holds no "<".
std::size_t nextHotspot(std::string_view text, std::size_t from)
{
    for (std::size_t at = from; (at = text.find("<link_", at)) != std::string_view::npos; ++at) {
        std::size_t line = at;
        while (line > 0 && (text[line - 1] == '\t' || text[line - 1] == ' '))
            --line;
        if (line == 0 || text[line - 1] == '\n') return at;
    }
    return std::string_view::npos;
}

/// `text`: what follows the coordinates, without space at its end.
bool readPhotoTail(std::string_view text, Hotspot* hotspot)
{
    constexpr std::string_view kSource = "\" src=\"";
    const std::size_t source = text.rfind(kSource);
    if (source == std::string_view::npos || !endsWith(text, "\"/>") ||
        source + kSource.size() + 3 > text.size())
        return false;
    hotspot->caption = text.substr(0, source);
    text.remove_prefix(source + kSource.size());
    hotspot->content = goodPhotoName(text.substr(0, text.size() - 3));
    return true;
}

bool readInfoTail(std::string_view text, Hotspot* hotspot)
{
    constexpr std::string_view kEnd = "</link_info>";
    if (!endsWith(text, kEnd)) return false;
    text.remove_suffix(kEnd.size());
    const std::size_t close = text.rfind("\">"); // content holds no ">"
    if (close == std::string_view::npos) return false;
    hotspot->caption = text.substr(0, close);
    hotspot->content = unescaped(text.substr(close + 2));
    return true;
}

bool readHotspot(std::string_view text, Hotspot* hotspot)
{
    while (!text.empty() && std::string_view(" \t\r\n").find(text.back()) != std::string_view::npos)
        text.remove_suffix(1);
    hotspot->isPhoto = text.substr(0, 11) == "<link_photo";
    Cursor cursor(text);
    cursor.expect(hotspot->isPhoto ? "<link_photo" : "<link_info")
        .number("sphere_x", &hotspot->x)
        .number("sphere_y", &hotspot->y)
        .attribute("caption");
    return cursor.good() &&
           (hotspot->isPhoto ? readPhotoTail(cursor.rest(), hotspot) : readInfoTail(cursor.rest(), hotspot));
}

} // namespace

bool readLocation(std::string_view text, Location* location)
{
    Location read;
    Cursor cursor(text);
    cursor.space()
        .expect("<location")
        .number("position_x", &read.x)
        .number("position_y", &read.y)
        .number("position_z", &read.z)
        .number("vertex_x", &read.vertex_x)
        .number("vertex_y", &read.vertex_y)
        .number("direction", &read.direction)
        .number("plan_center_x", &read.plan_x)
        .number("plan_center_y", &read.plan_y)
        .text("plan_src", &read.plan)
        .expect("/>")
        .space();
    if (!cursor.atEnd()) return false;
    read.plan = goodPhotoName(read.plan);
    *location = std::move(read);
    return true;
}

bool readLink(std::string_view text, Link* link)
{
    Link read;
    Cursor cursor(text);
    cursor.space()
        .expect("<pano_link")
        .text("pano_id_0", &read.pano_0)
        .text("pano_id_1", &read.pano_1)
        .number("rot_0", &read.rot_0)
        .number("rot_1", &read.rot_1)
        .number("tilt_x0", &read.tilt_x0)
        .number("tilt_x1", &read.tilt_x1)
        .number("tilt_y0", &read.tilt_y0)
        .number("icon_y0", &read.icon_y0)
        .number("icon_y1", &read.icon_y1)
        .number("spacing", &read.spacing)
        .number("mode", &read.mode)
        .expect("/>")
        .space();
    if (!cursor.atEnd() || !isPanoramaId(read.pano_0) || !isPanoramaId(read.pano_1) ||
        read.pano_0 == read.pano_1)
        return false;
    *link = std::move(read);
    return true;
}

bool readHotspots(std::string_view text, std::vector<Hotspot>* hotspots)
{
    std::vector<Hotspot> read;
    Cursor start(text);
    if (start.space().atEnd()) {
        hotspots->clear();
        return true;
    }
    if (!start.good()) return false;
    text = start.rest();
    if (nextHotspot(text, 0) != 0) return false;
    for (std::size_t at = 0; at != std::string_view::npos;) {
        const std::size_t next = nextHotspot(text, at + 1);
        Hotspot hotspot;
        if (read.size() == kMostHotspots || !readHotspot(text.substr(at, next - at), &hotspot)) return false;
        read.push_back(std::move(hotspot));
        at = next;
    }
    *hotspots = std::move(read);
    return true;
}

} // namespace albumd
