// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Truth.h"

#include "companions/samplescene/Parallel.h"

#include <nlohmann/json.hpp>

namespace samplescene {
namespace {

using Json = nlohmann::ordered_json;

Json optionsOf(const Options& o)
{
    const char* kinds[] = {"flat", "office", "street"};
    const char* textures[] = {"rich", "plain", "mixed"};
    const char* nadirs[] = {"clear", "patch", "tripod", "operator"};
    return {{"kind", kinds[static_cast<int>(o.kind)]},
            {"count", o.count},
            {"seed", o.seed},
            {"rooms", o.rooms},
            {"lean_deg", o.lean_deg},
            {"exposure_steps", o.exposureSteps},
            {"identical_rooms", o.identicalRooms},
            {"mirrors", o.mirrors},
            {"glass", o.glass},
            {"closed_doors", o.closedDoors},
            {"moved_furniture", o.movedFurniture},
            {"texture", textures[static_cast<int>(o.texture)]},
            {"nadir", nadirs[static_cast<int>(o.nadir)]},
            {"picture_noise", o.pictureNoise},
            {"interleaved_noise", o.interleavedNoise},
            {"lidar", o.lidar},
            {"range_noise_m", o.rangeNoise_m},
            {"range_fill", o.rangeFill},
            {"drop_outs", o.dropOuts},
            {"max_range_m", o.maxRange_m},
            {"blind_cone_deg", o.blindCone_deg},
            {"light_spacing_m", o.lightSpacing_m}};
}

} // namespace

std::string truthOf(const Scene& scene, const std::vector<std::string>& files)
{
    Json panoramas = Json::array();
    for (std::size_t i = 0; i < scene.stations.size(); ++i) {
        const Station& s = scene.stations[i];
        panoramas.push_back({{"file", files[i]},
                             {"id", s.id},
                             {"position", s.position},
                             {"rotation", s.rotation},
                             {"camera_height", s.cameraHeight},
                             {"room", s.room},
                             {"state", s.state},
                             {"exposure", s.exposure}});
    }
    struct Pair
    {
        int first, second;
        Sight sight;
    };
    std::vector<Pair> pairs;
    const int count = static_cast<int>(scene.stations.size());
    for (int i = 0; i < count; ++i)
        for (int j = i + 1; j < count; ++j)
            pairs.push_back({i, j, {}});
    parallelFor(pairs.size(), 4, scene.options.threads, [&](std::size_t begin, std::size_t end) {
        for (std::size_t k = begin; k < end; ++k)
            pairs[k].sight = sightBetween(scene, pairs[k].first, pairs[k].second);
    });
    Json list = Json::array();
    for (const Pair& p : pairs) {
        list.push_back({{"panorama0", p.first},
                        {"panorama1", p.second},
                        {"id0", scene.stations[static_cast<std::size_t>(p.first)].id},
                        {"id1", scene.stations[static_cast<std::size_t>(p.second)].id},
                        {"distance", p.sight.distance},
                        {"sees", p.sight.sees()},
                        {"eye_free", p.sight.eyeFree},
                        {"foot_free", p.sight.footFree},
                        {"through_glass", p.sight.throughGlass},
                        {"share0", p.sight.shareOf0},
                        {"share1", p.sight.shareOf1}});
    }
    const Json truth = {{"options", optionsOf(scene.options)}, {"panoramas", panoramas}, {"pairs", list}};
    return truth.dump(1) + "\n";
}

} // namespace samplescene
