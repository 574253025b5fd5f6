// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Making a panorama file against `vips dzsave` of the same picture, per tile of the output: the same tile
// size, quality and colour sampling, both as programs, several runs taken in turn, on all cores.
#include "linking/pno/PnoFile.h"
#include "tests/pnomaker/JpegFiles.h"
#include "tests/pnomaker/Pictures.h"
#include "tests/support/TestFiles.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>

namespace {

constexpr int kRuns = 5;
constexpr double kLimit = 1.5;

/// Detail at every scale and a little noise, as a photograph has: a picture too smooth would hide the cost of
/// coding.
pnotest::PaintedPicture photographLike(int width, int height)
{
    const auto lattice = [](int x, int y, int octave) {
        auto h = static_cast<std::uint32_t>(x) * 0x9E3779B1u ^ static_cast<std::uint32_t>(y) * 0x85EBCA77u ^
                 static_cast<std::uint32_t>(octave) * 0xC2B2AE3Du;
        h = (h ^ (h >> 15)) * 0x2C1B3C6Du;
        h ^= h >> 12;
        return static_cast<int>(h & 255) - 128;
    };
    return {width, height, [=](int x, int y) -> pnotest::Rgb {
                int value = 128 * 64 + lattice(x, y, 0) * 2;
                for (int octave = 2; octave < 11; octave += 2) {
                    const int size = 1 << octave, u = x & (size - 1), v = y & (size - 1);
                    const int cx = x >> octave, cy = y >> octave;
                    const int top = lattice(cx, cy, octave) * (size - u) + lattice(cx + 1, cy, octave) * u;
                    const int low =
                        lattice(cx, cy + 1, octave) * (size - u) + lattice(cx + 1, cy + 1, octave) * u;
                    value += static_cast<int>((static_cast<std::int64_t>(top) * (size - v) +
                                               static_cast<std::int64_t>(low) * v) >>
                                              (2 * octave)) *
                             (2 + 2 * octave);
                }
                const auto shade = [](int v) { return static_cast<std::uint8_t>(std::clamp(v, 0, 255)); };
                value /= 64;
                return {shade(value), shade(value - 12 + (x >> 9 & 7)), shade(value - 30 + (y >> 9 & 15))};
            }};
}

/// Wall-clock seconds of a command; ends the program when it fails.
double seconds(const std::string& command)
{
    const auto start = std::chrono::steady_clock::now();
    if (std::system(command.c_str()) != 0) {
        std::fprintf(stderr, "bench_maker: failed: %s\n", command.c_str());
        std::exit(1);
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

int tilesInFolder(const std::string& folder)
{
    int tiles = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        tiles += entry.path().extension() == ".jpg";
    return tiles;
}

} // namespace

/// bench_maker [WIDTH], 16384 without it
int main(int argc, char** argv)
{
    const int width = argc > 1 ? std::atoi(argv[1]) : 16384;
    if (width < 256 || width > 32768) {
        std::fprintf(stderr, "bench_maker: a width of 256 to 32768\n");
        return 2;
    }
    const std::filesystem::path programs = std::filesystem::absolute(argv[0]).parent_path();
    const pnotest::TemporaryFolder folder;
    const std::string source = folder.path("source.jpg");
    pnotest::PaintedPicture picture = photographLike(width, width / 2);
    if (!pnotest::writeJpeg(source, picture)) return 1;

    const std::string made = folder.path("made.pno"), pyramid = folder.path("pyramid");
    const std::string make = "'" + (programs / "pnotool").string() + "' make '" + source +
                             "' --quality 90 --out '" + made + "' > /dev/null";
    const std::string dzsave = "vips dzsave '" + source + "' '" + pyramid +
                               "' --tile-size 256 --overlap 0 --suffix '.jpg[Q=90,subsample_mode=on]'";
    std::vector<double> ours, theirs;
    for (int run = 0; run < kRuns; ++run) {
        ours.push_back(seconds(make));
        std::filesystem::remove_all(pyramid + "_files");
        theirs.push_back(seconds(dzsave));
    }
    const auto file = std::make_unique<PnoFile>();
    if (file->Open(made.c_str()) != pno::Ok) return 1;
    const int ourTiles = file->tileCount(), theirTiles = tilesInFolder(pyramid + "_files");
    const double ourTime = median(ours) / ourTiles, theirTime = median(theirs) / theirTiles;
    std::printf("source %d x %d, median of %d runs in turn\n", width, width / 2, kRuns);
    std::printf("pnotool make  %6.2f s, %d tiles, %.3f ms per tile\n", median(ours), ourTiles, 1e3 * ourTime);
    std::printf("vips dzsave   %6.2f s, %d tiles, %.3f ms per tile\n", median(theirs), theirTiles,
                1e3 * theirTime);
    std::printf("ratio %.2f (limit %.1f)\n", ourTime / theirTime, kLimit);
    return 0;
}
