// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Files of the map: the compressed cloud against general packers and Draco, PTS text against a printf loop.
// All in the same run, in turn; ours from file to file, the others in memory.
#include "benchmarks/mapfiles/DracoPeer.h"
#include "nexomap/src/Failure.h"
#include "nexomap/src/files/WorkingFolder.h"
#include "nexomap/src/merge/CloudCompression.h"
#include "nexomap/src/merge/PointFiles.h"

#include <zstd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>

namespace {

using namespace nexomap;
namespace fs = std::filesystem;

constexpr int kRuns = 3;

double seconds(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct Row
{
    std::string name;
    std::function<void()> encode, decode;
    std::function<std::size_t()> bytes;
    int runs = kRuns;
    std::vector<double> encoding, decoding;
};

CloudInMemory cloudOf(const Bytes& file)
{
    const auto word = [&](std::size_t at) {
        std::uint32_t value;
        std::memcpy(&value, file.data() + at, 4);
        return value;
    };
    CloudGrid grid;
    for (std::size_t axis = 0; axis < 3; ++axis)
        grid.origin[axis] = word(4 * axis);
    grid.unit_divisor = std::max(1u, word(12));
    grid.refinement = word(32);
    grid.refinement_z = word(36);
    const std::size_t n = word(48);
    std::vector<CloudPoint> points(n);
    const std::uint8_t* planes = file.data() + kCloudHeaderBytes;
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t axis = 0; axis < 3; ++axis)
            points[i].at[axis] =
                std::uint16_t(planes[2 * axis * n + i] | planes[(2 * axis + 1) * n + i] << 8);
        points[i].blue = planes[6 * n + i];
        points[i].green = planes[7 * n + i];
        points[i].red = planes[8 * n + i];
    }
    return {grid, std::move(points)};
}

void printfLoop(const fs::path& path, const CloudInMemory& cloud)
{
    std::FILE* file = std::fopen(path.string().c_str(), "wb");
    if (!file) throw Failure(NEXOMAP_CANNOT_WRITE, path.string());
    std::fprintf(file, "%llu\n", static_cast<unsigned long long>(cloud.size()));
    cloud.forEachBlock([&](const CloudPoint* points, std::size_t count) {
        for (std::size_t k = 0; k < count; ++k) {
            const CloudPoint& p = points[k];
            const Eigen::Vector3d at = worldOf(p, cloud.grid());
            std::fprintf(file, "%.4f %.4f %.4f %d %d %d %d\n", at.x(), at.y(), at.z(),
                         (299 * p.red + 587 * p.green + 114 * p.blue) / 1000, p.red, p.green, p.blue);
        }
    });
    std::fclose(file);
}

void compareCodecs(const Bytes& cloud, const fs::path& folder)
{
    const std::string tmp = (folder / "cloud.tmp").string(), cld = (folder / "cloud.cld").string();
    writeFile(tmp, cloud);
    const std::size_t points = (cloud.size() - kCloudHeaderBytes) / 9;
    std::vector<Row> rows;
    rows.push_back({"ours, file to file",
                    [&] { compressCloudFile(tmp); },
                    [&] { decompressCloudFile(cld); },
                    [&] { return std::size_t(fs::file_size(cld)); },
                    kRuns,
                    {},
                    {}});
    Bytes packed, plain(cloud.size());
    for (const int level : {1, 19})
        rows.push_back({"zstd -" + std::to_string(level),
                        [&, level] {
                            packed.resize(ZSTD_compressBound(cloud.size()));
                            packed.resize(ZSTD_compress(packed.data(), packed.size(), cloud.data(),
                                                        cloud.size(), level));
                        },
                        [&] { ZSTD_decompress(plain.data(), plain.size(), packed.data(), packed.size()); },
                        [&] { return packed.size(); },
                        level > 9 ? 1 : kRuns,
                        {},
                        {}});
#ifdef TW_WITH_DRACO
    DracoPeer peer(cloud.data() + kCloudHeaderBytes, points);
    std::size_t draco_bytes = 0;
    const auto draco = [&](const char* name, bool kd_tree, int speed) {
        rows.push_back({name,
                        [&, kd_tree, speed] { draco_bytes = peer.encode(kd_tree, speed); },
                        [&] {
                            if (peer.decode() != points)
                                throw Failure(NEXOMAP_INTERNAL, "Draco gives other points");
                        },
                        [&] { return draco_bytes; },
                        kRuns,
                        {},
                        {}});
    };
    draco("Draco kd-tree, speed 5 (order lost)", true, 5);
    draco("Draco kd-tree, speed 10 (order lost)", true, 10);
    draco("Draco sequential, speed 5", false, 5);
#endif
    std::vector<std::size_t> bytes(rows.size());
    for (int run = 0; run < kRuns; ++run)
        for (std::size_t k = 0; k < rows.size(); ++k) {
            if (run >= rows[k].runs) continue;
            rows[k].encoding.push_back(seconds(rows[k].encode));
            rows[k].decoding.push_back(seconds(rows[k].decode));
            bytes[k] = rows[k].bytes();
        }
    if (readFile(tmp) != cloud) throw Failure(NEXOMAP_INTERNAL, "the cloud does not come back");
    std::printf("%zu points of 9 bytes, median of %d runs in turn; times as many as ours\n", points, kRuns);
    std::printf("%-38s %8s %7s %10s %10s %8s %8s\n", "", "B/point", "ratio", "enc Mpt/s", "dec Mpt/s",
                "enc x", "dec x");
    const double enc = median(rows[0].encoding), dec = median(rows[0].decoding);
    for (std::size_t k = 0; k < rows.size(); ++k) {
        const double e = median(rows[k].encoding), d = median(rows[k].decoding);
        std::printf("%-38s %8.3f %7.2f %10.2f %10.2f %8.1f %8.1f\n", rows[k].name.c_str(),
                    double(bytes[k]) / double(points), double(cloud.size()) / double(bytes[k]),
                    double(points) / e / 1e6, double(points) / d / 1e6, e / enc, d / dec);
    }
    std::printf(
        "limits: at most 3.8 B/point, smaller than zstd -19, encoding 15 and decoding 10 times as fast "
        "as Draco\n");
}

void comparePts(const Bytes& file, const fs::path& folder)
{
    const CloudInMemory cloud = cloudOf(file);
    std::vector<double> ours, theirs;
    for (int run = 0; run < kRuns; ++run) {
        ours.push_back(seconds([&] { writePts(folder / "ours.pts", cloud).finish(); }));
        theirs.push_back(seconds([&] { printfLoop(folder / "theirs.pts", cloud); }));
    }
    const double points = double(cloud.size());
    std::printf("\nPTS text: ours %.1f Mpt/s, printf loop %.2f Mpt/s, ratio %.1f (limit 10); %.1f B/point\n",
                points / median(ours) / 1e6, points / median(theirs) / 1e6, median(theirs) / median(ours),
                double(fs::file_size(folder / "ours.pts")) / points);
}

} // namespace

/// bench_mapfiles CLOUD.tmp
int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "bench_mapfiles CLOUD.tmp\n");
        return 2;
    }
    const fs::path folder =
        fs::temp_directory_path() / ("bench_mapfiles_" + std::to_string(std::uintptr_t(&argc)));
    int status = 0;
    try {
        const Bytes cloud = readFile(argv[1]);
        if (cloud.size() < kCloudHeaderBytes || !cloudPoints(cloud.data(), cloud.size()))
            throw Failure(NEXOMAP_BAD_FILE, "not a point cloud");
        fs::create_directories(folder);
        compareCodecs(cloud, folder);
        comparePts(cloud, folder);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "bench_mapfiles: %s\n", failure.what());
        status = 1;
    }
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    return status;
}
