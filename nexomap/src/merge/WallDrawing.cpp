// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/WallDrawing.h"

#include "nexomap/src/merge/WallBodies.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kStroke_m = 0.04;
constexpr double kBridge_m = 2.6;     // a window with its curtains, a wardrobe
constexpr double kFloorInDoor = 0.25; // of a gap, that makes it a door
constexpr double kLeastSeen = 0.5;    // of a gap, that makes it a part of a room
constexpr double kNearSeen_m = 0.7;
constexpr double kThickest_m = 0.26; // of a wall of which both faces are seen
constexpr double kCorner_m = 0.06;   // between ends that meet in a corner
constexpr double kReach_m = 0.45;    // black farther from where one can go is no wall of a room
constexpr double kSpeck_m = 0.3, kLeastAskew_m = 0.8;

cv::Rect barOf(const WallStroke& stroke, int from, int to, int thick)
{
    return {from, std::max(0, int(std::lround(stroke.row - thick / 2.0))), to - from, thick};
}

/// What is drawn of strokes along rows: first they alone, then their continuations.
class RowPen
{
public:
    RowPen(const cv::Mat1b& floor, const cv::Mat1b& near, const PlanRaster& raster)
        : m_floor(floor)
        , m_near(near)
        , m_thick(pixelsOf(kStroke_m, raster))
        , m_most(pixelsOf(kBridge_m, raster))
    {}
    void draw(const std::vector<WallStroke>& strokes, cv::Mat1b& plan) const
    {
        const cv::Rect all(0, 0, plan.cols, plan.rows);
        for (const WallStroke& s : strokes)
            plan(barOf(s, s.from, s.to, m_thick) & all).setTo(0);
    }
    /// Continuations of strokes to the next black of `before` where no floor is seen between but a room is
    /// beside.
    std::vector<WallStroke> prolonged(const std::vector<WallStroke>& strokes, const cv::Mat1b& before) const
    {
        std::vector<WallStroke> more;
        for (const WallStroke& s : strokes)
            for (const int step : {-1, 1}) {
                const int start = step < 0 ? s.from - 1 : s.to, row = int(s.row);
                // Just behind the face: before it the floor is seen in any case.
                const int inside = std::clamp(row - s.facing * m_thick, 0, before.rows - 1);
                int end = start;
                while (end >= 0 && end < before.cols && std::abs(end - start) <= m_most &&
                       !blackAt(before, row, end))
                    end += step;
                if (end < 0 || end >= before.cols || std::abs(end - start) > m_most) continue;
                WallStroke between = s;
                between.from = std::min(start, end);
                between.to = std::max(start, end) + 1;
                if (isWall(inside, between.from, between.to)) more.push_back(between);
            }
        return more;
    }

private:
    bool blackAt(const cv::Mat1b& plan, int row, int x) const
    {
        for (int y = std::max(0, row - 1); y <= std::min(plan.rows - 1, row + 1); ++y)
            if (!plan(y, x)) return true;
        return false;
    }
    bool isWall(int row, int from, int to) const
    {
        int floor = 0, near = 0;
        for (int x = from; x < to; ++x) {
            floor += m_floor(row, x) != 0;
            near += m_near(row, x) != 0;
        }
        return floor <= kFloorInDoor * (to - from) && near >= kLeastSeen * (to - from);
    }
    const cv::Mat1b &m_floor, &m_near;
    int m_thick, m_most;
};

/// Fills gaps of at most `most` pixels along rows in which the floor is not seen: the inside of walls,
/// corners.
void fillRows(cv::Mat1b& plan, const cv::Mat1b& floor, int most)
{
    for (int y = 0; y < plan.rows; ++y)
        for (int x = 0; x < plan.cols; ++x) {
            if (plan(y, x)) continue;
            int to = x + 1;
            while (to < plan.cols && to - x <= most + 1 && plan(y, to))
                ++to;
            if (to >= plan.cols || plan(y, to) || to == x + 1) continue;
            int seen = 0;
            for (int k = x + 1; k < to; ++k)
                seen += floor(y, k) != 0;
            if (4 * seen <= to - x - 1)
                for (int k = x + 1; k < to; ++k)
                    plan(y, k) = 0;
        }
}

/// Closes what is open between bodies along rows and bodies along columns that end where they would meet: the
/// outer corners of a building, of which nobody sees more than the inner one.
void drawCorners(const std::vector<WallBody>& rows, const std::vector<WallBody>& columns, int reach,
                 cv::Mat1b& plan)
{
    const cv::Rect all(0, 0, plan.cols, plan.rows);
    for (const WallBody& row : rows)
        for (const WallBody& column : columns) {
            if (row.window || column.window) continue;
            const cv::Rect square(column.bar.x, row.bar.y, column.bar.width, row.bar.height);
            const cv::Rect near(square.x - reach, square.y - reach, square.width + 2 * reach,
                                square.height + 2 * reach);
            if ((near & row.bar).empty() || (near & column.bar).empty()) continue;
            plan(square & all).setTo(0);
            // What the square still lacks to the two that meet in it.
            const cv::Rect across = near & row.bar, along = near & column.bar;
            plan((square | cv::Rect(across.x, square.y, across.width, square.height)) & all).setTo(0);
            plan((square | cv::Rect(square.x, along.y, square.width, along.height)) & all).setTo(0);
        }
}

cv::Rect turned(const cv::Rect& bar)
{
    return {bar.y, bar.x, bar.height, bar.width};
}

/// Erases black that does not bound the white about the stations: what lies behind windows.
void keepReachable(cv::Mat1b& plan, const PlanRaster& raster, const std::vector<PlanStation>& stations)
{
    cv::Mat1b ground = plan.clone();
    for (const PlanStation& station : stations) {
        const Eigen::Vector2i pixel = raster.pixelOf(station.position);
        if (ground(pixel.y(), pixel.x()) == 255)
            cv::floodFill(ground, cv::Point(pixel.x(), pixel.y()), cv::Scalar(128));
    }
    const cv::Mat1b elsewhere = ground != 128;
    cv::Mat1f away;
    cv::distanceTransform(elsewhere, away, cv::DIST_L2, 3);
    plan.setTo(255, away * raster.pixel_m > kReach_m);
}

void removeSpecks(cv::Mat1b& plan, int least)
{
    cv::Mat1i labels, stats;
    cv::Mat1d centres;
    const cv::Mat1b black = plan == 0;
    const int pieces = cv::connectedComponentsWithStats(black, labels, stats, centres);
    for (int label = 1; label < pieces; ++label) {
        const cv::Rect box(stats(label, cv::CC_STAT_LEFT), stats(label, cv::CC_STAT_TOP),
                           stats(label, cv::CC_STAT_WIDTH), stats(label, cv::CC_STAT_HEIGHT));
        if (std::max(box.width, box.height) < least) plan(box).setTo(255, labels(box) == label);
    }
}

} // namespace

cv::Mat1b drawWalls(const WallEvidence& evidence, const PlanRaster& raster,
                    const std::vector<PlanStation>& stations)
{
    cv::Mat1b near;
    const int reach = 2 * pixelsOf(kNearSeen_m, raster) + 1;
    cv::dilate(evidence.seen, near, cv::getStructuringElement(cv::MORPH_RECT, {reach, reach}));
    const cv::Mat1b wall_across = evidence.wall.t(), seen_across = evidence.seen.t(),
                    floor_across = evidence.floor.t(), near_across = near.t();
    WallStrokes rows = findStrokes(evidence.wall, evidence.seen, raster),
                columns = findStrokes(wall_across, seen_across, raster);
    std::vector<WallStroke> clear = withoutReveals(rows.strokes, columns.strokes, raster);
    columns.strokes = withoutReveals(columns.strokes, rows.strokes, raster);
    rows.strokes = std::move(clear);
    const RowPen pen(evidence.floor, near, raster), pen_across(floor_across, near_across, raster);

    cv::Mat1b strokes(evidence.wall.size(), std::uint8_t(255));
    pen.draw(rows.strokes, strokes);
    cv::Mat1b across = strokes.t();
    pen_across.draw(columns.strokes, across);
    strokes = across.t();
    const auto withGuesses = [&](std::vector<WallStroke> seen, const std::vector<WallStroke>& guessed) {
        seen.insert(seen.end(), guessed.begin(), guessed.end());
        return joinedStrokes(seen, raster);
    };
    WallFaces in_rows{withGuesses(rows.strokes, pen.prolonged(rows.strokes, strokes)), evidence.solid,
                      evidence.floor, evidence.seen},
        in_columns{withGuesses(columns.strokes, pen_across.prolonged(columns.strokes, across)),
                   evidence.solid.t(), floor_across, seen_across};
    // Once more, now that faces go on across windows.
    clear = withoutReveals(in_rows.strokes, in_columns.strokes, raster);
    in_columns.strokes = withoutReveals(in_columns.strokes, in_rows.strokes, raster);
    in_rows.strokes = std::move(clear);
    const WallHabits habits = wallHabits(in_rows, in_columns, raster);
    std::vector<WallBody> along = wallBodies(in_rows, habits, raster);
    std::vector<WallBody> down = wallBodies(in_columns, habits, raster);
    for (WallBody& body : down)
        body.bar = turned(body.bar);

    // Askew walls stay as they were seen, filled between their faces; what is short is no wall.
    const int thickest = pixelsOf(kThickest_m, raster);
    cv::Mat1b plan = ~(rows.askew & columns.askew.t());
    removeSpecks(plan, pixelsOf(kLeastAskew_m, raster));
    fillRows(plan, evidence.floor, thickest);
    across = plan.t();
    fillRows(across, floor_across, thickest);
    plan = across.t();
    const cv::Rect all(0, 0, plan.cols, plan.rows);
    for (const auto* bodies : {&along, &down})
        for (const WallBody& body : *bodies)
            plan(body.bar & all).setTo(0);
    drawCorners(along, down, pixelsOf(kCorner_m, raster), plan);
    keepReachable(plan, raster, stations);
    removeSpecks(plan, pixelsOf(kSpeck_m, raster));
    return plan;
}

} // namespace nexomap
