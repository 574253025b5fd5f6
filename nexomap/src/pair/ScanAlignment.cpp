// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Relative pose from range maps alone.
#include "nexomap/src/pair/ScanAlignment.h"

#include "nexomap/src/pair/MetricRefinement.h"
#include "nexomap/src/pair/PairSolver.h"
#include "nexomap/src/pair/PairSteps.h"
#include "nexomap/src/pair/RangeAgreement.h"
#include "nexomap/src/pair/Sphere.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>

namespace nexomap {
namespace {

constexpr int kBands = 3; // of heights above the floor
constexpr std::array<double, kBands + 1> kBandFrom_m{0.3, 1.1, 1.8, 2.6};
constexpr int kGrid = 256;
constexpr double kCell_m = 0.12; // the grid spans 31 m
constexpr int kTurns = 360;
constexpr double kClear =
    0.95; // of what neither hides from the other; wrong places reached 0.93 in the sets tried
constexpr double kCompany_m = 1.2;
constexpr double kMostLean = 9.0 * kDegree;
constexpr std::size_t kHeadings = 10, kPeaks = 4, kRefined = 8;

struct Walls
{
    std::array<std::vector<Eigen::Vector3d>, kBands> points;       ///< x, y, weight
    std::vector<double> facing = std::vector<double>(kTurns, 0.0); ///< weight by direction of the normal
};

struct Candidate
{
    RigidPose pose;
    double score = 0.0;
    RangeAgreement ranges;
    Matrix6d information = Matrix6d::Identity();
};

double heightOf(const Panorama& panorama)
{
    return panorama.camera_height_m > 0.0 ? panorama.camera_height_m : 1.5;
}

Walls wallsOf(const Panorama& panorama)
{
    Walls walls;
    const double floor = -heightOf(panorama);
    for (const SurfaceSample& sample : sampleSurfaces(panorama.range, 20000)) {
        if (std::abs(sample.normal.z()) > 0.3) continue;
        const double weight = std::min(25.0, sample.point.squaredNorm()); // about the area it stands for
        const double turn = std::atan2(sample.normal.y(), sample.normal.x()) / (2.0 * kPi) * kTurns;
        walls.facing[std::size_t((int(std::floor(turn)) + 2 * kTurns) % kTurns)] += weight;
        const double height = sample.point.z() - floor;
        for (int band = 0; band < kBands; ++band)
            if (height >= kBandFrom_m[band] && height < kBandFrom_m[band + 1])
                walls.points[band].emplace_back(sample.point.x(), sample.point.y(), weight);
    }
    std::vector<double> smooth(kTurns, 0.0);
    for (int k = 0; k < kTurns; ++k)
        for (int d = -2; d <= 2; ++d)
            smooth[k] += walls.facing[(k + d + kTurns) % kTurns] * (3 - std::abs(d));
    walls.facing = smooth;
    return walls;
}

/// Headings of 1 in 0 at which walls face alike, the best first.
std::vector<double> headings(const Walls& w0, const Walls& w1)
{
    std::vector<double> alike(kTurns, 0.0);
    for (int turn = 0; turn < kTurns; ++turn)
        for (int k = 0; k < kTurns; ++k)
            alike[turn] += std::sqrt(w0.facing[(k + turn) % kTurns] * w1.facing[k]);
    std::vector<int> peaks;
    for (int turn = 0; turn < kTurns; ++turn) {
        bool peak = true;
        for (int d = 1; d <= 3; ++d)
            peak = peak && alike[turn] >= alike[(turn + d) % kTurns] &&
                   alike[turn] > alike[(turn - d + kTurns) % kTurns];
        if (peak) peaks.push_back(turn);
    }
    std::stable_sort(peaks.begin(), peaks.end(), [&](int a, int b) { return alike[a] > alike[b]; });
    if (peaks.size() > kHeadings) peaks.resize(kHeadings);
    std::vector<double> result;
    for (const int turn : peaks) {
        const double before = alike[(turn + kTurns - 1) % kTurns], after = alike[(turn + 1) % kTurns];
        const double bend = before - 2.0 * alike[turn] + after;
        const double offset = bend < 0.0 ? 0.5 * (before - after) / bend : 0.0;
        result.push_back((turn + offset) * 2.0 * kPi / kTurns);
    }
    return result;
}

/// Spectrum of what stands in one band, turned.
cv::Mat spectrum(const std::vector<Eigen::Vector3d>& points, double heading)
{
    cv::Mat1f grid(kGrid, kGrid, 0.f);
    const double cosine = std::cos(heading), sine = std::sin(heading);
    for (const Eigen::Vector3d& p : points) {
        const int x = int(std::floor((cosine * p.x() - sine * p.y()) / kCell_m)) + kGrid / 2;
        const int y = int(std::floor((sine * p.x() + cosine * p.y()) / kCell_m)) + kGrid / 2;
        if (x >= 0 && x < kGrid && y >= 0 && y < kGrid) grid(y, x) = std::min(4.f, grid(y, x) + float(p.z()));
    }
    cv::GaussianBlur(grid, grid, cv::Size(5, 5), 1.0);
    grid -= cv::mean(grid)[0];
    cv::Mat result;
    cv::dft(grid, result, cv::DFT_COMPLEX_OUTPUT);
    return result;
}

/// Shifts of 1 at which most stands where it stands in 0.
std::vector<Eigen::Vector2d> shifts(const std::array<cv::Mat, kBands>& spectra_0, const Walls& w1,
                                    double heading)
{
    cv::Mat sum;
    for (int band = 0; band < kBands; ++band) {
        cv::Mat product;
        cv::mulSpectrums(spectra_0[band], spectrum(w1.points[band], heading), product, 0, true);
        if (sum.empty())
            sum = product;
        else
            sum += product;
    }
    cv::Mat1f correlation;
    cv::dft(sum, correlation, cv::DFT_INVERSE | cv::DFT_REAL_OUTPUT);
    std::vector<Eigen::Vector2d> result;
    for (std::size_t k = 0; k < kPeaks; ++k) {
        cv::Point at;
        cv::minMaxLoc(correlation, nullptr, nullptr, nullptr, &at);
        const auto signedCell = [](int cell) { return cell < kGrid / 2 ? cell : cell - kGrid; };
        result.emplace_back(signedCell(at.x) * kCell_m, signedCell(at.y) * kCell_m);
        for (int dy = -4; dy <= 4; ++dy)
            for (int dx = -4; dx <= 4; ++dx)
                correlation((at.y + dy + kGrid) % kGrid, (at.x + dx + kGrid) % kGrid) = -1e30f;
    }
    return result;
}

void judge(const Panorama& p0, const Panorama& p1, Candidate* candidate)
{
    candidate->ranges = checkRanges(p0.range, p1.range, candidate->pose, kCompany_m);
    candidate->score = candidate->ranges.agree - 2.0 * candidate->ranges.violation;
}

bool bestFirst(const Candidate& a, const Candidate& b)
{
    return a.score > b.score;
}

bool elsewhere(const RigidPose& a, const RigidPose& b)
{
    return (a.t - b.t).norm() > 0.4 || Eigen::AngleAxisd(a.R.transpose() * b.R).angle() > 8.0 * kDegree;
}

std::optional<PairPose> align(const Panorama& p0, const Panorama& p1)
{
    if (!p0.metric() || !p1.metric()) return std::nullopt;
    const Walls w0 = wallsOf(p0), w1 = wallsOf(p1);
    std::array<cv::Mat, kBands> spectra_0;
    for (int band = 0; band < kBands; ++band)
        spectra_0[band] = spectrum(w0.points[band], 0.0);
    std::vector<Candidate> candidates;
    for (const double heading : headings(w0, w1))
        for (const Eigen::Vector2d& shift : shifts(spectra_0, w1, heading)) {
            Candidate candidate;
            candidate.pose = {headingRotation(heading), {shift.x(), shift.y(), heightOf(p1) - heightOf(p0)}};
            judge(p0, p1, &candidate);
            candidates.push_back(candidate);
        }
    std::stable_sort(candidates.begin(), candidates.end(), bestFirst);
    if (candidates.size() > kRefined) candidates.resize(kRefined);
    const auto surfaces_0 = sampleSurfaces(p0.range, 3000), surfaces_1 = sampleSurfaces(p1.range, 3000);
    for (Candidate& candidate : candidates) {
        for (int round = 0; round < 2; ++round) {
            const RefinedPose refined =
                refineMetricPose({}, {}, candidate.pose, &p0.range, &p1.range, &surfaces_0, &surfaces_1);
            if (refined.surface_pairs == 0) break;
            candidate.pose = refined.pose;
            candidate.information = refined.information;
        }
        judge(p0, p1, &candidate);
    }
    std::stable_sort(candidates.begin(), candidates.end(), bestFirst);
    if (candidates.empty()) return std::nullopt;
    const Candidate& best = candidates.front();
    double second = 0.0;
    for (const Candidate& candidate : candidates)
        if (elsewhere(candidate.pose, best.pose)) second = std::max(second, candidate.score);
    const double clear = best.ranges.agree / std::max(1e-9, best.ranges.agree + best.ranges.violation);
    if (best.ranges.samples < 1000 || best.ranges.agree < 0.25 || clear < kClear ||
        best.score < 1.6 * second || leanOf(best.pose.R) > kMostLean)
        return std::nullopt;
    PairPose pose;
    pose.R_0_from_1 = best.pose.R;
    pose.t_0_from_1 = best.pose.t;
    pose.metric = true;
    pose.information = best.information * kInformationShare;
    // Confirmed by shape alone: never as certain as what pictures confirm too.
    const double z = 8.0 * (best.ranges.agree - 0.3) + 20.0 * (clear - kClear) + 1.0;
    pose.reliability = 0.9 / (1.0 + std::exp(-z));
    return pose;
}

} // namespace

std::optional<PairPose> alignScans(const Panorama& panorama_0, const Panorama& panorama_1)
{
    try {
        // One order for both ways round, so that they agree to the last bit.
        if (!(panorama_1.id < panorama_0.id)) return align(panorama_0, panorama_1);
        const auto pose = align(panorama_1, panorama_0);
        return pose ? std::optional<PairPose>(inverted(*pose)) : std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt; // out of memory, or a range map of a wrong size
    }
}

} // namespace nexomap
