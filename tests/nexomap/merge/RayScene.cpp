// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/nexomap/merge/RayScene.h"

#include "nexomap/src/pair/RangeReduction.h"

#include "tests/nexomap/MadeUpTour.h"

#include <algorithm>

using namespace nexomap;

namespace {

int indexOf(const RayScene& scene, const std::string& name)
{
    for (int k = 0; k < int(scene.stations.size()); ++k)
        if (MadeUpTour::nameOf(k) == name) return k;
    return -1;
}

} // namespace

void RayScene::addRoom(const Eigen::Vector3d& low, const Eigen::Vector3d& high)
{
    for (int axis = 0; axis < 3; ++axis) {
        const int a = (axis + 1) % 3, b = (axis + 2) % 3;
        for (const double at : {low[axis], high[axis]})
            sides.push_back({axis, at, {low[a], low[b]}, {high[a], high[b]}});
    }
}

double RayScene::range(int station, const Eigen::Vector3d& direction) const
{
    const Eigen::Vector3d from = stations[std::size_t(station)];
    double nearest = 1e9;
    for (const Side& side : sides) {
        const double distance = (side.at - from[side.axis]) / direction[side.axis];
        if (!(distance > 1e-6 && distance < nearest)) continue;
        const Eigen::Vector3d hit = from + distance * direction;
        const Eigen::Vector2d in(hit[(side.axis + 1) % 3], hit[(side.axis + 2) % 3]);
        if ((in.array() >= side.low.array()).all() && (in.array() <= side.high.array()).all())
            nearest = distance;
    }
    const double other = extra ? extra(station, direction) : 0.0;
    if (other > 0.0) nearest = std::min(nearest, other);
    return nearest < 60.0 ? nearest : 0.0;
}

std::vector<MergeStation> RayScene::mergeStations() const
{
    std::vector<MergeStation> list;
    for (int k = 0; k < int(stations.size()); ++k) {
        Pose pose;
        pose.R.setIdentity();
        pose.t = stations[std::size_t(k)];
        list.push_back(
            {MadeUpTour::nameOf(k), MadeUpTour::pathOf(k), pose, Eigen::Vector3d::UnitZ(), nullptr});
    }
    return list;
}

Model RayScene::linkedModel(int apart) const
{
    const FrontEnd front_end = frontEnd();
    Model model;
    for (const MergeStation& station : mergeStations()) {
        auto panorama = std::make_shared<Panorama>();
        panorama->id = station.name;
        panorama->path = station.path;
        std::string error;
        const RangePicture picture = front_end.ranges(station.path, station.name, &error);
        panorama->range = rangeMapFromPicture(picture.steps, picture.unit_m);
        Node node;
        node.name = station.name;
        node.path = station.path;
        node.pose = station.pose;
        node.source = std::make_shared<PanoramaSource>(std::move(panorama));
        node.source->rest(); // as linking leaves it
        model.nodes.push_back(node);
        Edge edge;
        edge.node_1 = int(model.nodes.size()) - 1;
        edge.node_0 = edge.node_1 - 1;
        edge.link = true;
        if (edge.node_0 >= 0 && edge.node_0 != apart && edge.node_1 != apart) model.edges.push_back(edge);
    }
    return model;
}

FrontEnd RayScene::frontEnd() const
{
    const RayScene scene = *this;
    FrontEnd front;
    front.ranges = [scene](const std::string&, const std::string& id, std::string* error) {
        const int station = indexOf(scene, id);
        RangePicture picture;
        if (station < 0) {
            *error = "no such station";
            return picture;
        }
        picture.unit_m = 0.001f;
        picture.steps.create(512, 1024);
        const EquirectGrid grid{1024, 512};
        for (int y = 0; y < 512; ++y)
            for (int x = 0; x < 1024; ++x)
                picture.steps(y, x) =
                    std::uint16_t(scene.range(station, grid.direction(x + 0.5, y + 0.5)) * 1000.0 + 0.5);
        return picture;
    };
    front.colours = [scene](const Panorama& panorama) {
        const int station = indexOf(scene, panorama.id);
        const double light = scene.exposures.empty() ? 1.0 : scene.exposures.at(std::size_t(station));
        ColourPicture picture;
        picture.pixels = cv::Mat3b(
            64, 128,
            cv::Vec3b(std::uint8_t(kBlue * light), std::uint8_t(kGreen * light), std::uint8_t(kRed * light)));
        return picture;
    };
    return front;
}
