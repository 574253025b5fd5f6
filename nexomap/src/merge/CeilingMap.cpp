// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/CeilingMap.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace nexomap {
namespace {

constexpr float kSameHeight_m = 0.03f; // samples of one underside
constexpr float kStep_m = 0.04f;       // between neighbouring squares of one ceiling: slopes up to 40 degrees
constexpr double kLeastArea_m2 = 0.8, kLeastHalfWidth_m = 0.2;
constexpr double kHanging_m2 = 2.5, kHangs_m = 0.08, kAbout_m = 0.3;
constexpr double kIntoWalls_m = 0.4;
constexpr double kSlab_m = 0.25; // between a ceiling and the floor above it
constexpr double kMostSquares = 1.6e7;

int squareNumber(double metres)
{
    return int(std::floor(metres / Overhead::kSquare_m));
}

/// Squares of one smooth underside, joined across gaps of one square.
cv::Mat1i labelled(const cv::Mat1f& height, std::vector<std::vector<cv::Point>>* regions)
{
    cv::Mat1i labels(height.size(), 0);
    std::vector<cv::Point> open;
    for (int y = 0; y < height.rows; ++y)
        for (int x = 0; x < height.cols; ++x) {
            if (height(y, x) == 0.f || labels(y, x)) continue;
            regions->emplace_back();
            std::vector<cv::Point>& region = regions->back();
            labels(y, x) = int(regions->size());
            open.assign(1, {x, y});
            while (!open.empty()) {
                const cv::Point p = open.back();
                open.pop_back();
                region.push_back(p);
                for (int dy = -2; dy <= 2; ++dy)
                    for (int dx = -2; dx <= 2; ++dx) {
                        const cv::Point q(p.x + dx, p.y + dy);
                        if (q.x < 0 || q.y < 0 || q.x >= height.cols || q.y >= height.rows) continue;
                        if (height(q) == 0.f || labels(q)) continue;
                        const int far = std::max(std::abs(dx), std::abs(dy));
                        if (std::abs(height(q) - height(p)) > kStep_m * float(std::max(1, far))) continue;
                        labels(q) = labels(p);
                        open.push_back(q);
                    }
            }
        }
    return labels;
}

} // namespace

void OverheadBuilder::add(double x, double y, double height_m)
{
    m_samples.push_back({squareNumber(x), squareNumber(y), float(height_m), 1.f});
}

Overhead OverheadBuilder::finish()
{
    std::sort(m_samples.begin(), m_samples.end(), [](const auto& a, const auto& b) {
        return a.y != b.y ? a.y < b.y : a.x != b.x ? a.x < b.x : a.height_m > b.height_m;
    });
    Overhead overhead;
    for (std::size_t from = 0, to = 0; from < m_samples.size(); from = to) {
        while (to < m_samples.size() && m_samples[to].x == m_samples[from].x &&
               m_samples[to].y == m_samples[from].y)
            ++to;
        // Lone samples at the top are noise: the highest height that three agree on, if there are three.
        std::size_t few = std::min<std::size_t>(3, to - from);
        float below = std::numeric_limits<float>::infinity();
        for (std::size_t k = from; k + few <= to; ++k) {
            const float top = m_samples[k].height_m;
            if (top > below || top - m_samples[k + few - 1].height_m > kSameHeight_m) continue;
            float sum = 0.f, count = 0.f;
            for (std::size_t i = k; i < to && top - m_samples[i].height_m <= kSameHeight_m; ++i)
                sum += m_samples[i].height_m, count += 1.f;
            overhead.squares.push_back({m_samples[from].x, m_samples[from].y, sum / count, count});
            if (std::isfinite(below)) break; // that was the lower one
            below = sum / count - float(Overhead::kRoom_m);
            few = 1; // one that is none is too small for a ceiling
        }
    }
    m_samples.clear();
    overhead.squares.shrink_to_fit(); // one is kept of each station
    return overhead;
}

CeilingMap::CeilingMap(const std::vector<const Overhead*>& stations,
                       const std::vector<Eigen::Vector2d>& places)
{
    cv::Point low(std::numeric_limits<int>::max(), std::numeric_limits<int>::max());
    cv::Point high(std::numeric_limits<int>::lowest(), std::numeric_limits<int>::lowest());
    std::vector<Overhead::Square> all;
    std::size_t count = 0;
    for (const Overhead* station : stations)
        count += station->squares.size();
    all.reserve(count);
    for (const Overhead* station : stations)
        for (const Overhead::Square& square : station->squares) {
            all.push_back(square);
            low = {std::min(low.x, square.x), std::min(low.y, square.y)};
            high = {std::max(high.x, square.x), std::max(high.y, square.y)};
        }
    const int margin = int(kIntoWalls_m / Overhead::kSquare_m) + 3;
    if (all.empty()) return;
    m_low = low - cv::Point(margin, margin);
    const double columns = double(high.x) - low.x + 2 * margin + 1;
    const double rows = double(high.y) - low.y + 2 * margin + 1;
    if (columns * rows > kMostSquares) return; // larger than any building that this is for
    std::sort(all.begin(), all.end(), [](const auto& a, const auto& b) {
        return a.y != b.y ? a.y < b.y : a.x != b.x ? a.x < b.x : a.height_m > b.height_m;
    });
    cv::Mat1f lower(int(rows), int(columns), 0.f), upper = lower.clone();
    fillFrom(all, &lower, &upper);
    const bool several = cv::countNonZero(lower != upper) > 0;
    keepWideOnes(lower);
    if (several) {
        keepWideOnes(upper);
        upper.copyTo(lower, lower == 0.f); // what is no ceiling has one above it
    }
    if (cv::countNonZero(lower) == 0) return;
    m_height = prolonged(lower);
    if (several) m_upper = prolonged(upper);
    findInside(places);
}

/// @param all  in the order of squares, the highest of a square first
void CeilingMap::fillFrom(const std::vector<Overhead::Square>& all, cv::Mat1f* lower, cv::Mat1f* upper) const
{
    for (std::size_t from = 0, to = 0; from < all.size(); from = to) {
        while (to < all.size() && all[to].x == all[from].x && all[to].y == all[from].y)
            ++to;
        const auto meanFrom = [&](std::size_t first) {
            float sum = 0.f, weight = 0.f;
            for (std::size_t k = first; k < to && all[first].height_m - all[k].height_m <= kSameHeight_m; ++k)
                sum += all[k].weight * all[k].height_m, weight += all[k].weight;
            return sum / weight;
        };
        const cv::Point square = cv::Point(all[from].x, all[from].y) - m_low;
        (*upper)(square) = (*lower)(square) = meanFrom(from);
        for (std::size_t k = from; k < to; ++k)
            if (all[from].height_m - all[k].height_m >= float(Overhead::kRoom_m)) {
                (*lower)(square) = meanFrom(k);
                break;
            }
    }
}

/// Takes away what is too small or too narrow for a ceiling, and what hangs below one.
void CeilingMap::keepWideOnes(cv::Mat1f& height) const
{
    std::vector<std::vector<cv::Point>> regions;
    cv::Mat1i labels = labelled(height, &regions);
    const double square_m2 = Overhead::kSquare_m * Overhead::kSquare_m;
    cv::Mat1b known;
    cv::Mat(labels > 0).copyTo(known);
    const int about = int(kAbout_m / Overhead::kSquare_m);
    for (std::size_t k = 0; k < regions.size(); ++k) {
        const std::vector<cv::Point>& region = regions[k];
        const cv::Rect box = cv::boundingRect(region) + cv::Size(2, 2) - cv::Point(1, 1);
        cv::Mat1b own(box.size(), std::uint8_t(0));
        for (const cv::Point& p : region)
            own(p - box.tl()) = 255;
        cv::morphologyEx(own, own, cv::MORPH_CLOSE, cv::getStructuringElement(cv::MORPH_RECT, {3, 3}));
        cv::Mat1f depth;
        cv::distanceTransform(own, depth, cv::DIST_L2, 3);
        double widest = 0.0;
        cv::minMaxLoc(depth, nullptr, &widest);
        bool none = double(region.size()) * square_m2 < kLeastArea_m2 ||
                    widest * Overhead::kSquare_m < kLeastHalfWidth_m;
        if (!none && double(region.size()) * square_m2 < kHanging_m2) {
            // Small and with a larger, higher underside about it: a lamp, a hood.
            std::size_t rim = 0, below = 0;
            for (const cv::Point& p : region) {
                bool edge = false, higher = false;
                for (const cv::Point& d :
                     {cv::Point(about, 0), cv::Point(-about, 0), cv::Point(0, about), cv::Point(0, -about)}) {
                    const cv::Point q = p + d;
                    if (q.x < 0 || q.y < 0 || q.x >= labels.cols || q.y >= labels.rows) continue;
                    const int other = labels(q);
                    if (other == int(k) + 1) continue;
                    edge = true;
                    higher = higher || (other > 0 && height(q) > height(p) + kHangs_m &&
                                        regions[std::size_t(other) - 1].size() > 2 * region.size());
                }
                rim += edge;
                below += higher;
            }
            none = 10 * below > 7 * rim;
        }
        if (none)
            for (const cv::Point& p : region)
                labels(p) = -1;
    }
    height.setTo(0.f, labels <= 0);
}

/// Fills gaps and goes on into the walls with the height of the nearest ceiling.
cv::Mat1f CeilingMap::prolonged(const cv::Mat1f& height)
{
    cv::Mat1f distance;
    cv::Mat1i nearest;
    const cv::Mat1b none = height == 0.f;
    cv::distanceTransform(none, distance, nearest, cv::DIST_L2, 5, cv::DIST_LABEL_PIXEL);
    std::vector<float> by_label(std::size_t(height.total()) + 1, 0.f);
    for (int y = 0; y < height.rows; ++y)
        for (int x = 0; x < height.cols; ++x)
            if (height(y, x) > 0.f || height(y, x) < 0.f) by_label[std::size_t(nearest(y, x))] = height(y, x);
    cv::Mat1f wider(height.size(), 0.f);
    const float reach = float(kIntoWalls_m / Overhead::kSquare_m);
    for (int y = 0; y < height.rows; ++y)
        for (int x = 0; x < height.cols; ++x)
            if (distance(y, x) <= reach) wider(y, x) = by_label[std::size_t(nearest(y, x))];
    cv::medianBlur(wider, wider, 5);
    return wider;
}

void CeilingMap::findInside(const std::vector<Eigen::Vector2d>& places)
{
    // Rooms beyond a wall belong to it, another house across the street does not.
    cv::Mat1i parts;
    const cv::Mat1b covered = m_height != 0.f;
    cv::connectedComponents(covered, parts);
    std::size_t below = 0;
    cv::Mat1b inside(covered.size(), std::uint8_t(0));
    for (const Eigen::Vector2d& place : places) {
        const cv::Point p = squareOf(place.x(), place.y());
        const bool on_map = p.x >= 0 && p.y >= 0 && p.x < parts.cols && p.y < parts.rows;
        if (!on_map || !parts(p)) continue;
        ++below;
        if (!inside(p)) inside.setTo(255, parts == parts(p));
    }
    if (5 * below >= 4 * places.size()) m_inside = inside;
}

cv::Point CeilingMap::squareOf(double x, double y) const
{
    return cv::Point(squareNumber(x), squareNumber(y)) - m_low;
}

double CeilingMap::heightAt(double x, double y) const
{
    const cv::Point p = squareOf(x, y);
    if (p.x < 0 || p.y < 0 || p.x >= m_height.cols || p.y >= m_height.rows || m_height(p) == 0.f)
        return std::numeric_limits<double>::infinity();
    return double(m_height(p));
}

bool CeilingMap::isOpen(double x, double y, double height_m, double below_m) const
{
    const double ceiling = heightAt(x, y);
    if (height_m <= ceiling - below_m) return true;
    if (m_upper.empty() || height_m <= ceiling + kSlab_m) return false;
    return height_m <= double(m_upper(squareOf(x, y))) - below_m;
}

bool CeilingMap::isInside(double x, double y) const
{
    if (m_inside.empty()) return true;
    const cv::Point p = squareOf(x, y);
    return p.x >= 0 && p.y >= 0 && p.x < m_inside.cols && p.y < m_inside.rows && m_inside(p);
}

} // namespace nexomap
