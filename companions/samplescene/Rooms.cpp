// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Furnisher.h"
#include "companions/samplescene/Places.h"

#include <algorithm>

namespace samplescene {
namespace {

std::vector<Zone> buildRooms(const Options& options, bool second, World& world)
{
    Random planning(hash(options.seed, 0x91a2U, static_cast<std::uint32_t>(options.kind)));
    const FloorPlan plan =
        options.kind == Kind::Office ? planOffice(options, planning) : planFlat(options, planning);
    const auto contrastOf = [&](std::size_t room) {
        const bool plain =
            options.texture == Texture::Plain || (options.texture == Texture::Mixed && room % 2 == 1);
        return plain ? 0.25f : 1.0f;
    };
    Builder b(world, hash(options.seed, 0xb11dU), 1);
    b.second = second;
    b.movedShare = static_cast<float>(options.movedFurniture);

    const std::uint32_t common = planning.bits();
    const auto seedOf = [&](std::size_t room) {
        const int twin = plan.rooms[room].twin;
        return hash(common, twin >= 0 ? 0x7214U + static_cast<std::uint32_t>(twin)
                                      : static_cast<std::uint32_t>(room));
    };
    std::vector<RoomFinish> finishes;
    int twinFinish = -1;
    for (std::size_t i = 0; i < plan.rooms.size(); ++i) {
        b.reseed(hash(seedOf(i), 1));
        b.setContrast(contrastOf(i));
        const bool twin = plan.rooms[i].twin >= 0;
        finishes.push_back(twin && twinFinish >= 0 ? finishes[static_cast<std::size_t>(twinFinish)]
                                                   : finishOf(b, plan.rooms[i]));
        if (twin && twinFinish < 0) twinFinish = static_cast<int>(i);
    }
    b.reseed(hash(common, 0x5e11U));
    b.setContrast(options.texture == Texture::Plain ? 0.25f : 1.0f);
    buildShell(b, plan, finishes, options.kind == Kind::Office);

    Random mirrors(hash(common, 0x3177U));
    std::vector<Zone> zones;
    float x0 = 1e9f, y0 = 1e9f, x1 = -1e9f, y1 = -1e9f;
    for (std::size_t i = 0; i < plan.rooms.size(); ++i) {
        const RoomSpace space = spaceOf(plan, static_cast<int>(i));
        b.reseed(hash(seedOf(i), 2));
        b.setContrast(contrastOf(i));
        furnish(b, space, contrastOf(i) < 0.5f, mirrors.chance(static_cast<float>(options.mirrors)));
        const Room& r = plan.rooms[i];
        Zone zone{r.name, r.x0, r.y0, r.x1, r.y1};
        const auto same = std::count_if(zones.begin(), zones.end(),
                                        [&](const Zone& z) { return z.name.rfind(r.name, 0) == 0; });
        if (same > 0) zone.name += " " + std::to_string(same + 1);
        zones.push_back(zone);
        const int number = static_cast<int>(i);
        world.rooms.push_back({zone.name, r.x0 + plan.inset(number, 3), r.y0 + plan.inset(number, 0),
                               r.x1 - plan.inset(number, 1), r.y1 - plan.inset(number, 2), 0, plan.height});
        x0 = std::min(x0, r.x0);
        y0 = std::min(y0, r.y0);
        x1 = std::max(x1, r.x1);
        y1 = std::max(y1, r.y1);
    }
    buildSurroundings(world, hash(common, 0x0d7U), x0, y0, x1, y1);
    return zones;
}

} // namespace

std::vector<Zone> buildPlace(const Options& options, bool second, World& world)
{
    world.sky.seed = hash(options.seed, 0x5c1U);
    return options.kind == Kind::Street ? buildStreet(options, second, world)
                                        : buildRooms(options, second, world);
}

} // namespace samplescene
