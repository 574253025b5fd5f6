// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/MergeGroup.h"

#include "nexomap/src/merge/CloudCompression.h"
#include "nexomap/src/merge/PictureFile.h"
#include "nexomap/src/merge/PlanPicture.h"
#include "nexomap/src/merge/PointFiles.h"
#include "nexomap/src/merge/SurfaceSampling.h"
#include "nexomap/src/merge/VoxelCloud.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kFarthest_m = 60.0; // beyond it cells of the range map are wider than any surface is useful
constexpr double kPlanPixel_m = 0.02;

struct Box
{
    Eigen::Vector3d low = Eigen::Vector3d::Constant(1e9), high = Eigen::Vector3d::Constant(-1e9);
    void add(const Eigen::Vector3d& p) { low = low.cwiseMin(p), high = high.cwiseMax(p); }
};

std::vector<MergeStation> stationsOf(const Model& model, const Workplace& workplace,
                                     const std::vector<int>& group, bool indoor)
{
    std::vector<MergeStation> stations;
    for (const int n : group) {
        const Node& node = model.nodes[n];
        const Panorama& panorama = node.source->get(workplace.front_end);
        if (!panorama.metric()) continue;
        MergeStation station{&panorama, node.pose, node.up, 0.0};
        if (indoor) station.ceiling_m = ceilingAbove(panorama, node.pose, node.up);
        stations.push_back(station);
    }
    return stations;
}

/// The ground that hangs together with the stations: what is seen of other houses through windows is not part
/// of the building.
class Footprint
{
public:
    explicit Footprint(const Box& box)
        : m_low(box.low)
        , m_side_m(std::max(0.2, (box.high - box.low).head<2>().maxCoeff() / 4000.0))
        , m_counts(int((box.high.y() - box.low.y()) / m_side_m) + 1,
                   int((box.high.x() - box.low.x()) / m_side_m) + 1, 0)
    {}
    void count(const Eigen::Vector3d& world) { ++m_counts(cellOf(world)); }
    void close(const std::vector<MergeStation>& stations)
    {
        cv::Mat1b filled = m_counts >= 8;
        for (const MergeStation& station : stations) // the scanner does not see the floor below itself
            cv::circle(filled, cellOf(station.pose.t), int(1.0 / m_side_m), 255, cv::FILLED);
        cv::Mat1i labels;
        cv::connectedComponents(filled, labels);
        m_inside = cv::Mat1b(filled.size(), std::uint8_t(0));
        for (const MergeStation& station : stations)
            m_inside.setTo(255, labels == labels(cellOf(station.pose.t)));
    }
    bool has(const Eigen::Vector3d& world) const { return m_inside.empty() || m_inside(cellOf(world)); }

private:
    cv::Point cellOf(const Eigen::Vector3d& world) const
    {
        return {std::clamp(int((world.x() - m_low.x()) / m_side_m), 0, m_counts.cols - 1),
                std::clamp(int((world.y() - m_low.y()) / m_side_m), 0, m_counts.rows - 1)};
    }
    Eigen::Vector3d m_low;
    double m_side_m;
    cv::Mat1i m_counts;
    cv::Mat1b m_inside;
};

cv::Vec3b colourAt(const ColourPicture& picture, const Eigen::Vector3d& direction)
{
    const EquirectGrid grid{picture.pixels.cols, picture.pixels.rows, picture.polar_min, picture.polar_max};
    const Eigen::Vector2d pixel = grid.pixel(direction);
    return picture.pixels(std::clamp(int(pixel.y()), 0, picture.pixels.rows - 1),
                          std::clamp(int(pixel.x()), 0, picture.pixels.cols - 1));
}

ColourPicture coloursOf(const Workplace& workplace, const Panorama& panorama)
{
    ColourPicture picture;
    if (workplace.front_end.colours) picture = workplace.front_end.colours(panorama);
    if (picture.pixels.empty()) picture = {panorama.preview, 0.0, kPi};
    return picture;
}

/// The cell of a world point; false outside the grid.
bool cellAt(const CloudGrid& grid, const Eigen::Vector3d& world, std::array<std::uint16_t, 3>* cell)
{
    const Eigen::Vector3d at = world + grid.originMetres();
    for (int axis = 0; axis < 3; ++axis) {
        const double number =
            std::floor(at[axis] * (axis < 2 ? grid.stepsPerMetre() : grid.stepsPerMetreZ()));
        if (number < 0.0 || number > 65535.0) return false;
        (*cell)[axis] = std::uint16_t(number);
    }
    return true;
}

/// The cells' middles as measurements.
class MiddlesOfCells : public SurfaceBlocks
{
public:
    explicit MiddlesOfCells(const CloudBlocks& cloud)
        : m_cloud(cloud)
    {}
    std::uint64_t size() const override { return m_cloud.size(); }
    void forEachBlock(const Take& take) const override
    {
        m_cloud.forEachBlock([&](const CloudPoint* points, std::size_t count) {
            std::vector<SurfacePoint> block(count);
            for (std::size_t k = 0; k < count; ++k) {
                const Eigen::Vector3f at = worldOf(points[k], m_cloud.grid()).cast<float>();
                block[k] = {at.x(), at.y(), at.z(), points[k].red, points[k].green, points[k].blue};
            }
            take(block.data(), count);
        });
    }

private:
    const CloudBlocks& m_cloud;
};

} // namespace

void mergeGroup(Model& model, const Workplace& workplace, const MergeOptions& options)
{
    const std::vector<std::vector<int>> groups = model.groups();
    if (groups.empty()) throw Failure(NEXOMAP_CANNOT_SOLVE, "there is no panorama to merge");
    const std::vector<int>& group = groups.front();
    const std::vector<MergeStation> stations = stationsOf(model, workplace, group, options.indoor);
    if (stations.empty()) throw Failure(NEXOMAP_CANNOT_SOLVE, "no panorama of the largest group has lidar");

    Box everything;
    const auto near = [&](const Eigen::Vector3d& world, double range) {
        return range <= kFarthest_m && !(options.indoor && isCeiling(stations, world));
    };
    for (const MergeStation& station : stations)
        forEachSurfacePoint(station, [&](const Eigen::Vector3d& world, double range, const Eigen::Vector3d&) {
            if (near(world, range)) everything.add(world);
        });
    if (everything.low.x() > everything.high.x())
        throw Failure(NEXOMAP_CANNOT_SOLVE, "the lidar shows no surface");
    Footprint footprint(everything);
    const auto forEachWanted = [&](const MergeStation& station, const auto& take) {
        forEachSurfacePoint(station,
                            [&](const Eigen::Vector3d& world, double range, const Eigen::Vector3d& u) {
                                if (near(world, range) && footprint.has(world)) take(world, range, u);
                            });
    };
    const auto forEachOfAll = [&](const auto& take) {
        for (const MergeStation& station : stations)
            forEachWanted(station,
                          [&](const Eigen::Vector3d& world, double, const Eigen::Vector3d&) { take(world); });
    };
    if (options.indoor) {
        forEachOfAll([&](const Eigen::Vector3d& world) { footprint.count(world); });
        footprint.close(stations);
    }
    Box box;
    forEachOfAll([&](const Eigen::Vector3d& world) { box.add(world); });
    for (const MergeStation& station : stations)
        box.add(station.pose.t);
    const int cell_cm = options.density == 2 ? 1 : options.density == 1 ? 2 : 5;
    const CloudGrid grid = gridFor(box.low, box.high, cell_cm);

    VoxelCloud cloud;
    for (const MergeStation& station : stations) {
        const ColourPicture colours = coloursOf(workplace, *station.panorama);
        std::vector<VoxelSample> samples;
        forEachWanted(
            station, [&](const Eigen::Vector3d& world, double range, const Eigen::Vector3d& direction) {
                std::array<std::uint16_t, 3> cell;
                if (!cellAt(grid, world, &cell)) return;
                const cv::Vec3b bgr = colourAt(colours, direction);
                samples.push_back({mortonKey(cell[0], cell[1], cell[2]),
                                   float(1.0 / std::max(0.01, range * range)), bgr[2], bgr[1], bgr[0]});
            });
        cloud.add(samples);
    }
    const CloudInMemory cells(grid, cloud.points());
    const MiddlesOfCells measurements(cells);

    std::vector<PlanStation> places;
    for (const int n : group)
        places.push_back({model.nodes[n].pose.t, model.nodes[n].up, model.nodes[n].height_m});
    const PlanRaster raster = planRaster(cells, places, std::max(kPlanPixel_m, cell_cm * 0.01));
    const cv::Mat3b colour = topView(cells, raster);
    cv::Mat1b grey;
    cv::cvtColor(colour, grey, cv::COLOR_BGR2GRAY);
    const std::string id = model.nodes[group.front()].name + "-00000000";
    const std::string name = model.nodes[group.front()].name + "_" + model.nodes[group.back()].name + "_" +
                             std::to_string(group.size());
    const auto at = [&](const std::string& file) { return workplace.folder.pathOf(file); };
    std::vector<PendingFile> files;
    files.push_back(writeCloud(at(id + ".tmp"), cells));
    files.push_back(compressCloud(files.back().placeholder(), at(id + ".cld")));
    files.push_back(writePicture(at(name + "-gray.png"), grey, raster));
    files.push_back(writePicture(at(name + "-color.png"), colour, raster));
    if (!options.cloud_map)
        files.push_back(writePicture(at(id + ".png"), wallPlan(cells, raster, places), raster, true));
    if (options.pts) {
        files.push_back(writePts(at(name + "-group.pts"), measurements));
        files.push_back(writePts(at(name + "-concise.pts"), cells));
    }
    if (options.binary) files.push_back(writePointBinary(at(name + "-group.bin"), measurements));
    for (PendingFile& file : files)
        file.finish();
    workplace.folder.makeNewest(id + ".tmp");
    workplace.folder.makeNewest(options.cloud_map ? name + "-color.png" : id + ".png");

    for (const int n : group) {
        Node& node = model.nodes[n];
        std::array<std::uint16_t, 3> cell{};
        const Eigen::Vector2i pixel = raster.pixelOf(node.pose.t);
        if (options.cloud_map && !cellAt(grid, node.pose.t, &cell)) continue;
        node.plan_x = options.cloud_map ? int(cell[0]) : pixel.x();
        node.plan_y = options.cloud_map ? int(cell[1]) : pixel.y();
        node.plan_name = id + (options.cloud_map ? ".cld" : ".png");
    }
}

} // namespace nexomap
