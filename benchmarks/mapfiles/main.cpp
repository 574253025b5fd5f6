// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Files of the map: the compressed cloud against general packers and Draco, PTS text against a printf loop.
// All in the same run, in turn.
#include "benchmarks/mapfiles/DracoPeer.h"
#include "nexomap/src/Failure.h"
#include "nexomap/src/files/WorkingFolder.h"
#include "nexomap/src/merge/CloudChunk.h"
#include "nexomap/src/merge/CloudCompression.h"
#include "nexomap/src/merge/PointFiles.h"

#include <zstd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <functional>
#include <string>

namespace {

using namespace nexomap;
namespace fs = std::filesystem;

constexpr int kRuns = 5;

/// What a piece of work takes: by the clock, and of all processors together. The second hardly depends on
/// what else the machine does.
struct Cost
{
    double clock = 1e300, processor = 1e300; ///< seconds

    void keepLeast(const Cost& other)
    {
        clock = std::min(clock, other.clock);
        processor = std::min(processor, other.processor);
    }
};

Cost costOf(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    const std::clock_t before = std::clock(); // of all threads of the process
    work();
    return {std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(),
            double(std::clock() - before) / CLOCKS_PER_SEC};
}

struct Row
{
    std::string name;
    unsigned threads = 1;
    std::function<void()> encode, decode;
    std::function<std::size_t()> bytes;
    int runs = kRuns;
    Cost encoding{}, decoding{};
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

struct FolderOfItsOwn
{
    fs::path path;
    ~FolderOfItsOwn()
    {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
};

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

/// The cloud's chunks, coded one after the other by one thread, without a file: what the peers do.
class InMemory
{
public:
    explicit InMemory(const Bytes& file)
    {
        const std::size_t n = (file.size() - kCloudHeaderBytes) / CloudChunk::kPlanes;
        for (std::size_t at = 0; at < n; at += CloudChunk::kMostPoints) {
            CloudChunk chunk{std::min(CloudChunk::kMostPoints, n - at), {}};
            for (std::size_t plane = 0; plane < CloudChunk::kPlanes; ++plane) {
                const auto from = file.begin() + std::ptrdiff_t(kCloudHeaderBytes + plane * n + at);
                chunk.planes.insert(chunk.planes.end(), from, from + std::ptrdiff_t(chunk.points));
            }
            m_chunks.push_back(std::move(chunk));
        }
        m_packed.resize(m_chunks.size());
        m_unpacked.resize(m_chunks.size());
    }
    void encode()
    {
        ChunkCoder coder;
        for (std::size_t k = 0; k < m_chunks.size(); ++k)
            coder.encode(m_chunks[k], &m_packed[k]);
    }
    void decode()
    {
        ChunkCoder coder;
        for (std::size_t k = 0; k < m_chunks.size(); ++k) {
            m_unpacked[k].points = m_chunks[k].points;
            coder.decode(m_packed[k], &m_unpacked[k]);
        }
    }
    std::size_t bytes() const
    {
        std::size_t sum = 0;
        for (const Bytes& packed : m_packed)
            sum += packed.size();
        return sum;
    }
    bool cameBack() const
    {
        for (std::size_t k = 0; k < m_chunks.size(); ++k)
            if (m_unpacked[k].planes != m_chunks[k].planes) return false;
        return true;
    }

private:
    std::vector<CloudChunk> m_chunks, m_unpacked;
    std::vector<Bytes> m_packed;
};

void printTable(const std::vector<Row>& rows, const std::vector<std::size_t>& bytes, std::size_t points)
{
    std::printf("%-38s %7s %7s %6s %6s | %8s %8s | %-15s | %-15s\n", "", "", "bytes/", "of 9", "of", "enc",
                "dec", "times ours (a)", "times ours (c)");
    std::printf("%-38s %7s %7s %6s %6s | %8s %8s | %7s %7s | %7s %7s\n", "", "threads", "point", "bytes",
                "ours", "Mpt/s", "Mpt/s", "enc", "dec", "enc", "dec");
    const Row &alone = rows[0], &files = rows[2];
    for (std::size_t k = 0; k < rows.size(); ++k) {
        const Row& row = rows[k];
        const double n = double(points);
        std::printf("%-38s %7u %7.3f %6.2f %6.2f | %8.2f %8.2f | %7.1f %7.1f | %7.1f %7.1f\n",
                    row.name.c_str(), row.threads, double(bytes[k]) / n, 9.0 * n / double(bytes[k]),
                    double(bytes[k]) / double(bytes[0]), n / row.encoding.clock / 1e6,
                    n / row.decoding.clock / 1e6, row.encoding.processor / alone.encoding.processor,
                    row.decoding.processor / alone.decoding.processor,
                    row.encoding.clock / files.encoding.clock, row.decoding.clock / files.decoding.clock);
    }
}

void compareCodecs(const Bytes& cloud, const fs::path& folder)
{
    const std::string tmp = (folder / "cloud.tmp").string(), cld = (folder / "cloud.cld").string();
    writeFile(tmp, cloud);
    const std::size_t points = (cloud.size() - kCloudHeaderBytes) / 9;
    const auto file_bytes = [&] { return std::size_t(fs::file_size(cld)); };
    InMemory memory(cloud);
    std::vector<Row> rows;
    rows.push_back({"(a) ours, in memory", 1, [&] { memory.encode(); }, [&] { memory.decode(); },
                    [&] { return memory.bytes(); }});
    rows.push_back({"(b) ours, file to file", 1, [&] { compressCloudFile(tmp, 1); },
                    [&] { decompressCloudFile(cld, 1); }, file_bytes});
    rows.push_back({"(c) ours, file to file", compressionThreads(), [&] { compressCloudFile(tmp); },
                    [&] { decompressCloudFile(cld); }, file_bytes});
    Bytes packed, plain(cloud.size());
    for (const int level : {1, 19})
        rows.push_back({"zstd -" + std::to_string(level) + ", in memory", 1,
                        [&, level] {
                            packed.resize(ZSTD_compressBound(cloud.size()));
                            packed.resize(ZSTD_compress(packed.data(), packed.size(), cloud.data(),
                                                        cloud.size(), level));
                        },
                        [&] { ZSTD_decompress(plain.data(), plain.size(), packed.data(), packed.size()); },
                        [&] { return packed.size(); }, level > 9 ? 1 : kRuns});
#ifdef TW_WITH_DRACO
    DracoPeer peer(cloud.data() + kCloudHeaderBytes, points);
    std::size_t draco_bytes = 0;
    const auto draco = [&](const char* name, bool kd_tree, int speed) {
        rows.push_back({name, 1, [&, kd_tree, speed] { draco_bytes = peer.encode(kd_tree, speed); },
                        [&] {
                            if (peer.decode() != points)
                                throw Failure(NEXOMAP_INTERNAL, "Draco gives other points");
                        },
                        [&] { return draco_bytes; }});
    };
    draco("Draco kd-tree, speed 5 (order lost)", true, 5);
    draco("Draco kd-tree, speed 10 (order lost)", true, 10);
    draco("Draco sequential, speed 5", false, 5);
#endif
    std::vector<std::size_t> bytes(rows.size());
    for (int run = 0; run < kRuns; ++run)
        for (std::size_t k = 0; k < rows.size(); ++k) {
            if (run >= rows[k].runs) continue;
            rows[k].encoding.keepLeast(costOf(rows[k].encode));
            rows[k].decoding.keepLeast(costOf(rows[k].decode));
            bytes[k] = rows[k].bytes();
        }
    if (readFile(tmp) != cloud || !memory.cameBack())
        throw Failure(NEXOMAP_INTERNAL, "the cloud does not come back");
    std::printf("%zu points of 9 bytes, least of %d runs in turn; the peers work in memory.\n"
                "Mpt/s and the ratio to (c) by the clock, the ratio to (a) by processor time.\n",
                points, kRuns);
    printTable(rows, bytes, points);
    std::printf(
        "limits: at most 3.8 bytes/point, smaller than zstd -19; than ours Draco takes at least 15 times "
        "as long to encode, 10 times to decode\n");
}

/// Both write the same lines to the same place, each through one open file, nothing forced to the disk.
void racePts(const char* place, const CloudInMemory& cloud, const fs::path& folder)
{
    Cost ours, theirs;
    for (int run = 0; run < kRuns; ++run) {
        ours.keepLeast(costOf([&] { writePts(folder / "ours.pts", cloud).finish(); }));
        theirs.keepLeast(costOf([&] { printfLoop(folder / "theirs.pts", cloud); }));
    }
    if (readFile(folder / "ours.pts") != readFile(folder / "theirs.pts"))
        throw Failure(NEXOMAP_INTERNAL, "the printf loop writes other lines");
    const double points = double(cloud.size()), bytes = double(fs::file_size(folder / "ours.pts"));
    std::printf("%-38s %7u %7.2f %8.1f %8.2f %8.0f | %7.1f %7.1f\n", place, 1u, bytes / points,
                points / ours.clock / 1e6, points / theirs.clock / 1e6, bytes / ours.clock / 1e6,
                theirs.clock / ours.clock, theirs.processor / ours.processor);
}

void comparePts(const Bytes& file, const fs::path& folder)
{
    const CloudInMemory cloud = cloudOf(file);
    std::printf("\nPTS text\n%-38s %7s %7s %8s %8s %8s | %-15s\n%-38s %7s %7s %8s %8s %8s | %7s %7s\n", "",
                "", "bytes/", "ours", "printf", "ours", "printf / ours", "written to", "threads", "point",
                "Mpt/s", "Mpt/s", "MB/s", "clock", "proc.");
    const fs::path memory = fs::path("/dev/shm") / folder.filename();
    std::error_code none;
    if (fs::create_directory(memory, none)) {
        const FolderOfItsOwn guard{memory};
        racePts("memory (/dev/shm)", cloud, memory);
    }
    racePts("the temporary folder's disk", cloud, folder);
    std::printf(
        "limit: the printf loop takes at least 10 times as long; where the disk is the slower one, it "
        "sets the pace of both\n");
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
    try {
        const Bytes cloud = readFile(argv[1]);
        if (cloud.size() < kCloudHeaderBytes || !cloudPoints(cloud.data(), cloud.size()))
            throw Failure(NEXOMAP_BAD_FILE, "not a point cloud");
        fs::create_directories(folder);
        const FolderOfItsOwn guard{folder};
        compareCodecs(cloud, folder);
        comparePts(cloud, folder);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "bench_mapfiles: %s\n", failure.what());
        return 1;
    }
    return 0;
}
