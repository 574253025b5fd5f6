// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/WebFiles.h"

namespace albumd {
namespace {

const char* typeOf(std::string_view name)
{
    const std::string_view ending = name.substr(std::min(name.rfind('.'), name.size()));
    if (ending == ".js") return "text/javascript; charset=utf-8";
    if (ending == ".css") return "text/css; charset=utf-8";
    if (ending == ".svg") return "image/svg+xml";
    return nullptr; // the page itself is filled in first
}

} // namespace

std::string_view webFile(std::string_view name)
{
    for (const WebFile* file = kWebFiles; file->name; ++file)
        if (file->name == name) return {reinterpret_cast<const char*>(file->bytes), file->size};
    return {};
}

bool answerWebFile(const std::string& name, httplib::Response& response)
{
    const std::string_view file = webFile(name);
    const char* const type = typeOf(name);
    if (file.empty() || !type) return false;
    response.status = 200;
    response.set_header("Cache-Control", "no-cache");
    response.set_content(file.data(), file.size(), type);
    return true;
}

} // namespace albumd
