// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Scene.h"

#include "companions/samplescene/Places.h"
#include "companions/samplescene/Random.h"
#include "companions/samplescene/Stations.h"

namespace samplescene {

const World& Scene::worldOf(int station) const
{
    return *worlds[static_cast<std::size_t>(stations[static_cast<std::size_t>(station)].state)];
}

Scene makeScene(const Options& options)
{
    Scene scene;
    scene.options = options;
    const auto first = std::make_shared<World>();
    const std::vector<Zone> zones = buildPlace(options, false, *first);
    first->finish(static_cast<float>(options.lightSpacing_m), options.threads);
    scene.worlds = {first, first};
    if (options.movedFurniture > 0) {
        const auto later = std::make_shared<World>();
        buildPlace(options, true, *later);
        later->finish(static_cast<float>(options.lightSpacing_m), options.threads);
        scene.worlds[1] = later;
    }
    scene.stations = chooseStations(options, zones, *scene.worlds[0], *scene.worlds[1]);
    return scene;
}

} // namespace samplescene
