// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/input/PictureSource.h"

#include "companions/pnotool/input/JpegSource.h"
#include "companions/pnotool/input/PngSource.h"
#include "companions/pnotool/input/TiffSource.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace pnotool {
namespace {

template <class Source>
std::unique_ptr<PictureSource> opened(const std::string& path, std::string& error)
{
    auto source = std::make_unique<Source>(path);
    if (source->open()) return source;
    error = source->error();
    return nullptr;
}

} // namespace

std::unique_ptr<PictureSource> openPicture(const std::string& path, std::string& error)
{
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        error = "this is a folder, not a picture";
        return nullptr;
    }
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) {
        error = std::string("cannot be read: ") + std::strerror(errno);
        return nullptr;
    }
    unsigned char head[8] = {};
    const std::size_t size = std::fread(head, 1, sizeof(head), file);
    std::fclose(file);
    if (size == 0) {
        error = "the file is empty";
        return nullptr;
    }
    if (size >= 3 && std::memcmp(head, "\xFF\xD8\xFF", 3) == 0) return opened<JpegSource>(path, error);
    if (size == 8 && std::memcmp(head, "\x89PNG\r\n\x1A\n", 8) == 0) return opened<PngSource>(path, error);
    if (size >= 4 && (std::memcmp(head, "II*\0", 4) == 0 || std::memcmp(head, "MM\0*", 4) == 0 ||
                      std::memcmp(head, "II+\0", 4) == 0 || std::memcmp(head, "MM\0+", 4) == 0))
        return opened<TiffSource>(path, error);
    error = "this is not a JPEG, PNG or TIFF picture";
    return nullptr;
}

} // namespace pnotool
