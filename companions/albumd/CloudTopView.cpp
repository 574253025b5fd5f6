// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/CloudTopView.h"

#include "nexomap/src/merge/CompressedCloud.h"

#include <png.h>

#include <algorithm>
#include <cmath>
#include <exception>

namespace albumd {
namespace {

constexpr std::uint32_t kMostPoints = 64'000'000;
constexpr std::size_t kMostThinned = 400'000;
constexpr double kLargerSide = 1536;
constexpr double kMostSteps = 65536; ///< a coordinate has 16 bits
constexpr double kOriginUnit_m = 0.0001;

/// What the header says, in the order of docs/FORMATS.md.
struct Grid
{
    double steps_per_m = 0, steps_per_m_z = 0;
    double width = 0, height = 0; ///< steps
    std::array<double, 3> origin{};

    explicit Grid(const std::array<std::uint8_t, nexomap::kCloudHeaderBytes>& header)
    {
        const auto field = [&](std::size_t at) {
            return std::uint32_t(header[at] | header[at + 1] << 8 | header[at + 2] << 16) |
                   std::uint32_t(header[at + 3]) << 24;
        };
        const std::uint32_t divisor = field(12);
        const double base = divisor == 0 ? 0 : 100 / divisor;
        steps_per_m = base * field(32);
        steps_per_m_z = base * field(36);
        width = std::min(double(field(20)) * field(32), kMostSteps);
        height = std::min(double(field(24)) * field(32), kMostSteps);
        for (std::size_t axis = 0; axis < 3; ++axis)
            origin[axis] = field(4 * axis) * kOriginUnit_m;
    }
    bool good() const { return steps_per_m > 0 && steps_per_m_z > 0 && width >= 1 && height >= 1; }
};

/// The highest point over each pixel of the whole grid.
class Raster
{
public:
    Raster(double width, double height)
        : m_scale(std::min(1.0, kLargerSide / std::max(width, height)))
        , m_width(int(std::ceil(width * m_scale)))
        , m_height(int(std::ceil(height * m_scale)))
        , m_highest(std::size_t(m_width) * std::size_t(m_height), -1)
        , m_colours(m_highest.size() * 3)
    {}

    void add(const nexomap::CloudChunk& chunk)
    {
        for (std::size_t i = 0; i < chunk.points; ++i) {
            const auto number = [&](std::size_t low) {
                return chunk.plane(low)[i] + 256 * chunk.plane(low + 1)[i];
            };
            const int column = int(number(0) * m_scale), row = int(number(2) * m_scale), z = number(4);
            if (column >= m_width || row >= m_height) continue; // the header told less
            const std::size_t at = std::size_t(row) * std::size_t(m_width) + std::size_t(column);
            if (z <= m_highest[at]) continue;
            m_highest[at] = z;
            for (std::size_t k = 0; k < 3; ++k)
                m_colours[3 * at + k] = chunk.plane(8 - k)[i];
        }
    }

    /// Cut to where points lie; y points up in the raster and down in the picture.
    /// @return false when there are none
    bool cut(const Grid& grid, CloudTopView* view) const
    {
        int left = m_width, right = -1, low = m_height, high = -1;
        for (int row = 0; row < m_height; ++row)
            for (int column = 0; column < m_width; ++column)
                if (m_highest[index(column, row)] >= 0) {
                    left = std::min(left, column);
                    right = std::max(right, column);
                    low = std::min(low, row);
                    high = std::max(high, row);
                }
        if (right < 0) return false;
        view->width = right - left + 1;
        view->height = high - low + 1;
        view->rgba.assign(std::size_t(view->width) * std::size_t(view->height) * 4, 0);
        for (int row = low; row <= high; ++row)
            for (int column = left; column <= right; ++column) {
                const std::size_t from = index(column, row);
                if (m_highest[from] < 0) continue;
                const std::size_t to =
                    4 * (std::size_t(high - row) * std::size_t(view->width) + std::size_t(column - left));
                std::copy_n(&m_colours[3 * from], 3, &view->rgba[to]);
                view->rgba[to + 3] = 255;
            }
        view->pixels_per_m = grid.steps_per_m * m_scale;
        view->left = grid.origin[0] * view->pixels_per_m - left;
        view->top = high + 1 - grid.origin[1] * view->pixels_per_m;
        return true;
    }

private:
    std::size_t index(int column, int row) const
    {
        return std::size_t(row) * std::size_t(m_width) + std::size_t(column);
    }

    double m_scale;
    int m_width, m_height;
    std::vector<int> m_highest;
    std::vector<std::uint8_t> m_colours;
};

/// Every so manieth point: along the curve in which the file has them that is an even choice.
void thin(const nexomap::CloudChunk& chunk, std::size_t before, std::size_t stride, CloudTopView* view)
{
    for (std::size_t i = (stride - before % stride) % stride; i < chunk.points; i += stride) {
        for (std::size_t plane = 0; plane < 6; ++plane)
            view->thinned.push_back(chunk.plane(plane)[i]);
        for (std::size_t plane = 8; plane > 5; --plane)
            view->thinned.push_back(chunk.plane(plane)[i]);
        view->thinned.push_back(0);
        ++view->points;
    }
}

} // namespace

std::optional<CloudTopView> cloudTopView(const std::string& path)
{
    try {
        const nexomap::CompressedCloud cloud(path);
        const Grid grid(cloud.header());
        if (!grid.good() || cloud.points() == 0 || cloud.points() > kMostPoints) return std::nullopt;
        CloudTopView view;
        Raster raster(grid.width, grid.height);
        const std::size_t stride = (cloud.points() + kMostThinned - 1) / kMostThinned;
        std::size_t before = 0;
        nexomap::CompressedCloud::Reader reader(cloud);
        nexomap::CloudChunk chunk;
        for (std::size_t k = 0; k < cloud.chunks(); ++k) {
            reader.read(k, &chunk);
            raster.add(chunk);
            thin(chunk, before, stride, &view);
            before += chunk.points;
        }
        if (!raster.cut(grid, &view)) return std::nullopt;
        view.step = 1 / grid.steps_per_m;
        view.step_z = 1 / grid.steps_per_m_z;
        view.origin = {0.5 * view.step - grid.origin[0], 0.5 * view.step - grid.origin[1],
                       0.5 * view.step_z - grid.origin[2]};
        return view;
    } catch (const std::exception&) {
        return std::nullopt; // not a cloud of ours, or more than memory holds
    }
}

std::string encodePng(const CloudTopView& view)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = png_uint_32(view.width);
    image.height = png_uint_32(view.height);
    image.format = PNG_FORMAT_RGBA;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::string png(size, '\0');
    const bool written =
        png_image_write_to_memory(&image, png.data(), &size, 0, view.rgba.data(), 0, nullptr) != 0;
    png.resize(written ? size : 0);
    return png;
}

} // namespace albumd
