// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Panoramas as six pinhole views each, through the steps of COLMAP's command line.
#include "benchmarks/linking/ColmapPeer.h"

#include "nexomap/src/FrontEnd.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

using namespace nexomap;
namespace fs = std::filesystem;

namespace {

constexpr int kViews = 6;

/// Axes of a view's camera in the panorama: right, down, forward, one a row.
Eigen::Matrix3d cameraFromPano(int view)
{
    const Eigen::Vector3d up = Eigen::Vector3d::UnitZ(), x = Eigen::Vector3d::UnitX(),
                          y = Eigen::Vector3d::UnitY();
    Eigen::Matrix3d axes;
    if (view < 4) {
        const Eigen::Vector3d forward = directionFromAngles(0.5 * kPi * view, 0.5 * kPi);
        axes << forward.cross(up).transpose(), -up.transpose(), forward.transpose();
    } else {
        const double side = view == 4 ? 1.0 : -1.0;
        axes << -y.transpose(), side * x.transpose(), side * up.transpose();
    }
    return axes;
}

std::string viewName(int panorama, int view)
{
    char name[32];
    std::snprintf(name, sizeof name, "%04d-%d.jpg", panorama, view);
    return name;
}

bool writeViews(const ColourPicture& colours, int panorama, int size, const std::string& folder)
{
    const EquirectGrid grid{colours.pixels.cols, colours.pixels.rows, colours.polar_min, colours.polar_max};
    for (int view = 0; view < kViews; ++view) {
        const Eigen::Matrix3d pano_from_camera = cameraFromPano(view).transpose();
        cv::Mat1f map_x(size, size), map_y(size, size);
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x) {
                const Eigen::Vector3d ray(x + 0.5 - 0.5 * size, y + 0.5 - 0.5 * size, 0.5 * size);
                const Eigen::Vector2d pixel = grid.pixel(pano_from_camera * ray);
                map_x(y, x) = float(pixel.x() - 0.5);
                map_y(y, x) = float(std::clamp(pixel.y() - 0.5, 0.0, grid.height - 1.0));
            }
        cv::Mat3b picture;
        cv::remap(colours.pixels, picture, map_x, map_y, cv::INTER_CUBIC, cv::BORDER_WRAP);
        if (!cv::imwrite(folder + "/" + viewName(panorama, view), picture, {cv::IMWRITE_JPEG_QUALITY, 95}))
            return false;
    }
    return true;
}

double childSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return double(usage.ru_utime.tv_sec) + 1e-6 * double(usage.ru_utime.tv_usec);
}

bool run(const std::string& name, const std::string& arguments, const std::string& work, ColmapResult* result)
{
    const std::string command =
        "QT_QPA_PLATFORM=offscreen colmap " + arguments + " > '" + work + "/" + name + ".log' 2>&1";
    const double user_before = childSeconds();
    const auto start = std::chrono::steady_clock::now();
    if (std::system(command.c_str()) != 0 && name != "mapping") { // it calls it a failure to find no model
        std::fprintf(stderr, "%s/%s.log: COLMAP failed\n", work.c_str(), name.c_str());
        return false;
    }
    const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    result->steps.push_back({name, wall, childSeconds() - user_before});
    return true;
}

struct View
{
    int panorama = 0;
    RigidPose world_from_pano;
};

/// images.txt of a model: two lines a picture, the first with its pose.
std::vector<View> readModel(const fs::path& file)
{
    std::vector<View> views;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream words(line);
        int id = 0, camera = 0;
        Eigen::Quaterniond q;
        Eigen::Vector3d t;
        std::string name;
        words >> id >> q.w() >> q.x() >> q.y() >> q.z() >> t.x() >> t.y() >> t.z() >> camera >> name;
        int panorama = 0, view = 0;
        if (!words || std::sscanf(name.c_str(), "%d-%d", &panorama, &view) != 2) continue;
        const Eigen::Matrix3d world_from_camera = q.normalized().toRotationMatrix().transpose();
        views.push_back({panorama, {world_from_camera * cameraFromPano(view), -(world_from_camera * t)}});
        std::getline(in, line); // its points
    }
    return views;
}

double middle(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

RigidPose medianPose(const std::vector<RigidPose>& poses)
{
    RigidPose median;
    double least = 1e30;
    for (const RigidPose& candidate : poses) {
        double sum = 0.0;
        for (const RigidPose& other : poses)
            sum += Eigen::AngleAxisd(candidate.R.transpose() * other.R).angle();
        if (sum < least) least = sum, median.R = candidate.R;
    }
    for (int k = 0; k < 3; ++k) {
        std::vector<double> values;
        for (const RigidPose& pose : poses)
            values.push_back(pose.t[k]);
        median.t[k] = middle(values);
    }
    return median;
}

bool takeLargestModel(const std::string& work, ColmapResult* result)
{
    for (const auto& entry : fs::directory_iterator(work + "/sparse")) {
        const std::string model = entry.path().string();
        ColmapResult unused;
        if (!run("convert",
                 "model_converter --input_path '" + model + "' --output_path '" + model +
                     "' --output_type TXT",
                 work, &unused))
            return false;
        ++result->models;
        std::map<int, std::vector<RigidPose>> by_panorama;
        const std::vector<View> views = readModel(entry.path() / "images.txt");
        for (const View& view : views)
            by_panorama[view.panorama].push_back(view.world_from_pano);
        if (by_panorama.size() <= result->world_from_pano.size()) continue;
        result->views_placed = int(views.size());
        result->world_from_pano.clear();
        for (const auto& [panorama, poses] : by_panorama)
            result->world_from_pano[panorama] = medianPose(poses);
    }
    return true;
}

} // namespace

double ColmapResult::wall_s() const
{
    double sum = 0.0;
    for (const Step& step : steps)
        sum += step.wall_s;
    return sum;
}

double ColmapResult::user_s() const
{
    double sum = 0.0;
    for (const Step& step : steps)
        sum += step.user_s;
    return sum;
}

bool hasColmap()
{
    return std::system("command -v colmap >/dev/null 2>&1") == 0;
}

std::optional<ColmapResult> placeWithColmap(const std::vector<std::string>& files,
                                            const ColmapOptions& options)
{
    const std::string views = options.work + "/views", database = options.work + "/database.db";
    fs::create_directories(views);
    fs::create_directories(options.work + "/sparse");
    const FrontEnd front_end = panoramaFileFrontEnd();
    for (std::size_t k = 0; k < files.size(); ++k) {
        Panorama panorama;
        panorama.path = files[k];
        const ColourPicture colours = front_end.colours(panorama);
        if (colours.pixels.empty() || !writeViews(colours, int(k), options.view_px, views)) {
            std::fprintf(stderr, "%s: no views of it\n", files[k].c_str());
            return std::nullopt;
        }
    }
    ColmapResult result;
    result.views = kViews * int(files.size());
    const std::string half = std::to_string(options.view_px / 2), threads = std::to_string(options.threads);
    const std::string data = " --database_path '" + database + "'", images = " --image_path '" + views + "'";
    const bool done =
        run("features",
            "feature_extractor" + data + images +
                " --ImageReader.camera_model PINHOLE --ImageReader.single_camera 1"
                " --ImageReader.camera_params " +
                half + "," + half + "," + half + "," + half +
                " --SiftExtraction.use_gpu 0 --SiftExtraction.num_threads " + threads,
            options.work, &result) &&
        run("matching",
            "exhaustive_matcher" + data + " --SiftMatching.use_gpu 0 --SiftMatching.num_threads " + threads,
            options.work, &result) &&
        run("mapping",
            "mapper" + data + images + " --output_path '" + options.work + "/sparse' --Mapper.num_threads " +
                threads +
                " --Mapper.ba_refine_focal_length 0 --Mapper.ba_refine_principal_point 0"
                " --Mapper.ba_refine_extra_params 0",
            options.work, &result) &&
        takeLargestModel(options.work, &result);
    if (!done) return std::nullopt;
    return result;
}
