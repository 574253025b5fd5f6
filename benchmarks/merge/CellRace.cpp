// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Racing the merge's cells against the voxel filters of the Point Cloud Library on the same points.
#include "nexomap/src/merge/LayerDrawing.h"
#include "nexomap/src/pair/Sphere.h"

#ifdef TW_HAS_PCL
#include <pcl/filters/voxel_grid.h>
#include <pcl/octree/octree_pointcloud_voxelcentroid.h>
#include <pcl/point_types.h>
#endif

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <random>

using namespace nexomap;

namespace {

constexpr float kHalf_m = 2.5f, kCell_m = 0.01f;

/// The walls, floor and ceiling of a room as a scanner with 4 mm of noise in its middle measures them.
std::vector<Surfel> roomSurfels(std::size_t count)
{
    std::mt19937 random(1);
    std::normal_distribution<float> normal;
    std::vector<Surfel> surfels;
    surfels.reserve(count);
    const auto rows = std::size_t(std::sqrt(double(count) / 2.0));
    for (std::size_t y = 0; y < rows; ++y)
        for (std::size_t x = 0; x < 2 * rows; ++x) {
            const double polar = kPi * (double(y) + 0.5) / double(rows);
            const double azimuth = kPi * double(x) / double(rows);
            const Eigen::Vector3f u = directionFromAngles(azimuth, polar).cast<float>();
            int axis = 0;
            const float range = kHalf_m / u.cwiseAbs().maxCoeff(&axis) + 0.004f * normal(random);
            const Eigen::Vector3f p = range * u;
            Surfel surfel{p.x(), p.y(), p.z(),          0, 0, 0, weightCode(1.f / (range * range)), 90,
                          120,   60,    weightCode(1.f)};
            (axis == 0   ? surfel.normal_x
             : axis == 1 ? surfel.normal_y
                         : surfel.normal_z) = u[axis] > 0.f ? -127 : 127;
            surfels.push_back(surfel);
        }
    return surfels;
}

/// Best of five, seconds of processor time: other programs' shares do not count. All are of one thread.
double timed(const std::function<std::size_t()>& work, std::size_t* cells)
{
    double best = 1e9;
    for (int round = 0; round < 5; ++round) {
        const std::clock_t start = std::clock();
        *cells = work();
        best = std::min(best, double(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return best;
}

void row(const char* name, std::size_t points, double seconds, std::size_t cells, double own, double limit)
{
    std::printf("%-34s %8.1f %10zu", name, double(points) / seconds * 1e-6, cells);
    if (own > 0.0) std::printf(" %8.2f %8.1f", seconds / own, limit);
    std::printf("\n");
}

} // namespace

int main()
{
    const std::vector<Surfel> surfels = roomSurfels(4000000);
    const Eigen::Vector3d corner = Eigen::Vector3d::Constant(double(kHalf_m) + 0.1);
    const CloudGrid grid = gridFor(-corner, corner, 1);
    std::printf("%zu points into cells of 1 cm, one thread\n", surfels.size());
    std::printf("%-34s %8s %10s %8s %8s\n", "", "M/s", "cells", "ratio", "limit");
    std::size_t cells = 0;
    const double own = timed([&] { return cellsOf(surfels, grid).size(); }, &cells);
    row("cells of the merge", surfels.size(), own, cells, 0.0, 0.0);
    const double drawn = timed(
        [&] {
            std::vector<SurfaceCell> found = cellsOf(surfels, grid);
            drawTogether(found, grid, 3);
            return found.size();
        },
        &cells);
    row("the same, layers drawn together", surfels.size(), drawn, cells, 0.0, 0.0);
#ifdef TW_HAS_PCL
    const auto cloud = std::make_shared<pcl::PointCloud<pcl::PointXYZRGB>>();
    for (const Surfel& surfel : surfels) {
        pcl::PointXYZRGB point;
        point.x = surfel.x, point.y = surfel.y, point.z = surfel.z;
        point.r = surfel.red, point.g = surfel.green, point.b = surfel.blue;
        cloud->push_back(point);
    }
    const double grid_seconds = timed(
        [&] {
            pcl::VoxelGrid<pcl::PointXYZRGB> filter;
            filter.setInputCloud(cloud);
            filter.setLeafSize(kCell_m, kCell_m, kCell_m);
            pcl::PointCloud<pcl::PointXYZRGB> thinned;
            filter.filter(thinned);
            return thinned.size();
        },
        &cells);
    row("pcl::VoxelGrid", surfels.size(), grid_seconds, cells, own, 1.0);
    const double tree_seconds = timed(
        [&] {
            pcl::octree::OctreePointCloudVoxelCentroid<pcl::PointXYZRGB> tree(double{kCell_m});
            tree.setInputCloud(cloud);
            tree.addPointsFromInputCloud();
            pcl::octree::OctreePointCloudVoxelCentroid<pcl::PointXYZRGB>::AlignedPointTVector centroids;
            return std::size_t(tree.getVoxelCentroids(centroids));
        },
        &cells);
    row("pcl::octree voxel centroids", surfels.size(), tree_seconds, cells, own, 2.0);
#else
    std::printf("built without the Point Cloud Library: nothing to race against\n");
#endif
    return 0;
}
