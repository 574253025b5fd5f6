// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/nexomap/MadeUpTour.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <unistd.h>

using namespace nexomap;

std::string MadeUpTour::nameOf(int index)
{
    std::string name(14, 'A');
    for (int k = 13; index > 0; --k, index /= 26)
        name[k] = char('A' + index % 26);
    return name;
}

void MadeUpTour::add(double x, double y, double heading, double z, double lean_x, double lean_y)
{
    const Eigen::Matrix3d R = rotationAboutZ(heading) * expRotation({lean_x, lean_y, 0.0});
    stations.push_back({nameOf(int(stations.size())), {R, {x, y, z}}});
}

double MadeUpTour::rayRange(const Pose& pose, const Eigen::Vector3d& direction) const
{
    const Eigen::Vector3d d = pose.R * direction.normalized(), c = pose.t;
    double range = 1e9;
    const auto meet = [&](double distance) {
        if (distance > 1e-6) range = std::min(range, distance);
    };
    meet((d.x() > 0 ? half_width_m - c.x() : -half_width_m - c.x()) / d.x());
    meet((d.y() > 0 ? half_depth_m - c.y() : -half_depth_m - c.y()) / d.y());
    meet((d.z() > 0 ? ceiling_m - camera_height_m - c.z() : -camera_height_m - c.z()) / d.z());
    for (const Wall& wall : walls) {
        const double distance = (wall.x - c.x()) / d.x();
        const double y = c.y() + distance * d.y();
        if (y < wall.door_from || y > wall.door_to) meet(distance);
    }
    return range < 60.0 ? range : 0.0;
}

Panorama MadeUpTour::panorama(int station) const
{
    Panorama panorama;
    panorama.id = stations[station].name;
    panorama.path = pathOf(station);
    panorama.preview = cv::Mat3b(64, 128, cv::Vec3b(90, std::uint8_t(40 * station), 160));
    if (!lidar) return panorama;
    panorama.camera_height_m = camera_height_m + stations[station].pose.t.z();
    panorama.range.range_m.create(256, 512);
    panorama.range.edge = cv::Mat1b(256, 512, std::uint8_t(0));
    const EquirectGrid grid{512, 256};
    for (int y = 0; y < 256; ++y)
        for (int x = 0; x < 512; ++x)
            panorama.range.range_m(y, x) =
                float(rayRange(stations[station].pose, grid.direction(x + 0.5, y + 0.5)));
    return panorama;
}

PairPose MadeUpTour::pairPose(int a, int b) const
{
    std::mt19937 random(seed * 7919u + unsigned(a) * 131u + unsigned(b));
    std::normal_distribution<double> normal;
    const Pose truth = stations[a].pose.inverse() * stations[b].pose;
    PairPose pose;
    const Eigen::Vector3d turn(normal(random), normal(random), normal(random));
    const Eigen::Vector3d shift(normal(random), normal(random), normal(random));
    pose.R_0_from_1 = truth.R * expRotation(rotation_sigma * turn);
    pose.t_0_from_1 = truth.t + translation_sigma * shift;
    pose.metric = lidar;
    if (!lidar) pose.t_0_from_1.normalize();
    pose.information.setZero();
    pose.information.diagonal().head<3>().setConstant(1.0 / std::pow(std::max(rotation_sigma, 1e-5), 2));
    pose.information.diagonal().tail<3>().setConstant(
        1.0 / std::pow(std::max(translation_sigma / (lidar ? 1.0 : truth.t.norm()), 1e-5), 2));
    pose.reliability = 0.95;
    pose.matches = int(inliers) * 2;
    // The same points of the hall for every pair, so that pairs share features.
    std::mt19937 points(seed);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    while (pose.inliers.size() < inliers) {
        const Eigen::Vector3d point(5.0 * unit(points), 5.0 * unit(points),
                                    points() % 2 ? -camera_height_m : unit(points));
        const Eigen::Vector3d in_0 = stations[a].pose.inverse() * point;
        const Eigen::Vector3d in_1 = stations[b].pose.inverse() * point;
        if (in_0.norm() < 0.3 || in_1.norm() < 0.3) continue;
        PairInlier inlier;
        inlier.bearing_0 = in_0.normalized().cast<float>();
        inlier.bearing_1 = in_1.normalized().cast<float>();
        if (lidar) inlier.range_0_m = float(in_0.norm()), inlier.range_1_m = float(in_1.norm());
        pose.inliers.push_back(inlier);
    }
    return pose;
}

FrontEnd MadeUpTour::frontEnd() const
{
    const MadeUpTour tour = *this;
    const auto indexOf = [tour](const std::string& path) {
        for (int k = 0; k < int(tour.stations.size()); ++k)
            if (path == pathOf(k)) return k;
        return -1;
    };
    FrontEnd front;
    front.identify = [=](const std::string& path, std::string* error) -> std::optional<std::string> {
        if (indexOf(path) >= 0) return tour.stations[indexOf(path)].name;
        *error = "no such file";
        return std::nullopt;
    };
    front.load = [=](const std::string& path, std::string* error) -> std::shared_ptr<const Panorama> {
        if (indexOf(path) >= 0) return std::make_shared<const Panorama>(tour.panorama(indexOf(path)));
        *error = "no such file";
        return nullptr;
    };
    front.match = [=](const Panorama& p, const Panorama& q) -> std::optional<PairPose> {
        const int a = indexOf(p.path), b = indexOf(q.path);
        const auto given = tour.overrides.find({p.id, q.id});
        if (given != tour.overrides.end()) return given->second;
        if ((tour.stations[a].pose.t - tour.stations[b].pose.t).norm() > tour.reach_m) return std::nullopt;
        return tour.pairPose(a, b);
    };
    return front;
}

FrontEnd everySecondRanged(const MadeUpTour& tour)
{
    FrontEnd front = tour.frontEnd();
    const auto ranged = [](const std::string& id) { return (id.back() - 'A') % 2 == 0; };
    front.load = [=, load = front.load](const std::string& path, std::string* error) {
        const auto panorama = load(path, error);
        if (!panorama || ranged(panorama->id)) return panorama;
        auto bare = std::make_shared<Panorama>(*panorama);
        bare->range = {};
        bare->camera_height_m = 0.0;
        return std::shared_ptr<const Panorama>(bare);
    };
    front.match = [=, match = front.match](const Panorama& p, const Panorama& q) {
        auto pose = match(p, q);
        if (!pose || (ranged(p.id) && ranged(q.id))) return pose;
        const double length = pose->t_0_from_1.norm();
        pose->metric = false;
        pose->t_0_from_1 /= length;
        pose->information.bottomRightCorner<3, 3>() *= length * length;
        for (PairInlier& inlier : pose->inliers) {
            if (!ranged(p.id)) inlier.range_0_m = 0.f;
            if (!ranged(q.id)) inlier.range_1_m = 0.f;
        }
        return pose;
    };
    return front;
}

TemporaryFolder::TemporaryFolder(const std::string& name)
{
    const std::string pattern = (std::filesystem::temp_directory_path() / (name + " XXXXXX")).string();
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back('\0');
    m_path = mkdtemp(buffer.data());
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::vector<std::string> TemporaryFolder::names() const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_path))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}
