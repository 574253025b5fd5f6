// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/CloudViews.h"

#include "companions/albumd/CloudTopView.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <iterator>

namespace albumd {
namespace {

std::string description(const StoredFile& cloud)
{
    return cloud.views + ".json";
}

/// Empty when there is no such file.
std::string contentOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

} // namespace

std::string CloudViews::picture(const StoredFile& cloud)
{
    return cloud.views + ".png";
}

std::string CloudViews::points(const StoredFile& cloud)
{
    return cloud.views + ".points";
}

std::optional<std::string> CloudViews::describe(const StoredFile& cloud)
{
    std::string text = contentOf(description(cloud));
    if (text.empty()) {
        const std::lock_guard<std::mutex> guard(m_making);
        text = contentOf(description(cloud));
        if (text.empty() && make(cloud)) text = contentOf(description(cloud));
    }
    if (text.size() < 3) return std::nullopt; // "{}": it cannot be read
    return text;
}

bool CloudViews::write(const std::string& path, const char* data, std::size_t size)
{
    IncomingFile file = m_files.incoming();
    return file.write(data, size) && file.finish() && file.moveTo(path);
}

bool CloudViews::make(const StoredFile& cloud)
{
    std::string text = "{}";
    if (const auto view = cloudTopView(cloud.path)) {
        const std::string png = encodePng(*view);
        if (png.empty() || !m_files.makeViewsFolder(cloud) ||
            !write(picture(cloud), png.data(), png.size()) ||
            !write(points(cloud), reinterpret_cast<const char*>(view->thinned.data()), view->thinned.size()))
            return false;
        text =
            nlohmann::json{{"width", view->width},   {"height", view->height}, {"left", view->left},
                           {"top", view->top},       {"points", view->points}, {"scale", view->pixels_per_m},
                           {"origin", view->origin}, {"step", view->step},     {"stepZ", view->step_z}}
                .dump();
    }
    // Last: where it stands, the others are whole.
    return m_files.makeViewsFolder(cloud) && write(description(cloud), text.data(), text.size());
}

} // namespace albumd
