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
    double area_m2 = 0.0;
    Verdict verdict = Verdict::Unknown;
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

Verdict verdictOn(const SurfaceSample& sample, const RangeMap& map, const RigidPose& map_from_sample)
{
    const Eigen::Vector3d point = map_from_sample * sample.point;
    const double expected = point.norm();
    if (expected < 0.3) return Verdict::Unknown;
    const EquirectGrid grid{map.range_m.cols, map.range_m.rows};
    const Eigen::Vector2d pixel = grid.pixel(point);
    const int x = std::min(grid.width - 1, int(pixel.x())), y = std::min(grid.height - 1, int(pixel.y()));
    const double measured = map.range_m(y, x);
    if (!(measured > 0.0) || map.edge(y, x)) return Verdict::Unknown;
    // Seen edge on, a wall's range says little about where it stands.
    const double cosine = std::max(0.1, std::abs((map_from_sample.R * sample.normal).dot(point)) / expected);
    if (std::abs(measured - expected) * cosine < 0.05 + 0.015 * expected) return Verdict::Agrees;
    return expected < measured ? Verdict::SeenThrough : Verdict::Unknown;
}

bool onePiece(const Sample& a, const Sample& b)
{
    if (a.verdict != b.verdict || a.verdict == Verdict::Unknown || a.normal.dot(b.normal) < 0.9) return false;
    const Eigen::Vector3d step = b.point - a.point;
    const double slack = 0.03 + 0.01 * a.point.norm();
    return std::abs(a.normal.dot(step)) < slack && std::abs(b.normal.dot(step)) < slack;
}

/// Samples of the upright surfaces on a grid, row by row.
std::vector<Sample> uprightSamples(const RangeMap& map, const RangeMap& other,
                                   const RigidPose& other_from_map, int rows, int columns)
{
    std::vector<Sample> samples(std::size_t(rows) * std::size_t(columns));
    const double cell = kPi / map.range_m.rows * kStep;
    for (int r = rows / 8; r < rows - rows / 8; ++r)
        for (int c = 0; c < columns; ++c) {
            const int row = r * kStep + kStep / 2;
            const auto surface = surfaceAt(map, c * kStep + kStep / 2, row);
            if (!surface || std::abs(surface->normal.z()) > kUpright) continue;
            Sample& sample = samples[std::size_t(r) * std::size_t(columns) + std::size_t(c)];
            sample.point = surface->point;
            sample.normal = surface->normal;
            const double range = surface->point.norm();
            const double cosine = std::max(0.1, -surface->normal.dot(surface->point) / range);
            sample.area_m2 =
                std::pow(range * cell, 2) * std::sin(kPi * (row + 0.5) / map.range_m.rows) / cosine;
            sample.verdict = verdictOn(*surface, other, other_from_map);
        }
    return samples;
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

void addDirection(const RangeMap& map, const RangeMap& other, const RigidPose& other_from_map,
                  MovedWalls* result)
{
    const int rows = map.range_m.rows / kStep, columns = map.range_m.cols / kStep;
    const std::vector<Sample> samples = uprightSamples(map, other, other_from_map, rows, columns);
    Pieces pieces(samples.size());
    const auto at = [columns](int r, int c) {
        return std::size_t(r) * std::size_t(columns) + std::size_t(c % columns);
    };
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c) {
            const std::size_t here = at(r, c), right = at(r, c + 1);
            if (onePiece(samples[here], samples[right])) pieces.join(here, right);
            if (r + 1 < rows && onePiece(samples[here], samples[at(r + 1, c)]))
                pieces.join(here, at(r + 1, c));
        }
    std::map<std::size_t, std::vector<std::size_t>> members;
    for (std::size_t k = 0; k < samples.size(); ++k)
        if (samples[k].verdict != Verdict::Unknown) members[pieces.root(k)].push_back(k);
    for (const auto& [root, list] : members) {
        if (list.size() < kFewest) continue;
        const Piece piece = measure(samples, list);
        if (!piece.flat || piece.area_m2 < kSmallest_m2) continue;
        if (samples[root].verdict == Verdict::Agrees)
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
    addDirection(map_1, map_0, pose, &result);
    addDirection(map_0, map_1, pose.inverse(), &result);
    return result;
}

} // namespace nexomap
