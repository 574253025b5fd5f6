// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What a merge needs for each further station, by the peak memory of a process of its own.

#include "nexomap/src/files/WorkingFolder.h"
#include "nexomap/src/merge/MergeGroup.h"
#include "tests/nexomap/MadeUpTour.h"
#include "tests/nexomap/merge/RayScene.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

using namespace nexomap;

namespace {

constexpr char kStations[] = "NEXOMAP_TEST_STATIONS";

#ifdef __linux__
long peakOfMerging_kib(int stations)
{
    // The test of this very file, run alone.
    const std::string command = std::string(kStations) + "=" + std::to_string(stations) + " /proc/" +
                                std::to_string(getpid()) +
                                "/exe --gtest_also_run_disabled_tests"
                                " --gtest_filter=MergeMemory.DISABLED_MergesInAProcessOfItsOwn";
    FILE* const output = popen(command.c_str(), "r");
    if (!output) return -1;
    long peak = -1;
    char line[512];
    while (std::fgets(line, sizeof line, output))
        std::sscanf(line, "peak %ld", &peak);
    return pclose(output) == 0 ? peak : -1;
}
#endif

} // namespace

TEST(MergeMemory, DISABLED_MergesInAProcessOfItsOwn)
{
    const char* const stations = std::getenv(kStations);
    ASSERT_TRUE(stations);
    RayScene scene;
    scene.addRoom({-6, -5, 0}, {6, 5, 2.8});
    for (int k = 0; k < std::atoi(stations); ++k)
        scene.stations.emplace_back(-4.0 + 0.9 * (k % 10), -3.0 + 1.7 * (k / 10), 1.5);
    const TemporaryFolder folder;
    const WorkingFolder working(folder.path());
    const FrontEnd front_end = scene.frontEnd();
    Model model = scene.linkedModel();
    MergeOptions options;
    options.density = 2;
    options.cloud_map = true;
    options.memory_bytes = 1 << 20;
    EXPECT_TRUE(mergeGroup(model, {working, front_end}, options).empty());
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmHWM:", 0) == 0) std::printf("peak %ld\n", std::atol(line.c_str() + 6));
}

TEST(MergeMemory, AFurtherStationTakesAFewMebibytesOnly)
{
#ifdef __linux__
    constexpr int kFew = 4, kMany = 14;
    const long few = peakOfMerging_kib(kFew), many = peakOfMerging_kib(kMany);
    ASSERT_GT(few, 0);
    ASSERT_GT(many, 0);
    // 4.5 MiB of packed ranges and 1.2 of seen space. With ranges as floats and edges as bytes it is 5.5
    // more.
    const double growth_mib = double(many - few) / (kMany - kFew) / 1024.0;
    EXPECT_LT(growth_mib, 8.5);
    EXPECT_GT(growth_mib, 3.0); // what is measured holds the panoramas
    RecordProperty("mebibytes_a_station", std::to_string(growth_mib));
#else
    GTEST_SKIP() << "peak memory is read as Linux tells it";
#endif
}
