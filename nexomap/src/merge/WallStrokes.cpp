// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/WallStrokes.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kRun_m = 0.25;    // what is straight for so long is a stroke
constexpr double kFilled = 0.8;    // of it
constexpr double kJoin_m = 0.3;    // gaps in a stroke that are closed
constexpr double kWander_m = 0.08; // a stroke that leaves its row by more is askew
constexpr double kFacing_m = 0.1;
constexpr double kFlat_m = 0.018;
constexpr double kSameLine_m = 0.05;
constexpr double kCurtain_m = 0.3, kBeside_m = 2.6; // before a wall, and from the piece of it that is seen
constexpr double kRecess_m = 0.45, kWindow_m = 2.6;

/// Pixels with an unbroken run along their row, to the left or to the right.
cv::Mat1b alongRows(const cv::Mat1b& wall, int run)
{
    cv::Mat1b thick;
    cv::dilate(wall, thick, cv::Mat1b(3, 1, std::uint8_t(1)));
    cv::Mat1b found(wall.size(), std::uint8_t(0));
    std::vector<int> sum(std::size_t(wall.cols) + 1);
    for (int y = 0; y < wall.rows; ++y) {
        for (int x = 0; x < wall.cols; ++x)
            sum[std::size_t(x) + 1] = sum[std::size_t(x)] + (thick(y, x) ? 1 : 0);
        const auto filled = [&](int from, int to) {
            return from >= 0 && to <= wall.cols &&
                   sum[std::size_t(to)] - sum[std::size_t(from)] >= kFilled * run;
        };
        for (int x = 0; x < wall.cols; ++x)
            if (wall(y, x) && (filled(x - run + 1, x + 1) || filled(x, x + run))) found(y, x) = 255;
    }
    return found;
}

/// Mean of the middle half of the rows in some columns of a piece: finer than a pixel. -1: nothing there.
double middleRow(const cv::Mat1b& piece, int from, int to)
{
    std::vector<int> rows;
    for (int y = 0; y < piece.rows; ++y)
        for (int x = from; x < to; ++x)
            if (piece(y, x)) rows.push_back(y);
    if (rows.empty()) return -1.0;
    std::sort(rows.begin(), rows.end());
    const std::size_t first = rows.size() / 4, last = rows.size() - first;
    double sum = 0.0;
    for (std::size_t k = first; k < last; ++k)
        sum += rows[k] + 0.5;
    return sum / double(last - first);
}

/// From which side a stroke was seen: points lie before it, none behind.
int facingOf(const WallStroke& stroke, const cv::Mat1b& seen, int reach)
{
    int over = 0, under = 0;
    for (int k = 3; k < 3 + reach; ++k)
        for (int x = stroke.from; x < stroke.to; ++x) {
            const int above = int(stroke.row) - k, below = int(stroke.row) + k;
            over += above >= 0 && seen(above, x);
            under += below < seen.rows && seen(below, x);
        }
    const int all = reach * stroke.length();
    if (std::abs(over - under) * 5 < all) return 0;
    return over > under ? -1 : 1;
}

/// Root mean square of the distances of a piece's pixels from a row.
double spreadAbout(const cv::Mat1b& piece, double row)
{
    double sum = 0.0;
    int count = 0;
    for (int y = 0; y < piece.rows; ++y)
        for (int x = 0; x < piece.cols; ++x)
            if (piece(y, x)) sum += (y + 0.5 - row) * (y + 0.5 - row), ++count;
    return count ? std::sqrt(sum / count) : 0.0;
}

/// Whether `stroke` belongs to what hangs before a wall or to a window in it: another stroke close by faces
/// the same way, and that one is masonry.
bool shadowsAnother(const WallStroke& stroke, const std::vector<WallStroke>& all, const PlanRaster& raster)
{
    if (stroke.facing == 0) return false;
    const double same = kSameLine_m / raster.pixel_m;
    for (const WallStroke& wall : all) {
        if (wall.facing != stroke.facing || !wall.flat) continue;
        // Positive: the wall is behind the stroke as one looks at it.
        const double behind = (stroke.row - wall.row) * stroke.facing;
        const int apart = std::max(wall.from - stroke.to, stroke.from - wall.to);
        if (!stroke.flat && behind > same && behind < kCurtain_m / raster.pixel_m &&
            apart < int(kBeside_m / raster.pixel_m))
            return true;
        const bool deeper = behind < -same && behind > -kRecess_m / raster.pixel_m;
        if (deeper && stroke.length() < int(kWindow_m / raster.pixel_m) &&
            apart < int(kJoin_m / raster.pixel_m))
            return true;
    }
    return false;
}

} // namespace

int pixelsOf(double metres, const PlanRaster& raster)
{
    return std::max(1, int(std::lround(metres / raster.pixel_m)));
}

WallStrokes findStrokes(const cv::Mat1b& wall, const cv::Mat1b& seen, const PlanRaster& raster)
{
    WallStrokes result{{}, cv::Mat1b(wall.size(), std::uint8_t(0))};
    const cv::Mat1b found = alongRows(wall, pixelsOf(kRun_m, raster));
    cv::Mat1b joined;
    cv::morphologyEx(found, joined, cv::MORPH_CLOSE,
                     cv::Mat1b(1, pixelsOf(kJoin_m, raster), std::uint8_t(1)));
    cv::Mat1i labels, stats;
    cv::Mat1d centres;
    const int pieces = cv::connectedComponentsWithStats(joined, labels, stats, centres);
    std::vector<WallStroke> all;
    for (int label = 1; label < pieces; ++label) {
        const cv::Rect box(stats(label, cv::CC_STAT_LEFT), stats(label, cv::CC_STAT_TOP),
                           stats(label, cv::CC_STAT_WIDTH), stats(label, cv::CC_STAT_HEIGHT));
        const cv::Mat1b piece = (labels(box) == label) & found(box);
        const int quarter = std::max(1, box.width / 4);
        const double begin = middleRow(piece, 0, quarter),
                     end = middleRow(piece, box.width - quarter, box.width);
        if (begin >= 0 && end >= 0 && std::abs(begin - end) > kWander_m / raster.pixel_m) {
            cv::Mat1b(result.askew(box)).setTo(255, piece);
            continue;
        }
        WallStroke stroke{box.x, box.x + box.width, box.y + middleRow(piece, 0, box.width), 0, true};
        stroke.flat = spreadAbout(piece, stroke.row - box.y) < std::max(0.8, kFlat_m / raster.pixel_m);
        stroke.facing = facingOf(stroke, seen, pixelsOf(kFacing_m, raster));
        all.push_back(stroke);
    }
    for (const WallStroke& stroke : all)
        if (!shadowsAnother(stroke, all, raster)) result.strokes.push_back(stroke);
    return result;
}

} // namespace nexomap
