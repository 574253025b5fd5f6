// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/AlbumPage.h"

#include "companions/albumd/WebFiles.h"

#include <utility>

namespace albumd {
namespace {

constexpr const char* kPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; "
    "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

/// Fills every {{name}} of a page in one go, so that nothing that was filled in is filled again.
std::string filled(std::string_view page,
                   std::initializer_list<std::pair<std::string_view, std::string>> values)
{
    std::string html;
    for (;;) {
        const std::size_t open = page.find("{{");
        html += page.substr(0, open);
        if (open == std::string_view::npos) return html;
        const std::size_t close = page.find("}}", open);
        const std::string_view name = page.substr(open + 2, close - open - 2);
        for (const auto& [each, value] : values)
            if (each == name) html += escapedForHtml(value);
        page.remove_prefix(close + 2);
    }
}

} // namespace

std::string escapedForHtml(const std::string& text)
{
    std::string safe;
    for (const char c : text) {
        if (c == '&')
            safe += "&amp;";
        else if (c == '<')
            safe += "&lt;";
        else if (c == '>')
            safe += "&gt;";
        else if (c == '"')
            safe += "&quot;";
        else if (c == '\'')
            safe += "&#39;";
        else
            safe += c;
    }
    return safe;
}

std::string albumPage(const Album& album, bool chinese)
{
    return filled(
        webFile("album.html"),
        {{"language", chinese ? "zh" : "en"},
         {"name", album.name},
         {"album", album.id},
         {"noScript", chinese ? "请在浏览器中启用 JavaScript 以浏览此漫游。"
                              : "Please let JavaScript run in your browser to walk through this tour."}});
}

std::string missingPage(bool chinese)
{
    return filled(webFile("missing.html"),
                  {{"language", chinese ? "zh" : "en"},
                   {"title", chinese ? "相册不存在" : "No such album"},
                   {"text", chinese ? "这里没有相册。请检查地址。"
                                    : "There is no album at this address. Please check the address."}});
}

void setPage(httplib::Response& response, const std::string& html)
{
    response.headers.erase("Content-Security-Policy");
    response.set_header("Content-Security-Policy", kPolicy);
    response.set_content(html, "text/html; charset=utf-8");
}

} // namespace albumd
