// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Whether the first look of large tours finds the pairs that are worth a full comparison: buildings thrown
// together.
#include "benchmarks/linking/TruthSet.h"
#include "nexomap/src/pair/CoarseMatching.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <iterator>

using namespace nexomap;

namespace {

constexpr char kUsage[] = "bench_firstsight [--cache DIR] FOLDER...\n"
                          "Ranks the panoramas of all folders together by what they share with each at first "
                          "sight, and prints which of the\n"
                          "truly co-visible pairs are among the most alike of either end.\n";

struct Band
{
    double low, high;
};
constexpr Band kBands[] = {{0.5, 2.0}, {0.3, 0.5}, {0.15, 0.3}, {0.05, 0.15}, {0.01, 0.05}};
constexpr int kPlaces[] = {5, 10, 15, 20, 30};

} // namespace

int main(int argc, char** argv)
{
    TruthSetOptions options;
    const std::vector<std::string> folders = readArguments(argc, argv, kUsage, &options);
    struct Outline
    {
        std::string id;
        Features features;
    };
    struct Pair
    {
        int a, b;
        double covisible;
    };
    std::vector<Outline> outlines;
    std::vector<Pair> pairs;
    for (const std::string& folder : folders) {
        const auto set = readTruthSet(folder, options);
        if (!set) return 1;
        const int first = int(outlines.size());
        for (const auto& panorama : set->panoramas)
            outlines.push_back({panorama->id, outlineOf(panorama->features)});
        for (const TruthSet::Pair& pair : set->pairs)
            pairs.push_back({first + pair.index_0, first + pair.index_1, pair.covisible});
    }
    const int count = int(outlines.size());
    std::vector<std::vector<int>> shared(outlines.size(), std::vector<int>(outlines.size(), 0));
    const auto start = std::chrono::steady_clock::now();
    for (int a = 0; a < count; ++a)
        for (int b = a + 1; b < count; ++b) {
            const Outline &p = outlines[std::size_t(a)], &q = outlines[std::size_t(b)];
            shared[std::size_t(a)][std::size_t(b)] = shared[std::size_t(b)][std::size_t(a)] =
                p.id < q.id ? likeness(p.features, q.features) : likeness(q.features, p.features);
        }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    // How many others are at least as much like `from` as `to` is.
    const auto place = [&](int from, int to) {
        const std::vector<int>& row = shared[std::size_t(from)];
        int better = 0;
        for (int k = 0; k < count; ++k)
            better += k != from && k != to && row[std::size_t(k)] >= row[std::size_t(to)];
        return better;
    };
    std::printf(
        "%d panoramas of %zu buildings, %.2f ms a pair\nco-visible  pairs  among the most alike of either:",
        count, folders.size(), 1e3 * seconds / std::max(1, count * (count - 1) / 2));
    for (const int places : kPlaces)
        std::printf(" %6d", places);
    std::printf("\n");
    for (const Band& band : kBands) {
        int all = 0;
        std::array<int, std::size(kPlaces)> found{};
        for (const Pair& pair : pairs) {
            if (pair.covisible < band.low || pair.covisible >= band.high) continue;
            ++all;
            const int best = std::min(place(pair.a, pair.b), place(pair.b, pair.a));
            for (std::size_t k = 0; k < found.size(); ++k)
                found[k] += best < kPlaces[k];
        }
        std::printf("%.2f and up %6d %31s", band.low, all, "");
        for (const int n : found)
            std::printf(" %6.2f", all ? double(n) / all : 0.0);
        std::printf("\n");
    }
    return 0;
}
