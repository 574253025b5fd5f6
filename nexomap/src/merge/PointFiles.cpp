// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/PointFiles.h"

#include "nexomap/src/Failure.h"
#include "nexomap/src/files/ByteStream.h"
#include "nexomap/src/merge/PlanPicture.h"
#include "nexomap/src/merge/VoxelCloud.h"

#include <charconv>
#include <cmath>
#include <fstream>
#include <functional>
#include <unordered_set>

namespace nexomap {
namespace {

namespace fs = std::filesystem;

/// Writes in pieces to a file that gets its name when it is whole.
void writePieces(const fs::path& path, const std::function<void(std::ofstream&)>& write)
{
    fs::path part = path;
    part += ".part";
    std::ofstream file(part, std::ios::binary | std::ios::trunc);
    write(file);
    file.close();
    std::error_code error;
    if (!file.fail()) fs::rename(part, path, error);
    if (!file.fail() && !error) return;
    std::error_code ignored;
    fs::remove(part, ignored);
    throw Failure(NEXOMAP_CANNOT_WRITE, "cannot write " + path.string());
}

/// Four decimals by whole numbers: much faster than formatting reals.
char* putMetres(char* to, double metres)
{
    long long number = std::llround(metres * 10000.0);
    if (number < 0) *to++ = '-', number = -number;
    to = std::to_chars(to, to + 20, number / 10000).ptr;
    *to++ = '.';
    const int rest = int(number % 10000);
    for (const int unit : {1000, 100, 10, 1})
        *to++ = char('0' + rest / unit % 10);
    return to;
}

constexpr std::size_t kPiece = 1 << 16;

} // namespace

void writePts(const fs::path& path, const std::vector<CloudPoint>& points, const CloudGrid& grid)
{
    writePieces(path, [&](std::ofstream& file) {
        file << points.size() << "\n";
        std::vector<char> text;
        for (std::size_t from = 0; from < points.size() && file; from += kPiece) {
            const std::size_t to = std::min(points.size(), from + kPiece);
            text.resize(kPiece * 128);
            char* at = text.data();
            for (std::size_t k = from; k < to; ++k) {
                const CloudPoint& point = points[k];
                const Eigen::Vector3d world = worldOf(point, grid);
                for (int axis = 0; axis < 3; ++axis) {
                    at = putMetres(at, world[axis]);
                    *at++ = ' ';
                }
                const int grey = (299 * point.red + 587 * point.green + 114 * point.blue) / 1000;
                for (const int value : {grey, int(point.red), int(point.green), int(point.blue)}) {
                    at = std::to_chars(at, at + 8, value).ptr;
                    *at++ = ' ';
                }
                at[-1] = '\n';
            }
            file.write(text.data(), at - text.data());
        }
    });
}

void writePointBinary(const fs::path& path, const std::vector<CloudPoint>& points, const CloudGrid& grid)
{
    writePieces(path, [&](std::ofstream& file) {
        ByteWriter head;
        head.putText("NXB1", 4);
        head.put(std::uint64_t(points.size()));
        file.write(reinterpret_cast<const char*>(head.bytes.data()), std::streamsize(head.bytes.size()));
        for (std::size_t from = 0; from < points.size() && file; from += kPiece) {
            ByteWriter out;
            for (std::size_t k = from; k < std::min(points.size(), from + kPiece); ++k) {
                const Eigen::Vector3d world = worldOf(points[k], grid);
                for (int axis = 0; axis < 3; ++axis)
                    out.put(float(world[axis]));
                out.put(points[k].red);
                out.put(points[k].green);
                out.put(points[k].blue);
                out.put(std::uint8_t(255));
            }
            file.write(reinterpret_cast<const char*>(out.bytes.data()), std::streamsize(out.bytes.size()));
        }
    });
}

std::vector<CloudPoint> thinned(const std::vector<CloudPoint>& points, int factor)
{
    std::vector<CloudPoint> few;
    std::unordered_set<std::uint64_t> seen;
    for (const CloudPoint& point : points) {
        const auto cell = [&](int axis) { return std::uint16_t(point.at[axis] / factor); };
        if (seen.insert(mortonKey(cell(0), cell(1), cell(2))).second) few.push_back(point);
    }
    return few;
}

} // namespace nexomap
