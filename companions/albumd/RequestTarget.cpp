// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/RequestTarget.h"

#include "companions/albumd/Names.h"

#include <charconv>
#include <cmath>

namespace albumd {
namespace {

int digitOf(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::string decoded(std::string_view text)
{
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const int high = text[at] == '%' && at + 2 < text.size() ? digitOf(text[at + 1]) : -1;
        const int low = high >= 0 ? digitOf(text[at + 2]) : -1;
        if (low >= 0) {
            plain += static_cast<char>(high * 16 + low);
            at += 2;
        } else {
            plain += text[at];
        }
    }
    return plain;
}

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

} // namespace

RequestTarget::RequestTarget(std::string_view target)
{
    const std::size_t query = target.find('?');
    m_path = target.substr(0, query);
    if (query == std::string_view::npos) return;
    for (const std::string_view item : split(target.substr(query + 1), '&')) {
        const std::size_t equals = item.find('=');
        if (equals == std::string_view::npos) continue;
        std::string value = decoded(item.substr(equals + 1));
        m_items.emplace_back(decoded(item.substr(0, equals)),
                             isUtf8(value) ? std::move(value) : std::string());
    }
}

std::vector<std::string> RequestTarget::parts() const
{
    std::vector<std::string> all;
    for (const std::string_view part : split(std::string_view(m_path).substr(m_path.empty() ? 0 : 1), '/'))
        all.emplace_back(part);
    return all;
}

std::string RequestTarget::item(std::string_view name) const
{
    for (const auto& [each, value] : m_items)
        if (each == name) return value;
    return std::string();
}

std::optional<double> RequestTarget::number(std::string_view name) const
{
    const std::string text = item(name);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

} // namespace albumd
