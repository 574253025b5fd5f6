// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <Eigen/Core>
#include <opencv2/core.hpp>

#include <cstdint>
#include <vector>

namespace nexomap {

/// Where a station sees undersides above itself, by squares of the plan.
struct Overhead
{
    struct Square
    {
        std::int32_t x = 0, y = 0; ///< number of the square, kSquare_m wide
        float height_m = 0.f;      ///< world, along the vertical
        float weight = 0.f;        ///< samples behind it
    };
    static constexpr double kSquare_m = 0.05;
    static constexpr double kRoom_m = 1.9; ///< between an underside and one above it: a room may lie between
    std::vector<Square> squares;           ///< in order, the highest of a square first
};

/// Gathers a station's samples for `Overhead`.
class OverheadBuilder
{
public:
    /// An underside at a place; heights along the vertical.
    void add(double x, double y, double height_m);
    /// The highest underside that several samples agree on, in each square, and the highest a room below it:
    /// through a stairwell a station sees ceilings above ceilings.
    Overhead finish();

private:
    std::vector<Overhead::Square> m_samples;
};

/// The ceilings of a storey, room by room: undersides that are wide enough, and near their edges those
/// prolonged into the walls. Undersides of lintels, shelves and lamps are none.
class CeilingMap
{
public:
    /// @param stations  those of one storey
    /// @param places    where these stations stand
    CeilingMap(const std::vector<const Overhead*>& stations, const std::vector<Eigen::Vector2d>& places);

    /// Height of the ceiling at a place, of the lower one where rooms lie above each other; +infinity where
    /// there is none.
    double heightAt(double x, double y) const;
    /// Whether a height at a place lies below the ceiling by a distance, or in a room above it.
    bool isOpen(double x, double y, double height_m, double below_m) const;
    /// Whether a place belongs to the building: below its ceilings or in the walls between, where most
    /// stations have one above them; everywhere otherwise.
    bool isInside(double x, double y) const;
    bool empty() const { return m_height.empty(); }

private:
    cv::Point squareOf(double x, double y) const;
    void keepWideOnes(cv::Mat1f& height) const;
    void fillFrom(const std::vector<Overhead::Square>& all, cv::Mat1f* lower, cv::Mat1f* upper) const;
    static cv::Mat1f prolonged(const cv::Mat1f& height);
    void findInside(const std::vector<Eigen::Vector2d>& places);

    cv::Point m_low;
    cv::Mat1f m_height; ///< 0: none
    cv::Mat1f m_upper;  ///< the highest ceilings, where there are some above each other; empty otherwise
    cv::Mat1b m_inside; ///< empty: everywhere
};

} // namespace nexomap
