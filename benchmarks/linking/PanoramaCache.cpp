// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Panoramas as the library holds them, in files of this machine's own layout.
#include "benchmarks/linking/PanoramaCache.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

using namespace nexomap;

namespace {

template <class T>
void put(std::ostream& out, const std::vector<T>& values)
{
    const std::uint64_t count = values.size();
    out.write(reinterpret_cast<const char*>(&count), sizeof count);
    out.write(reinterpret_cast<const char*>(values.data()), std::streamsize(count * sizeof(T)));
}

template <class T>
void take(std::istream& in, std::vector<T>& values)
{
    std::uint64_t count = 0;
    in.read(reinterpret_cast<char*>(&count), sizeof count);
    if (!in || count > (1u << 24)) return in.setstate(std::ios::failbit);
    values.resize(count);
    in.read(reinterpret_cast<char*>(values.data()), std::streamsize(count * sizeof(T)));
}

void put(std::ostream& out, const cv::Mat& picture)
{
    const std::int32_t head[3] = {picture.rows, picture.cols, picture.type()};
    out.write(reinterpret_cast<const char*>(head), sizeof head);
    for (int row = 0; row < picture.rows; ++row)
        out.write(reinterpret_cast<const char*>(picture.ptr(row)),
                  std::streamsize(std::size_t(picture.cols) * picture.elemSize()));
}

template <class Picture>
void take(std::istream& in, Picture& picture)
{
    std::int32_t head[3] = {0, 0, 0};
    in.read(reinterpret_cast<char*>(head), sizeof head);
    if (!in || head[0] < 0 || head[1] < 0 || head[0] > 4096 || head[1] > 8192)
        return in.setstate(std::ios::failbit);
    picture.create(head[0], head[1]);
    in.read(reinterpret_cast<char*>(picture.data), std::streamsize(picture.total() * picture.elemSize()));
}

} // namespace

std::shared_ptr<const Panorama>
cachedPanorama(const std::string& folder, const std::string& path, std::string* error,
               const std::function<std::shared_ptr<const Panorama>(const std::string&, std::string*)>& load)
{
    if (folder.empty()) return load(path, error);
    std::string key = std::filesystem::absolute(path).string();
    for (char& c : key)
        if (c == '/') c = '+';
    const std::filesystem::path kept = std::filesystem::path(folder) / (key + ".features");
    if (std::ifstream in{kept, std::ios::binary}) {
        auto panorama = std::make_shared<Panorama>();
        std::vector<char> id;
        std::vector<double> height;
        take(in, id);
        take(in, height);
        take(in, panorama->features.descriptors);
        take(in, panorama->features.bearings);
        take(in, panorama->features.ranges_m);
        take(in, panorama->features.scales);
        take(in, panorama->features.angles_rad);
        take(in, panorama->range.range_m);
        take(in, panorama->range.edge);
        take(in, panorama->preview);
        panorama->id.assign(id.begin(), id.end());
        panorama->path = path;
        if (in && height.size() == 2) {
            panorama->camera_height_m = height[0];
            if (std::isfinite(height[1])) panorama->walls_azimuth = height[1];
            return panorama;
        }
    }
    const auto panorama = load(path, error);
    if (!panorama) return panorama;
    std::filesystem::create_directories(folder);
    std::ofstream out(kept, std::ios::binary);
    put(out, std::vector<char>(panorama->id.begin(), panorama->id.end()));
    put(out, std::vector<double>{panorama->camera_height_m, panorama->walls_azimuth.value_or(NAN)});
    put(out, panorama->features.descriptors);
    put(out, panorama->features.bearings);
    put(out, panorama->features.ranges_m);
    put(out, panorama->features.scales);
    put(out, panorama->features.angles_rad);
    put(out, panorama->range.range_m);
    put(out, panorama->range.edge);
    put(out, panorama->preview);
    return panorama;
}

std::shared_ptr<const Panorama> withoutRange(const std::shared_ptr<const Panorama>& panorama)
{
    auto bare = std::make_shared<Panorama>(*panorama);
    bare->range = {};
    bare->camera_height_m = 0.0;
    std::fill(bare->features.ranges_m.begin(), bare->features.ranges_m.end(), 0.f);
    return bare;
}
