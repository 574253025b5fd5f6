// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/MergeGroup.h"

#include "nexomap/src/merge/CloudCompression.h"
#include "nexomap/src/merge/PictureFile.h"
#include "nexomap/src/merge/PlanPicture.h"
#include "nexomap/src/merge/PointFiles.h"
#include "nexomap/src/merge/SurfaceMerge.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kPlanPixel_m = 0.02;

std::vector<MergeStation> stationsOf(const Model& model, const Workplace& workplace,
                                     const std::vector<int>& group)
{
    std::vector<MergeStation> stations;
    for (const int n : group) {
        const Node& node = model.nodes[n];
        // Ranges are read anew in full; a panorama that is not in memory need not come back for that.
        const Panorama* loaded =
            workplace.front_end.ranges ? node.source->loaded() : &node.source->get(workplace.front_end);
        stations.push_back({node.name, node.path, node.pose, node.up, loaded});
    }
    return stations;
}

} // namespace

std::vector<std::string> mergeGroup(Model& model, const Workplace& workplace, const MergeOptions& options)
{
    const std::vector<std::vector<int>> groups = model.groups();
    if (groups.empty()) throw Failure(NEXOMAP_CANNOT_SOLVE, "there is no panorama to merge");
    const std::vector<int>& group = groups.front();
    if (workplace.front_end.ranges)
        for (const Node& node : model.nodes)
            node.source->rest(); // a hundred maps that nobody works on now
    const int cell_cm = options.density == 2 ? 1 : options.density == 1 ? 2 : 5;
    SurfaceMergeOptions merging;
    merging.indoor = options.indoor;
    merging.cell_cm = cell_cm;
    merging.memory_bytes = options.memory_bytes;
    const SurfaceMerge merge(stationsOf(model, workplace, group), workplace.front_end,
                             workplace.folder.pathOf(""), merging);
    const CloudBlocks& cells = merge.cloud();
    const SurfaceBlocks& measurements = merge.measurements();
    const CloudGrid& grid = cells.grid();

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
    return merge.leftOut();
}

} // namespace nexomap
