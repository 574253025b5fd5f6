// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/WallBodies.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kStroke_m = 0.04;
constexpr double kThinnest_m = 0.04, kThickest_m = 0.45; // of a wall of which both faces are seen
constexpr double kEnds_m = 0.12;                         // by which the faces of a wall may end apart
constexpr double kSameLine_m = 0.05;
constexpr double kBehind_m = 0.05, kDeepest_m = 0.4; // of a window's frame behind the face
constexpr double kFaceNoise_m = 0.04, kGap_m = 0.06;
constexpr double kLeastWindow_m = 0.35, kLeastPier_m = 0.15;
constexpr double kSillShown_m = 0.3;
constexpr double kCurtain_m = 0.5;
constexpr double kLeastOpen = 0.8;
constexpr double kReveal_m = 0.7, kBesideFace_m = 0.2, kInReveal = 0.35;

double medianOf(std::vector<double> values)
{
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Row of the opposite face of the wall behind a stroke in a column; nothing when nobody saw it.
double otherFace(const WallStroke& stroke, int column, const WallFaces& faces, const PlanRaster& raster)
{
    double nearest = kThickest_m / raster.pixel_m;
    for (const WallStroke& other : faces.strokes) {
        if (other.facing != -stroke.facing) continue;
        const int ends = pixelsOf(kEnds_m, raster);
        if (column < other.from - ends || column >= other.to + ends) continue;
        const double thick = (stroke.row - other.row) * stroke.facing;
        if (thick >= kThinnest_m / raster.pixel_m) nearest = std::min(nearest, thick);
    }
    return nearest * raster.pixel_m < kThickest_m ? nearest : 0.0;
}

/// How far behind a face something is seen through it, without a break from the face on; pixels, 0: nothing.
int seenBehind(const WallStroke& stroke, int column, const WallFaces& faces, const PlanRaster& raster)
{
    const int most = pixelsOf(kDeepest_m, raster), least = pixelsOf(kBehind_m, raster);
    int last = 0;
    const int first = pixelsOf(kFaceNoise_m, raster), gap = pixelsOf(kGap_m, raster);
    for (int depth = first; depth <= most && depth - last <= gap; ++depth) {
        const int row = int(stroke.row) - stroke.facing * depth;
        if (row < 0 || row >= faces.seen.rows) break;
        if (faces.seen(row, column)) last = depth;
    }
    return last >= least ? last : 0;
}

bool solidAt(const WallStroke& stroke, int column, const cv::Mat1b& solid, int reach)
{
    for (int row = int(stroke.row) - reach; row <= int(stroke.row) + reach; ++row)
        if (row >= 0 && row < solid.rows && solid(row, column)) return true;
    return false;
}

/// What a column of a face is.
struct Column
{
    double thick = 0.0;  ///< pixels; 0: the other face is not seen
    bool window = false; ///< no masonry, and things are seen behind
    int depth = 0;       ///< how far, pixels
    bool hidden = false; ///< neither masonry nor anything behind it
    bool operator==(const Column& other) const { return thick == other.thick && window == other.window; }
};

/// Runs of columns with or without a window that are too short become like those about them.
void smooth(std::vector<Column>& columns, bool window, int least)
{
    for (std::size_t from = 0, to = 0; from < columns.size(); from = to) {
        for (to = from + 1; to < columns.size() && columns[to].window == columns[from].window;)
            ++to;
        const bool inside = window || (from > 0 && to < columns.size());
        if (columns[from].window == window && int(to - from) < least && inside)
            for (std::size_t k = from; k < to; ++k)
                columns[k].window = !window;
    }
}

/// Curtains hide where a window ends: half of what they hide is taken for the window, half for the wall.
void widenWindows(std::vector<Column>& columns, int most)
{
    const std::vector<Column> before = columns;
    const int count = int(columns.size());
    for (int k = 0; k < count; ++k) {
        if (!before[std::size_t(k)].window) continue;
        for (const int step : {-1, 1}) {
            int end = k + step;
            while (end >= 0 && end < count && before[std::size_t(end)].hidden)
                end += step;
            const bool masonry = end >= 0 && end < count && !before[std::size_t(end)].window;
            if (!masonry || std::abs(end - k) > most) continue;
            for (int at = k + step; 2 * std::abs(at - k) <= std::abs(end - k); at += step)
                columns[std::size_t(at)].window = true;
        }
    }
}

std::vector<Column> columnsOf(const WallStroke& stroke, const WallFaces& faces, const PlanRaster& raster)
{
    std::vector<Column> columns(std::size_t(std::max(0, stroke.length())));
    for (std::size_t k = 0; k < columns.size(); ++k) {
        const int x = stroke.from + int(k);
        columns[k].thick = otherFace(stroke, x, faces, raster);
        if (columns[k].thick > 0.0 || solidAt(stroke, x, faces.solid, pixelsOf(kFaceNoise_m, raster)))
            continue;
        columns[k].depth = seenBehind(stroke, x, faces, raster);
        columns[k].window = columns[k].depth > 0;
        columns[k].hidden = !columns[k].window;
    }
    smooth(columns, false, pixelsOf(kLeastPier_m, raster));
    smooth(columns, true, pixelsOf(kLeastWindow_m, raster));
    widenWindows(columns, pixelsOf(kCurtain_m, raster));
    return columns;
}

/// Whether no floor is seen anywhere behind most of a face.
bool isOuter(const WallStroke& stroke, const cv::Mat1b& floor)
{
    int open = 0;
    for (int x = stroke.from; x < stroke.to; ++x) {
        int row = int(stroke.row) - 4 * stroke.facing;
        while (row >= 0 && row < floor.rows && !floor(row, x))
            row -= stroke.facing;
        open += row < 0 || row >= floor.rows;
    }
    return open >= kLeastOpen * stroke.length();
}

/// Rows from a face to `depth` pixels behind it.
cv::Rect behindFace(const WallStroke& stroke, int from, int to, double nearer, double farther)
{
    const double a = stroke.row - stroke.facing * nearer, b = stroke.row - stroke.facing * farther;
    const int top = int(std::lround(std::min(a, b))), bottom = int(std::lround(std::max(a, b)));
    return {from, top, to - from, std::max(1, bottom - top)};
}

} // namespace

double WallHabits::outer_m() const
{
    return std::max(thickness_m, window_depth_m > 0.0 ? window_depth_m + kStroke_m / 2 : 0.0);
}

std::vector<WallStroke> joinedStrokes(const std::vector<WallStroke>& strokes, const PlanRaster& raster)
{
    std::vector<WallStroke> sorted = strokes, joined;
    std::sort(sorted.begin(), sorted.end(),
              [](const WallStroke& a, const WallStroke& b) { return a.from < b.from; });
    for (const WallStroke& stroke : sorted) {
        const auto before = std::find_if(joined.begin(), joined.end(), [&](const WallStroke& other) {
            return other.facing == stroke.facing && other.to + 1 >= stroke.from &&
                   std::abs(other.row - stroke.row) * raster.pixel_m < kSameLine_m;
        });
        if (before == joined.end()) {
            joined.push_back(stroke);
            continue;
        }
        const double lengths = before->length() + stroke.length();
        before->row = (before->row * before->length() + stroke.row * stroke.length()) / lengths;
        before->to = std::max(before->to, stroke.to);
    }
    return joined;
}

std::vector<WallStroke> withoutReveals(const std::vector<WallStroke>& strokes,
                                       const std::vector<WallStroke>& across, const PlanRaster& raster)
{
    const int beside = pixelsOf(kBesideFace_m, raster);
    const double same = kSameLine_m / raster.pixel_m, deepest = kThickest_m / raster.pixel_m;
    const auto isLong = [&](const WallStroke& face) {
        return face.facing != 0 && face.length() * raster.pixel_m >= kReveal_m;
    };
    std::vector<WallStroke> kept;
    for (const WallStroke& stroke : strokes) {
        const auto crosses = [&](const WallStroke& face) {
            // What is a column to one is a row to the other.
            if (!isLong(face) || stroke.row < face.from - beside || stroke.row >= face.to + beside)
                return false;
            const double far = face.row - face.facing * deepest;
            const double inside = std::min(double(stroke.to), std::max(face.row, far)) -
                                  std::max(double(stroke.from), std::min(face.row, far));
            return inside > kInReveal * stroke.length();
        };
        const auto isBehind = [&](const WallStroke& face) {
            const double behind = (face.row - stroke.row) * face.facing;
            return isLong(face) && face.length() >= 2 * stroke.length() && stroke.from >= face.from &&
                   stroke.to <= face.to && behind > same && behind < deepest;
        };
        if (isLong(stroke) || !(std::any_of(across.begin(), across.end(), crosses) ||
                                std::any_of(strokes.begin(), strokes.end(), isBehind)))
            kept.push_back(stroke);
    }
    return kept;
}

WallHabits wallHabits(const WallFaces& rows, const WallFaces& columns, const PlanRaster& raster)
{
    std::vector<double> thick, depth;
    for (const WallFaces* faces : {&rows, &columns})
        for (const WallStroke& stroke : faces->strokes) {
            if (stroke.facing == 0) continue;
            for (const Column& column : columnsOf(stroke, *faces, raster)) {
                if (column.thick > 0.0) thick.push_back(column.thick * raster.pixel_m);
                if (column.window && column.depth > 0) depth.push_back(column.depth * raster.pixel_m);
            }
        }
    WallHabits habits;
    if (!thick.empty()) habits.thickness_m = medianOf(thick);
    if (!depth.empty() && depth.size() * raster.pixel_m >= kSillShown_m)
        habits.window_depth_m = medianOf(depth);
    return habits;
}

std::vector<WallBody> wallBodies(const WallFaces& faces, const WallHabits& habits, const PlanRaster& raster)
{
    const double line = kStroke_m / raster.pixel_m, inner = habits.thickness_m / raster.pixel_m,
                 outer = habits.outer_m() / raster.pixel_m;
    const double frame = habits.window_depth_m / raster.pixel_m;
    std::vector<WallBody> bodies;
    for (const WallStroke& stroke : faces.strokes) {
        if (stroke.facing == 0) { // a partition of which both sides are seen at once, or something unclear
            bodies.push_back({cv::Rect(stroke.from, int(std::lround(stroke.row - line / 2)), stroke.length(),
                                       std::max(1, int(std::lround(line)))),
                              false});
            continue;
        }
        const std::vector<Column> columns = columnsOf(stroke, faces, raster);
        const double one_sided = isOuter(stroke, faces.floor) ? outer : inner;
        for (std::size_t from = 0, to = 0; from < columns.size(); from = to) {
            for (to = from + 1; to < columns.size() && columns[to] == columns[from];)
                ++to;
            const int a = stroke.from + int(from), b = stroke.from + int(to);
            if (columns[from].window)
                bodies.push_back({behindFace(stroke, a, b, frame - line / 2, frame + line / 2), true});
            else
                bodies.push_back({behindFace(stroke, a, b, 0.0,
                                             columns[from].thick > 0.0 ? columns[from].thick : one_sided),
                                  false});
        }
    }
    return bodies;
}

} // namespace nexomap
