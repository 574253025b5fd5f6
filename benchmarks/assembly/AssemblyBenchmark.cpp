// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the assembled 8192 x 4096 picture costs beside decoding its tiles alone: the same JPEG tiles, already
// in memory, decoded by bare libjpeg-turbo to a scratch tile on as many threads.

#include "benchmarks/assembly/TexturedPanorama.h"
#include "linking/pictures/PanoramaPicture.h"
#include "linking/pno/PnoFile.h"
#include "project/LocalText.h"
#include "tests/support/TestFiles.h"

#include <QCoreApplication>
#include <turbojpeg.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <limits>
#include <memory>
#include <thread>
#include <vector>

namespace {

constexpr double kLimit = 1.25;
constexpr int kRounds = 15;
constexpr int kLevel = 10;
constexpr int kColumns = 32;
constexpr int kRows = 16;

using pnotest::Bytes;

std::vector<Bytes> tilesOf(const std::string& path)
{
    std::vector<Bytes> tiles;
    const auto file = std::make_unique<PnoFile>();
    if (file->Open(path.c_str()) != pno::Ok) return tiles;
    for (int i = 0; i < kColumns * kRows; ++i) {
        std::uint32_t size = 0;
        if (const PnoBytes bytes = file->ReadTile(kLevel, i % kColumns, i / kColumns, &size))
            tiles.emplace_back(bytes.get(), bytes.get() + size);
    }
    return tiles;
}

// False when a tile is no JPEG that libjpeg-turbo takes whole: the comparison would mean nothing.
bool decodeBare(const std::vector<Bytes>& tiles)
{
    std::atomic<std::size_t> next{0};
    std::atomic<bool> good{true};
    const auto work = [&] {
        std::vector<std::uint8_t> scratch(256 * 256 * 3);
        const tjhandle handle = tjInitDecompress();
        for (std::size_t i = next++; i < tiles.size(); i = next++) {
            if (tjDecompress2(handle, tiles[i].data(), tiles[i].size(), scratch.data(), 256, 0, 256, TJPF_RGB,
                              0))
                good = false;
        }
        tjDestroy(handle);
    };
    std::vector<std::thread> threads;
    for (unsigned i = 1; i < std::thread::hardware_concurrency(); ++i)
        threads.emplace_back(work);
    work();
    for (std::thread& thread : threads)
        thread.join();
    return good;
}

template <typename Work>
double seconds(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

/// Usage: bench_assembly [FILE.pno]; without a file it makes one.
int main(int argc, char** argv)
{
    localtext::useSystemEncoding();
    const QCoreApplication app(argc, argv);
    const pnotest::TemporaryFolder folder;
    const std::string path = argc > 1 ? argv[1] : writeTexturedPanorama(folder, "assembly.pno");
    const std::vector<Bytes> tiles = tilesOf(path);
    if (tiles.size() != kColumns * kRows || !decodeBare(tiles)) {
        std::fprintf(stderr, "bench_assembly: %s has not all its %d JPEG tiles\n", path.c_str(),
                     kColumns * kRows);
        return 1;
    }
    QImage picture(8192, 4096, QImage::Format_RGB888);
    picture.fill(Qt::white);
    const QString file = localtext::fromLocal(path.c_str());

    // In turns, and the best of each: what else runs on the machine meets both and is left out.
    double assembly = std::numeric_limits<double>::max();
    double bare = assembly;
    bool good = true;
    for (int round = 0; round < kRounds; ++round) {
        assembly = std::min(assembly, seconds([&] { good = assemblePanorama(file, &picture) && good; }));
        bare = std::min(bare, seconds([&] { good = decodeBare(tiles) && good; }));
    }
    if (!good) return 1;
    std::size_t bytes = 0;
    for (const Bytes& tile : tiles)
        bytes += tile.size();
    std::printf(
        "assembly of 8192x4096 from %zu tiles of %zu KiB on %u threads: %.1f ms, bare decoding %.1f ms, "
        "ratio %.2f (limit %.2f)\n",
        tiles.size(), bytes / tiles.size() / 1024, std::thread::hardware_concurrency(), 1000 * assembly,
        1000 * bare, assembly / bare, kLimit);
    return 0;
}
