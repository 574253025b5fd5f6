// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/FloorPlan.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace samplescene {
namespace {

bool same(float a, float b)
{
    return std::fabs(a - b) < 1e-3f;
}

/// The room whose side `low` or `high` lies on the line and covers the point along it.
int neighbour(const FloorPlan& plan, bool alongX, float line, float along, bool lowSide)
{
    for (std::size_t i = 0; i < plan.rooms.size(); ++i) {
        const Room& r = plan.rooms[i];
        const float edge = alongX ? (lowSide ? r.y1 : r.y0) : (lowSide ? r.x1 : r.x0);
        const float begin = alongX ? r.x0 : r.y0;
        const float end = alongX ? r.x1 : r.y1;
        if (same(edge, line) && along > begin && along < end) return static_cast<int>(i);
    }
    return -1;
}

void raiseAlong(FloorPlan& plan, bool alongX)
{
    std::set<float> lines;
    const auto insert = [](std::set<float>& set, float v) {
        if (std::none_of(set.begin(), set.end(), [v](float o) { return same(o, v); })) set.insert(v);
    };
    for (const Room& r : plan.rooms) {
        insert(lines, alongX ? r.y0 : r.x0);
        insert(lines, alongX ? r.y1 : r.x1);
    }
    for (const float line : lines) {
        std::set<float> cuts;
        for (const Room& r : plan.rooms) {
            if (!same(alongX ? r.y0 : r.x0, line) && !same(alongX ? r.y1 : r.x1, line)) continue;
            insert(cuts, alongX ? r.x0 : r.y0);
            insert(cuts, alongX ? r.x1 : r.y1);
        }
        std::vector<Wall> walls;
        for (auto cut = cuts.begin(); cut != cuts.end() && std::next(cut) != cuts.end(); ++cut) {
            Wall w;
            w.alongX = alongX;
            w.line = line;
            w.from = *cut;
            w.to = *std::next(cut);
            const float middle = (w.from + w.to) / 2;
            w.low = neighbour(plan, alongX, line, middle, true);
            w.high = neighbour(plan, alongX, line, middle, false);
            if (w.low < 0 && w.high < 0) continue;
            if (!walls.empty() && walls.back().low == w.low && walls.back().high == w.high &&
                same(walls.back().to, w.from))
                walls.back().to = w.to;
            else
                walls.push_back(w);
        }
        for (std::size_t i = 0; i < walls.size(); ++i) {
            walls[i].endsFrom = i == 0 || !same(walls[i - 1].to, walls[i].from);
            walls[i].endsTo = i + 1 == walls.size() || !same(walls[i + 1].from, walls[i].to);
            plan.walls.push_back(walls[i]);
        }
    }
}

} // namespace

float FloorPlan::inset(int room, int side) const
{
    const bool alongX = side == 0 || side == 2;
    float thickest = 0;
    for (const Wall& w : walls) {
        const int own = side == 0 || side == 3 ? w.high : w.low;
        if (w.alongX == alongX && own == room) thickest = std::max(thickest, w.thickness());
    }
    return thickest / 2;
}

void raiseWalls(FloorPlan& plan)
{
    plan.walls.clear();
    raiseAlong(plan, true);
    raiseAlong(plan, false);
}

} // namespace samplescene
