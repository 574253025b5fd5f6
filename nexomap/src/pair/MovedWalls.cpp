// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Verification of a pose by walls that would have to have moved.
#include "nexomap/src/pair/MovedWalls.h"

#include "nexomap/src/pair/Sphere.h"
#include "nexomap/src/pair/SurfaceSamples.h"

#include <Eigen/Eigenvalues>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <vector>

namespace nexomap {
namespace {

constexpr int kStep = 8; // cells between samples: 1.4 degrees
constexpr double kUpright = 0.3;
constexpr std::size_t kFewest = 6; // samples of a piece
constexpr double kSmallest_m2 = 0.1;
constexpr double kShared_m2 = 0.3; // of a wall around the place where something stood before it
constexpr int kAround = 10;        // samples: 14 degrees
/// Whoever carries the scanner stands nearer, and shows it less than this in one flat piece.
constexpr double kCompany_m = 1.2, kCompany_m2 = 0.5;

enum class Verdict
{
    Unknown,
    Agrees,
    SeenThrough
};

struct Sample
{
    Eigen::Vector3d point, normal; ///< normal: toward the camera
    double area_m2 = 0.0;          ///< 0: nothing is known here
    Verdict verdict = Verdict::Unknown;
    std::size_t behind = 0; ///< where it is seen through: the other map's sample there
};

/// Disjoint sets of samples.
class Pieces
{
public:
    explicit Pieces(std::size_t count)
        : m_parent(count)
    {
        std::iota(m_parent.begin(), m_parent.end(), std::size_t(0));
    }
    std::size_t root(std::size_t i)
    {
        while (m_parent[i] != i)
            i = m_parent[i] = m_parent[m_parent[i]];
        return i;
    }
    void join(std::size_t a, std::size_t b) { m_parent[root(a)] = root(b); }

private:
    std::vector<std::size_t> m_parent;
};

/// Surfaces of one range map on a grid, row by row.
struct View
{
    int rows, columns;
    std::vector<Sample> samples;

    explicit View(const RangeMap& map)
        : rows(map.range_m.rows / kStep)
        , columns(map.range_m.cols / kStep)
        , samples(std::size_t(rows) * std::size_t(columns))
    {
        const double cell = kPi / map.range_m.rows * kStep;
        for (int r = rows / 8; r < rows - rows / 8; ++r)
            for (int c = 0; c < columns; ++c) {
                const int row = r * kStep + kStep / 2;
                const auto surface = surfaceAt(map, c * kStep + kStep / 2, row);
                if (!surface) continue;
                Sample& sample = samples[at(r, c)];
                sample.point = surface->point;
                sample.normal = surface->normal;
                const double range = surface->point.norm();
                const double cosine = std::max(0.1, -surface->normal.dot(surface->point) / range);
                sample.area_m2 =
                    std::pow(range * cell, 2) * std::sin(kPi * (row + 0.5) / map.range_m.rows) / cosine;
            }
    }
    std::size_t at(int row, int column) const
    {
        return std::size_t(row) * std::size_t(columns) + std::size_t(column % columns);
    }
    /// Joins neighbours that lie on one surface and may belong together.
    template <class Together>
    Pieces pieces(const Together& together) const
    {
        Pieces result(samples.size());
        const auto connect = [&](std::size_t a, std::size_t b) {
            if (onSurface(samples[a], samples[b]) && together(samples[a], samples[b])) result.join(a, b);
        };
        for (int r = 0; r < rows; ++r)
            for (int c = 0; c < columns; ++c) {
                connect(at(r, c), at(r, c + 1));
                if (r + 1 < rows) connect(at(r, c), at(r + 1, c));
            }
        return result;
    }

private:
    static bool onSurface(const Sample& a, const Sample& b)
    {
        if (!(a.area_m2 > 0.0) || !(b.area_m2 > 0.0) || a.normal.dot(b.normal) < 0.9) return false;
        const Eigen::Vector3d step = b.point - a.point;
        const double slack = 0.03 + 0.01 * a.point.norm();
        return std::abs(a.normal.dot(step)) < slack && std::abs(b.normal.dot(step)) < slack;
    }
};

void judge(View& view, const RangeMap& map, const View& other, const RigidPose& map_from_view)
{
    const EquirectGrid grid{map.range_m.cols, map.range_m.rows};
    for (Sample& sample : view.samples) {
        const Eigen::Vector3d point = map_from_view * sample.point;
        const double expected = point.norm();
        if (!(sample.area_m2 > 0.0) || expected < 0.3) continue;
        const Eigen::Vector2d pixel = grid.pixel(point);
        const int x = std::min(grid.width - 1, int(pixel.x())), y = std::min(grid.height - 1, int(pixel.y()));
        const double measured = map.range_m(y, x);
        if (!(measured > 0.0) || map.edge(y, x)) continue;
        // Seen edge on, a wall's range says little about where it stands.
        const double cosine =
            std::max(0.1, std::abs((map_from_view.R * sample.normal).dot(point)) / expected);
        if (std::abs(measured - expected) * cosine < 0.05 + 0.015 * expected)
            sample.verdict = Verdict::Agrees;
        else if (expected < measured)
            sample.verdict = Verdict::SeenThrough;
        sample.behind = other.at(std::min(other.rows - 1, y / kStep), x / kStep);
    }
}

/// Whether around one sample, on the same plane, the view sees what the other sees, too.
bool isShared(const View& view, std::size_t index)
{
    const Sample& middle = view.samples[index];
    if (!(middle.area_m2 > 0.0)) return false;
    const int row = int(index) / view.columns, column = int(index) % view.columns;
    double agree_m2 = 0.0;
    for (int r = std::max(0, row - kAround); r <= std::min(view.rows - 1, row + kAround); ++r)
        for (int c = column - kAround; c <= column + kAround; ++c) {
            const Sample& sample = view.samples[view.at(r, c + view.columns)];
            if (sample.verdict != Verdict::Agrees || sample.normal.dot(middle.normal) < 0.95) continue;
            const Eigen::Vector3d step = sample.point - middle.point;
            const double slack = 0.05 + 0.05 * step.norm();
            if (std::abs(middle.normal.dot(step)) < slack && std::abs(sample.normal.dot(step)) < slack)
                agree_m2 += sample.area_m2;
        }
    return agree_m2 > kShared_m2;
}

struct Piece
{
    double area_m2 = 0.0, range_m = 0.0;
    bool flat = false;
};

Piece measure(const std::vector<Sample>& samples, const std::vector<std::size_t>& members)
{
    Piece piece;
    Eigen::Vector3d mean = Eigen::Vector3d::Zero();
    for (const std::size_t k : members) {
        piece.area_m2 += samples[k].area_m2;
        mean += samples[k].point / double(members.size());
    }
    Eigen::Matrix3d scatter = Eigen::Matrix3d::Zero();
    for (const std::size_t k : members)
        scatter += (samples[k].point - mean) * (samples[k].point - mean).transpose() / double(members.size());
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> solver(scatter, Eigen::EigenvaluesOnly);
    piece.range_m = mean.norm();
    piece.flat = std::sqrt(std::max(0.0, solver.eigenvalues()[0])) < 0.015 + 0.005 * piece.range_m;
    return piece;
}

/// Where a wall that both know shows behind it, something was moved: no fault of the pose.
void excuse(View& view, const View& other)
{
    for (Sample& sample : view.samples)
        if (sample.verdict == Verdict::SeenThrough && isShared(other, sample.behind))
            sample.verdict = Verdict::Unknown;
}

void addPieces(View& view, MovedWalls* result)
{
    for (Sample& sample : view.samples) {
        if (sample.area_m2 > 0.0 && std::abs(sample.normal.z()) > kUpright) sample.verdict = Verdict::Unknown;
    }
    Pieces pieces = view.pieces([](const Sample& a, const Sample& b) { return a.verdict == b.verdict; });
    std::map<std::size_t, std::vector<std::size_t>> members;
    for (std::size_t k = 0; k < view.samples.size(); ++k)
        if (view.samples[k].verdict != Verdict::Unknown) members[pieces.root(k)].push_back(k);
    for (const auto& [root, list] : members) {
        if (list.size() < kFewest) continue;
        const Piece piece = measure(view.samples, list);
        if (!piece.flat || piece.area_m2 < kSmallest_m2) continue;
        if (view.samples[root].verdict == Verdict::Agrees)
            result->agree_m2 += piece.area_m2;
        else if (piece.area_m2 > kCompany_m2 || piece.range_m > kCompany_m)
            result->moved_m2 += piece.area_m2;
    }
}

} // namespace

MovedWalls movedWalls(const RangeMap& map_0, const RangeMap& map_1, const RigidPose& pose)
{
    MovedWalls result;
    if (map_0.range_m.empty() || map_1.range_m.empty()) return result;
    View view_0(map_0), view_1(map_1);
    judge(view_0, map_1, view_1, pose.inverse());
    judge(view_1, map_0, view_0, pose);
    excuse(view_0, view_1); // takes no agreement away, so that the order does not matter
    excuse(view_1, view_0);
    addPieces(view_0, &result);
    addPieces(view_1, &result);
    return result;
}

} // namespace nexomap
