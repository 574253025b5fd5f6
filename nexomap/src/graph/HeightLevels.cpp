// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Lengths by the heights at which things stand.
#include "nexomap/src/graph/HeightLevels.h"

#include "nexomap/src/graph/LengthTies.h"
#include "nexomap/src/graph/ScaleRecovery.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>

namespace nexomap {
namespace {

constexpr double kBearingNoise = 0.001; // radians, of features and what the pose leaves open
constexpr double kVaguest = 0.06;       // of a depth, relative
constexpr std::size_t kFewest = 12, kMost = 100;
constexpr double kCounting = 40.0; // points of a set: more repeat what these say
constexpr double kClear = 12.0;    // of the log-likelihood, above what any other factor reaches
constexpr double kOther = 0.08;    // of the logarithm: what counts as another factor
constexpr double kReach = 1.2, kStep = 0.01;
constexpr double kLengths = 0.5; // deviation of the logarithms of a building's lengths

struct Point
{
    double height, spread; ///< from the cameras, and its deviation relative to it
};

/// Heights of an edge's points for a length of 1, or in metres where it is metric.
std::vector<Point> pointsOf(const GraphEdge& edge)
{
    const PairPose& pose = *edge.pose;
    std::vector<Point> points;
    for (const PairInlier& inlier : pose.inliers) {
        const Eigen::Vector3d ray_0 = inlier.bearing_0.cast<double>(),
                              ray_1 = inlier.bearing_1.cast<double>();
        if (pose.metric) {
            if (inlier.range_0_m > 0.f) points.push_back({inlier.range_0_m * ray_0.z(), 0.01});
            continue;
        }
        const Eigen::Vector2d depths = rayDepths(ray_0, ray_1, pose.R_0_from_1, pose.t_0_from_1);
        if (!(depths[0] > 0.0)) continue;
        const Eigen::Vector3d across = ray_0.cross(pose.R_0_from_1 * ray_1);
        const double spread = kBearingNoise / std::max(1e-6, across.norm());
        if (spread > kVaguest) continue;
        // Of the two frames' verticals, neither is better.
        points.push_back({0.5 * (depths[0] * ray_0.z() + depths[1] * ray_1.z()), spread});
    }
    return points;
}

void append(std::vector<Point>& all, const std::vector<Point>& part, double log_factor)
{
    for (const Point& p : part)
        all.push_back({p.height * std::exp(log_factor), p.spread});
}

/// Size of nearly all heights.
double sizeOf(const std::vector<Point>& points)
{
    std::vector<double> sizes;
    for (const Point& p : points)
        sizes.push_back(std::abs(p.height));
    const auto nearly = sizes.begin() + std::ptrdiff_t(sizes.size() * 19 / 20);
    std::nth_element(sizes.begin(), nearly, sizes.end());
    return std::max(1e-9, *nearly);
}

/// Density of heights, in units in which nearly all lie within 1.5 of the cameras.
class Levels
{
public:
    explicit Levels(const std::vector<Point>& points)
        : m_unit(sizeOf(points) / kSize)
    {
        count(points, 1.0);
        smooth();
    }
    /// What is left without some of the points.
    Levels without(const std::vector<Point>& points) const
    {
        Levels rest = *this;
        rest.count(points, -1.0);
        rest.smooth();
        return rest;
    }
    double unit() const { return m_unit; }

    /// Per unit, at a height in units known with this deviation.
    double at(double height, double deviation) const
    {
        const double bin = (height + kSpan) * kPerUnit;
        if (!(bin >= 0.0 && bin < kBins)) return 0.0;
        int width = 0;
        while (width + 1 < kWidths && kNarrowest + deviation > widthOf(width) * std::sqrt(kWider))
            ++width;
        return m_densities[std::size_t(width)][std::size_t(bin)];
    }

    static constexpr double kSize = 1.5;

private:
    static constexpr int kWidths = 8;
    static constexpr double kSpan = 4.0, kPerUnit = 100.0, kNarrowest = 0.01, kWider = 1.4;
    static constexpr int kBins = int(2 * kSpan * kPerUnit);
    using Bins = std::array<double, std::size_t(kBins)>;

    static double widthOf(int width)
    {
        static const std::array<double, std::size_t(kWidths)> widths = [] {
            std::array<double, std::size_t(kWidths)> result{};
            for (int w = 0; w < kWidths; ++w)
                result[std::size_t(w)] = kNarrowest * std::pow(kWider, w);
            return result;
        }();
        return widths[std::size_t(width)];
    }

    void count(const std::vector<Point>& points, double weight)
    {
        for (const Point& p : points) {
            const double bin = (p.height / m_unit + kSpan) * kPerUnit;
            if (bin >= 0.0 && bin < kBins) m_counts[std::size_t(bin)] += weight;
        }
        m_total += weight * double(points.size());
    }

    void smooth()
    {
        for (int w = 0; w < kWidths; ++w) {
            const double sigma = widthOf(w) * kPerUnit;
            const int reach = int(std::ceil(3.0 * sigma));
            std::vector<double> kernel;
            double sum = 0.0;
            for (int d = -reach; d <= reach; ++d)
                sum += kernel.emplace_back(std::exp(-0.5 * d * d / (sigma * sigma)));
            Bins& density = m_densities[std::size_t(w)];
            density.fill(0.0);
            for (int k = 0; k < kBins; ++k) {
                if (m_counts[std::size_t(k)] == 0.0) continue;
                const double share = m_counts[std::size_t(k)] * kPerUnit / (std::max(1.0, m_total) * sum);
                for (int j = std::max(0, k - reach); j <= std::min(kBins - 1, k + reach); ++j)
                    density[std::size_t(j)] += share * kernel[std::size_t(j - k + reach)];
            }
        }
    }

    double m_unit, m_total = 0.0;
    Bins m_counts{};
    std::array<Bins, std::size_t(kWidths)> m_densities;
};

/// Logarithm of the factor that lays points onto levels; NaN without a clear one.
/// @param usual  the logarithm that would make the lengths behind the points as long as most are
double factorOnto(const Levels& levels, const std::vector<Point>& points, double usual)
{
    constexpr double kAnywhere = 0.2, kAnywhereDensity = 0.02;
    constexpr int kSteps = int(2.0 * kReach / kStep) + 1;
    const std::size_t stride = std::max<std::size_t>(1, points.size() / kMost);
    // From the points' own spread, so that the two start about equally large.
    const double start = std::log(Levels::kSize / sizeOf(points));
    std::array<double, std::size_t(kSteps)> factors{}, likelihood{};
    for (int k = 0; k < kSteps; ++k)
        factors[std::size_t(k)] = std::exp(start + k * kStep - kReach);
    std::size_t used = 0;
    for (std::size_t i = 0; i < points.size(); i += stride, ++used)
        for (int k = 0; k < kSteps; ++k) {
            const double height = points[i].height * factors[std::size_t(k)];
            const double density = levels.at(height, std::abs(height) * points[i].spread);
            likelihood[std::size_t(k)] +=
                std::log((1.0 - kAnywhere) * density + kAnywhere * kAnywhereDensity) + k * kStep - kReach;
        }
    const double counting = std::min(1.0, kCounting / double(used));
    for (int k = 0; k < kSteps; ++k) {
        const double unusual = (start + std::log(levels.unit()) + k * kStep - kReach - usual) / kLengths;
        likelihood[std::size_t(k)] = counting * likelihood[std::size_t(k)] - 0.5 * unusual * unusual;
    }
    const auto best = std::max_element(likelihood.begin(), likelihood.end());
    const int at = int(best - likelihood.begin());
    double other = -std::numeric_limits<double>::infinity();
    for (int k = 0; k < kSteps; ++k)
        if (std::abs(k - at) * kStep > kOther) other = std::max(other, likelihood[std::size_t(k)]);
    if (at == 0 || at == kSteps - 1 || *best - other < kClear)
        return std::numeric_limits<double>::quiet_NaN();
    return start + at * kStep - kReach + std::log(levels.unit());
}

} // namespace

std::vector<double> factorsByHeights(const std::vector<GraphEdge>& edges, const std::vector<int>& component,
                                     const LengthSets& sets)
{
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    struct Group
    {
        std::vector<Point> known;
        std::vector<double> log_lengths;
        std::map<int, std::vector<Point>> open; // by set
    };
    std::vector<double> factors(std::size_t(sets.count), kNone);
    std::map<int, Group> groups;
    for (std::size_t e = 0; e < edges.size(); ++e) {
        const bool metric = sets.of[e] < 0 && edges[e].pose->metric; // ranges are right whatever the pose
        if (sets.of[e] < 0 && !metric) continue;
        Group& group = groups[component[std::size_t(edges[e].i)]];
        const int set = std::max(0, sets.of[e]);
        const bool goes_by = set == 0 || sets.held[std::size_t(set)];
        const double log_length = metric ? 0.0 : sets.log_lengths[int(e)];
        append(goes_by ? group.known : group.open[set], pointsOf(edges[e]), log_length);
        if (!goes_by) continue;
        factors[std::size_t(set)] = 0.0;
        group.log_lengths.push_back(log_length + std::log(std::max(1e-6, edges[e].pose->t_0_from_1.norm())));
    }
    for (auto& [number, group] : groups) {
        for (bool joined = !group.log_lengths.empty(); joined && group.known.size() >= 4 * kFewest;) {
            joined = false;
            const Levels levels(group.known);
            const double usual = median(group.log_lengths);
            for (auto it = group.open.begin(); it != group.open.end();) {
                const double factor =
                    it->second.size() >= kFewest ? factorOnto(levels, it->second, usual) : kNone;
                if (std::isnan(factor)) {
                    ++it;
                    continue;
                }
                factors[std::size_t(it->first)] = factor;
                append(group.known, it->second, factor);
                it = group.open.erase(it);
                joined = true;
            }
        }
    }
    return factors;
}

std::vector<double> correctionsByHeights(const std::vector<GraphEdge>& edges, const std::vector<int>& set,
                                         const Eigen::VectorXd& log_lengths)
{
    constexpr std::size_t kFewestEdges = 6;
    std::vector<double> corrections(edges.size(), std::numeric_limits<double>::quiet_NaN());
    std::map<int, std::vector<std::size_t>> members;
    for (std::size_t e = 0; e < edges.size(); ++e)
        if (set[e] > 0) members[set[e]].push_back(e);
    for (const auto& [number, list] : members) {
        if (list.size() < kFewestEdges) continue;
        std::vector<std::vector<Point>> points;
        std::vector<Point> all;
        std::vector<double> lengths;
        for (const std::size_t e : list) {
            points.push_back(pointsOf(edges[e]));
            append(all, points.back(), log_lengths[int(e)]);
            lengths.push_back(log_lengths[int(e)]);
        }
        if (all.size() < 4 * kFewest) continue;
        const Levels levels(all);
        const double middle = median(lengths);
        for (std::size_t k = 0; k < list.size(); ++k) {
            if (points[k].size() < kFewest || all.size() - points[k].size() < 4 * kFewest) continue;
            const double log_length = log_lengths[int(list[k])];
            std::vector<Point> own;
            append(own, points[k], log_length);
            corrections[list[k]] = factorOnto(levels.without(own), points[k], middle) - log_length;
        }
    }
    return corrections;
}

} // namespace nexomap
