// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/pnomaker/Readback.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <png.h>
#include <turbojpeg.h>

namespace pnotest {

Rgb DecodedTile::at(int x, int y) const
{
    const std::uint8_t* pixel = &rgb.at(static_cast<std::size_t>((y * 256 + x) * 3));
    return {pixel[0], pixel[1], pixel[2]};
}

DecodedTile decodedTile(PnoFile& file, int level, int column, int row)
{
    std::uint32_t size = 0;
    const PnoBytes bytes = file.ReadTile(level, column, row, &size);
    DecodedTile tile;
    if (!bytes) return tile;
    tile.rgb.resize(256 * 256 * 3);
    tjhandle handle = tjInitDecompress();
    int width = 0, height = 0, subsampling = 0, space = 0;
    if (tjDecompressHeader3(handle, bytes.get(), size, &width, &height, &subsampling, &space) != 0 ||
        width != 256 || height != 256 ||
        tjDecompress2(handle, bytes.get(), size, tile.rgb.data(), 256, 768, 256, TJPF_RGB, 0) != 0)
        tile.rgb.clear();
    tjDestroy(handle);
    return tile;
}

Rgb levelPixel(PnoFile& file, int level, int x, int y)
{
    const int fromRight = static_cast<int>(file.imageInfo().widths[level]) - 1 - x;
    return decodedTile(file, level, fromRight / 256, y / 256).at(255 - fromRight % 256, y % 256);
}

std::uint16_t rangeValue(PnoFile& file, int x, int y)
{
    std::uint32_t size = 0;
    const PnoBytes bytes = file.ReadDepthTile((8191 - x) / 256, y / 256, &size);
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!bytes || !png_image_begin_read_from_memory(&image, bytes.get(), size)) return 0xFFFF;
    image.format = PNG_FORMAT_LINEAR_Y; // 16-bit files without a stated gamma come out as they are
    std::vector<std::uint16_t> values(256 * 256);
    png_image_finish_read(&image, nullptr, values.data(), 0, nullptr);
    return values[static_cast<std::size_t>(y % 256 * 256 + x % 256)];
}

std::vector<std::uint8_t> fileBytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::vector<std::string> folderEntries(const std::string& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace pnotest
