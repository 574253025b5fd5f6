// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/WallStrokes.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kRun_m = 0.25;       // what is straight for so long is a stroke
constexpr double kFilled = 0.8;       // of it
constexpr double kHole_m = 0.04;      // in a row, that is none
constexpr double kJoin_m = 0.3;       // gaps in a stroke that are closed
constexpr int kMostLines = 4;         // of one piece
constexpr double kHalfBand_m = 0.04;  // to either side of a line's row
constexpr double kLeastOfPiece = 0.3; // on a line; less of it is askew
constexpr double kBesideFace_m = 0.06, kFacing_m = 0.1;
constexpr double kFlat_m = 0.018;
constexpr double kSameLine_m = 0.05;
constexpr double kCurtain_m = 0.3, kBeside_m = 2.6; // before a wall, and from the piece of it that is seen
constexpr double kRecess_m = 0.45, kWindow_m = 2.6;
constexpr double kLeastPier_m = 0.8;    // what is shorter and stands before a wall is no part of it
constexpr double kLeastUnclear_m = 0.8; // of what is seen from both sides or from neither
constexpr double kOneWall_m = 4.0;      // between pieces of one wall

/// Pixels with an unbroken run along their row, to the left or to the right.
cv::Mat1b alongRows(const cv::Mat1b& wall, const PlanRaster& raster)
{
    const int run = pixelsOf(kRun_m, raster);
    cv::Mat1b thick;
    // Along the row by so little that what runs across does not become a run.
    const int wide = 1 + 2 * int(std::lround(kHole_m / raster.pixel_m / 2));
    cv::dilate(wall, thick, cv::Mat1b(3, wide, std::uint8_t(1)));
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
int facingOf(const WallStroke& stroke, const cv::Mat1b& seen, int nearest, int reach)
{
    int over = 0, under = 0;
    for (int k = nearest; k < nearest + reach; ++k)
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

/// How much is seen of the line on which a stroke lies: walls go on beyond furniture, curtains do not.
int seenOfLine(const WallStroke& stroke, const std::vector<WallStroke>& all, const PlanRaster& raster)
{
    int length = 0;
    for (const WallStroke& other : all) {
        const int apart = std::max(other.from - stroke.to, stroke.from - other.to);
        if (other.facing == stroke.facing &&
            std::abs(other.row - stroke.row) * raster.pixel_m < kSameLine_m &&
            apart * raster.pixel_m < kOneWall_m)
            length += other.length();
    }
    return length;
}

/// Whether `stroke` belongs to what hangs before a wall or to a window in it: another line close by faces the
/// same way, and more is seen of that one.
bool shadowsAnother(const WallStroke& stroke, const std::vector<WallStroke>& all,
                    const std::vector<int>& lines, int line, const PlanRaster& raster)
{
    const double length_m = stroke.length() * raster.pixel_m;
    const bool cloth = !stroke.flat || length_m < kLeastPier_m;
    for (std::size_t k = 0; k < all.size(); ++k) {
        const WallStroke& wall = all[k];
        if (wall.facing == 0 || wall.facing == -stroke.facing || lines[k] <= line) continue;
        // Positive: the wall is behind the stroke as one looks at it.
        const double behind_m = (stroke.row - wall.row) * wall.facing * raster.pixel_m;
        const double apart_m = std::max(wall.from - stroke.to, stroke.from - wall.to) * raster.pixel_m;
        if (cloth && behind_m > kSameLine_m && behind_m < kCurtain_m && apart_m < kBeside_m) return true;
        const bool deeper = behind_m < -kSameLine_m && behind_m > -kRecess_m;
        if (deeper && length_m < kWindow_m && apart_m < kJoin_m) return true;
    }
    return false;
}

/// Cuts a piece into strokes, the row with most of it first: what hangs before a wall often touches it. What
/// fills no row is left in the piece.
void takeStrokes(cv::Mat1b& piece, const cv::Point& at, const PlanRaster& raster,
                 std::vector<WallStroke>* all)
{
    const int run = pixelsOf(kRun_m, raster), join = pixelsOf(kJoin_m, raster);
    const int whole = cv::countNonZero(piece), half = pixelsOf(kHalfBand_m, raster);
    for (int k = 0; k < kMostLines; ++k) {
        std::vector<int> counts(std::size_t(piece.rows) + 2, 0);
        for (int y = 0; y < piece.rows; ++y)
            counts[std::size_t(y) + 1] = cv::countNonZero(piece.row(y));
        int best = 0, most = 0;
        for (int y = 0; y < piece.rows; ++y) {
            const int about =
                counts[std::size_t(y)] + counts[std::size_t(y) + 1] + counts[std::size_t(y) + 2];
            if (about > most) most = about, best = y;
        }
        const cv::Range rows(std::max(0, best - half), std::min(piece.rows, best + half + 1));
        cv::Mat1b band = piece.rowRange(rows);
        if (most < kLeastOfPiece * whole || most == 0) return;
        cv::Mat1b filled;
        cv::reduce(band, filled, 0, cv::REDUCE_MAX);
        for (int from = 0; from < filled.cols; ++from) {
            if (!filled(0, from)) continue;
            int to = from + 1, last = from;
            for (; to < filled.cols && to - last <= join; ++to)
                if (filled(0, to)) last = to;
            to = last + 1;
            if (to - from >= run / 2) {
                const double row = middleRow(band, from, to);
                WallStroke stroke{at.x + from, at.x + to, at.y + rows.start + row, 0, true};
                stroke.flat =
                    spreadAbout(band.colRange(from, to), row) < std::max(0.8, kFlat_m / raster.pixel_m);
                all->push_back(stroke);
            }
            from = to;
        }
        band.setTo(0);
    }
}

} // namespace

int pixelsOf(double metres, const PlanRaster& raster)
{
    return std::max(1, int(std::lround(metres / raster.pixel_m)));
}

WallStrokes findStrokes(const cv::Mat1b& wall, const cv::Mat1b& seen, const PlanRaster& raster)
{
    WallStrokes result{{}, cv::Mat1b(wall.size(), std::uint8_t(0))};
    const cv::Mat1b found = alongRows(wall, raster);
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
        cv::Mat1b piece = (labels(box) == label) & found(box);
        const std::size_t first = all.size();
        const int whole = cv::countNonZero(piece);
        takeStrokes(piece, box.tl(), raster, &all);
        for (std::size_t k = first; k < all.size(); ++k)
            all[k].facing =
                facingOf(all[k], seen, pixelsOf(kBesideFace_m, raster), pixelsOf(kFacing_m, raster));
        if (2 * cv::countNonZero(piece) > whole) cv::Mat1b(result.askew(box)).setTo(255, piece);
    }
    std::vector<int> lines;
    for (const WallStroke& stroke : all)
        lines.push_back(seenOfLine(stroke, all, raster));
    for (std::size_t k = 0; k < all.size(); ++k)
        if ((all[k].facing != 0 || all[k].length() * raster.pixel_m >= kLeastUnclear_m) &&
            !shadowsAnother(all[k], all, lines, lines[k], raster))
            result.strokes.push_back(all[k]);
    return result;
}

} // namespace nexomap
