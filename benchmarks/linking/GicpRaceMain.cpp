// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The refinement by range maps beside PCL's generalised ICP, from the same starts.
#include "benchmarks/linking/TruthSet.h"
#include "nexomap/src/pair/MetricRefinement.h"
#include "nexomap/src/pair/Sphere.h"

#include <pcl/point_cloud.h>
#include <pcl/point_types.h>
#include <pcl/registration/gicp.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>

using namespace nexomap;

namespace {

constexpr char kUsage[] =
    "race_gicp [--cache DIR] FOLDER...\n"
    "Refines the relative pose of every pair of panoramas with ranges that see half of the same (panorama "
    "files\n"
    "and a truth.json, as samplescene writes them) from starts 2 degrees and 10 cm off: by the library's "
    "own\n"
    "alignment and by pcl::GeneralizedIterativeClosestPoint with clouds of several densities from the same "
    "range\n"
    "maps. One thread; prints median errors and processor time with all that each prepares for itself.\n";

constexpr double kCovisible = 0.5;
constexpr double kGate_m = 0.15; // farthest apart that two points count as the same, for both
constexpr int kRounds = 3;       // the fastest counts

using Cloud = pcl::PointCloud<pcl::PointXYZ>;

struct Runner
{
    std::string name;
    std::vector<double> seconds, degrees, metres;
};

double cpuSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + 1e-9 * double(now.tv_nsec);
}

double median(std::vector<double> values)
{
    if (values.empty()) return 0.0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// About `count` measured points, evenly over the sphere.
Cloud::Ptr cloudOf(const RangeMap& map, int count)
{
    const EquirectGrid grid{map.range_m.cols, map.range_m.rows};
    const Cloud::Ptr cloud(new Cloud);
    const int step =
        std::max(1, int(std::lround(std::sqrt(double(map.range_m.total()) * 2.0 / kPi / count))));
    for (int row = step / 2; row < grid.height; row += step) {
        const double sine = std::sin(kPi * (row + 0.5) / grid.height);
        const int step_x = std::max(1, int(std::lround(step / std::max(0.05, sine))));
        for (int column = step_x / 2; column < grid.width; column += step_x) {
            const float range = map.range_m(row, column);
            if (!(range > 0.f) || map.edge(row, column)) continue;
            const Eigen::Vector3f p = (grid.direction(column + 0.5, row + 0.5) * double(range)).cast<float>();
            cloud->push_back({p.x(), p.y(), p.z()});
        }
    }
    return cloud;
}

template <class Work>
void time(const RigidPose& truth, const Work& work, Runner* runner)
{
    RigidPose found;
    double fastest = 1e30;
    for (int round = 0; round < kRounds; ++round) {
        const double start = cpuSeconds();
        found = work();
        fastest = std::min(fastest, cpuSeconds() - start);
    }
    runner->seconds.push_back(fastest);
    runner->degrees.push_back(Eigen::AngleAxisd(found.R.transpose() * truth.R).angle() / kDegree);
    runner->metres.push_back((found.t - truth.t).norm());
}

RigidPose ours(const RangeMap& map_0, const RangeMap& map_1, const RigidPose& start)
{
    const auto surfaces_0 = sampleSurfaces(map_0, 3000), surfaces_1 = sampleSurfaces(map_1, 3000);
    return refineMetricPose({}, {}, start, &map_0, &map_1, &surfaces_0, &surfaces_1).pose;
}

RigidPose gicp(const Cloud::Ptr& cloud_0, const Cloud::Ptr& cloud_1, const RigidPose& start)
{
    pcl::GeneralizedIterativeClosestPoint<pcl::PointXYZ, pcl::PointXYZ> solver;
    solver.setMaxCorrespondenceDistance(kGate_m);
    solver.setMaximumIterations(50);
    solver.setInputSource(cloud_1);
    solver.setInputTarget(cloud_0);
    Eigen::Matrix4f guess = Eigen::Matrix4f::Identity();
    guess.topLeftCorner<3, 3>() = start.R.cast<float>();
    guess.topRightCorner<3, 1>() = start.t.cast<float>();
    Cloud moved;
    solver.align(moved, guess);
    const Eigen::Matrix4d result = solver.getFinalTransformation().cast<double>();
    RigidPose pose;
    pose.R =
        Eigen::Quaterniond(Eigen::Matrix3d(result.topLeftCorner<3, 3>())).normalized().toRotationMatrix();
    pose.t = result.topRightCorner<3, 1>();
    return pose;
}

} // namespace

int main(int argc, char** argv)
{
    TruthSetOptions options;
    const std::vector<std::string> folders = readArguments(argc, argv, kUsage, &options);
    setenv("OMP_NUM_THREADS", "1", 1);

    const std::vector<int> densities{3000, 10000, 30000};
    std::vector<Runner> runners{{"this library", {}, {}, {}}};
    for (const int density : densities)
        runners.push_back({"GICP, " + std::to_string(density) + " points", {}, {}, {}});
    std::mt19937 random(1);
    std::normal_distribution<double> normal;
    const auto draw = [&] {
        return Eigen::Vector3d(normal(random), normal(random), normal(random)).normalized();
    };
    for (const std::string& folder : folders) {
        const auto set = readTruthSet(folder, options);
        if (!set) return 1;
        for (const TruthSet::Pair& pair : set->pairs) {
            const RangeMap& map_0 = set->panoramas[std::size_t(pair.index_0)]->range;
            const RangeMap& map_1 = set->panoramas[std::size_t(pair.index_1)]->range;
            if (pair.covisible < kCovisible || map_0.empty() || map_1.empty()) continue;
            const RigidPose truth = set->relative(pair);
            const RigidPose start{truth.R * rotationFromVector(draw() * 2.0 * kDegree),
                                  truth.t + 0.1 * draw()};
            time(
                truth, [&] { return ours(map_0, map_1, start); }, &runners[0]);
            for (std::size_t d = 0; d < densities.size(); ++d) {
                const auto cloud_0 = cloudOf(map_0, densities[d]), cloud_1 = cloudOf(map_1, densities[d]);
                time(
                    truth, [&] { return gicp(cloud_0, cloud_1, start); }, &runners[d + 1]);
            }
        }
    }
    std::printf("%zu pairs\n", runners[0].seconds.size());
    for (const Runner& runner : runners)
        std::printf("  %-20s median %.3f degrees, %.1f mm, %.1f ms of processor; %.1f times ours\n",
                    runner.name.c_str(), median(runner.degrees), 1000.0 * median(runner.metres),
                    1000.0 * median(runner.seconds), median(runner.seconds) / median(runners[0].seconds));
    return runners[0].seconds.empty() ? 1 : 0;
}
