// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What is said of a linking library: recall, accuracy, wrong links, calibration.
#include "benchmarks/linking/LinkFigures.h"

#include "benchmarks/linking/MissedSights.h"
#include "nexomap/src/graph/GraphEdge.h"

#include <Eigen/SVD>

#include <algorithm>
#include <cstdio>

using namespace nexomap;

namespace {

constexpr double kTrusted = 0.9;
constexpr double kNear_m = 6.0;

double median(std::vector<double> values)
{
    if (values.empty()) return 0.0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Area under the recall curve up to a bound, as a share (as pose benchmarks define it).
double areaUnderCurve(std::vector<double> errors, double bound)
{
    std::sort(errors.begin(), errors.end());
    double area = 0.0;
    for (const double error : errors)
        area += std::max(0.0, bound - error);
    return errors.empty() ? 0.0 : area / (bound * double(errors.size()));
}

std::vector<int> largestGroup(const LinkedSet& set)
{
    std::map<int, std::vector<int>> members;
    for (std::size_t n = 0; n < set.group.size(); ++n)
        members[set.group[n]].push_back(int(n));
    std::vector<int> largest;
    for (const auto& [group, nodes] : members)
        if (nodes.size() > largest.size()) largest = nodes;
    return largest;
}

/// Station errors after the best rigid motion, or similarity without ranges.
void addTrajectory(const LinkedSet& set, LinkFigures* figures)
{
    const std::vector<int> nodes = largestGroup(set);
    figures->placed += int(nodes.size());
    if (nodes.size() < 3) return;
    Eigen::Matrix3d sum = Eigen::Matrix3d::Zero();
    Eigen::Vector3d mean_found = Eigen::Vector3d::Zero(), mean_truth = Eigen::Vector3d::Zero();
    for (const int n : nodes) {
        sum += set.truth[n].R * set.found[n].R.transpose();
        mean_found += set.found[n].t / double(nodes.size());
        mean_truth += set.truth[n].t / double(nodes.size());
    }
    const Eigen::JacobiSVD<Eigen::Matrix3d> svd(sum, Eigen::ComputeFullU | Eigen::ComputeFullV);
    const double sign = svd.matrixU().determinant() * svd.matrixV().determinant() < 0.0 ? -1.0 : 1.0;
    const Eigen::Matrix3d turn =
        svd.matrixU() * Eigen::Vector3d(1.0, 1.0, sign).asDiagonal() * svd.matrixV().transpose();
    double scale = 1.0;
    if (!set.ranged) {
        double cross = 0.0, square = 1e-12;
        for (const int n : nodes) {
            cross += (set.truth[n].t - mean_truth).dot(turn * (set.found[n].t - mean_found));
            square += (set.found[n].t - mean_found).squaredNorm();
        }
        scale = cross / square;
    }
    for (const int n : nodes) {
        const double error =
            (set.truth[n].t - mean_truth - scale * (turn * (set.found[n].t - mean_found))).norm();
        figures->squares_m2 += error * error;
        figures->worst_m = std::max(figures->worst_m, error);
        const Eigen::Matrix3d rotation = set.truth[n].R.transpose() * turn * set.found[n].R;
        figures->headings_deg.push_back(std::abs(std::atan2(rotation(1, 0), rotation(0, 0))) / kDegree);
    }
}

Vector6d stateError(const PairPose& pose, const RigidPose& truth)
{
    const GraphEdge edge{0, 1, &pose, false};
    return edgeError(edge, {}, {truth.R, truth.t});
}

double chi2Of(const PairPose& pose, const RigidPose& truth)
{
    const Vector6d error = stateError(pose, truth);
    return error.dot(graphInformation(pose) * error);
}

} // namespace

PairError errorOf(const RigidPose& found, const RigidPose& truth)
{
    PairError error;
    error.rotation_deg = Eigen::AngleAxisd(found.R.transpose() * truth.R).angle() / kDegree;
    error.shift_m = (found.t - truth.t).norm();
    error.direction_deg = 0.0;
    if (truth.t.norm() > 0.2)
        error.direction_deg = std::atan2(found.t.cross(truth.t).norm(), found.t.dot(truth.t)) / kDegree;
    return error;
}

bool isRight(const PairError& error, bool ranged)
{
    return error.rotation_deg < 1.0 && (ranged ? error.shift_m < 0.1 : error.direction_deg < 5.0);
}

bool isGross(const PairError& error)
{
    return error.rotation_deg > 10.0 || error.direction_deg > 30.0;
}

LinkFigures figuresOf(const LinkedSet& set)
{
    LinkFigures f;
    f.sets = 1;
    f.panoramas = int(set.truth.size());
    f.seconds = set.add_seconds + set.finish_seconds;
    std::vector<int> groups = set.group;
    std::sort(groups.begin(), groups.end());
    f.groups = int(std::unique(groups.begin(), groups.end()) - groups.begin());
    const std::set<Pair> by_rule = sightsByRule(set);
    f.ruled_sights = int(by_rule.size());
    for (const auto& [pair, sight] : set.sights) {
        const RigidPose truth = LinkedSet::relative(set.truth, pair);
        const bool together = set.group[pair.first] == set.group[pair.second];
        const PairError in_tour =
            together ? errorOf(LinkedSet::relative(set.found, pair), truth) : PairError{};
        const auto measured = set.measured.find(pair);
        bool measured_right = false;
        if (measured != set.measured.end()) {
            const PairPose& pose = measured->second;
            const PairError error = errorOf({pose.R_0_from_1, pose.t_0_from_1}, truth);
            const bool same_place = pose.rotation_only && error.rotation_deg < 1.0 && sight.distance_m < 0.2;
            measured_right = same_place || (!pose.rotation_only && isRight(error, pose.metric));
            ++f.measured;
            f.measured_wrong += !measured_right;
            f.measured_gross += !measured_right && (isGross(error) || (pose.rotation_only && !same_place));
            f.measured_trusted_wrong += !measured_right && pose.reliability >= kTrusted;
            f.reliabilities.emplace_back(pose.reliability, measured_right);
            if (measured_right && pose.metric) f.chi2.push_back(chi2Of(pose, truth));
        }
        for (int b = 0; b < 4; ++b) {
            if (sight.covisible < LinkFigures::kBandFrom[b]) continue;
            ++f.bands[b].pairs;
            f.bands[b].measured += measured_right;
            f.bands[b].final_right += together && isRight(in_tour, set.ranged);
            if (b == 0) f.pose_errors_deg.push_back(std::max(in_tour.rotation_deg, in_tour.direction_deg));
            break;
        }
        const auto link = set.links.find(pair);
        const bool linked = link != set.links.end();
        f.sights += sight.sees;
        f.sights_linked += sight.sees && linked;
        f.near_sights += sight.sees && sight.distance_m < kNear_m;
        f.near_sights_linked += sight.sees && linked && sight.distance_m < kNear_m;
        f.ruled_sights_linked += linked && by_rule.count(pair);
        if (!linked) continue;
        ++f.links;
        f.links_with_sight += sight.sees;
        const bool wrong = !isRight(in_tour, set.ranged), trusted = link->second.reliability >= kTrusted;
        f.wrong += wrong;
        f.gross += isGross(in_tour);
        f.trusted += trusted;
        f.trusted_wrong += trusted && wrong;
    }
    addTrajectory(set, &f);
    return f;
}

void LinkFigures::add(const LinkFigures& o)
{
    for (int b = 0; b < 4; ++b) {
        bands[b].pairs += o.bands[b].pairs;
        bands[b].measured += o.bands[b].measured;
        bands[b].final_right += o.bands[b].final_right;
    }
    pose_errors_deg.insert(pose_errors_deg.end(), o.pose_errors_deg.begin(), o.pose_errors_deg.end());
    reliabilities.insert(reliabilities.end(), o.reliabilities.begin(), o.reliabilities.end());
    chi2.insert(chi2.end(), o.chi2.begin(), o.chi2.end());
    headings_deg.insert(headings_deg.end(), o.headings_deg.begin(), o.headings_deg.end());
    const auto counts = [](LinkFigures& f) {
        return std::vector<int*>{&f.panoramas,
                                 &f.placed,
                                 &f.groups,
                                 &f.sets,
                                 &f.links,
                                 &f.wrong,
                                 &f.gross,
                                 &f.trusted,
                                 &f.trusted_wrong,
                                 &f.sights,
                                 &f.links_with_sight,
                                 &f.sights_linked,
                                 &f.near_sights,
                                 &f.measured,
                                 &f.near_sights_linked,
                                 &f.ruled_sights,
                                 &f.ruled_sights_linked,
                                 &f.measured_wrong,
                                 &f.measured_gross,
                                 &f.measured_trusted_wrong};
    };
    LinkFigures copy = o;
    const auto mine = counts(*this), theirs = counts(copy);
    for (std::size_t k = 0; k < mine.size(); ++k)
        *mine[k] += *theirs[k];
    squares_m2 += o.squares_m2;
    worst_m = std::max(worst_m, o.worst_m);
    seconds += o.seconds;
}

void printFigures(const std::string& name, const LinkFigures& f)
{
    const auto share = [](int part, int whole) { return whole ? double(part) / whole : 1.0; };
    std::printf("%s: %d of %d panoramas in the largest group, %d groups; %.2f s a panorama\n", name.c_str(),
                f.placed, f.panoramas, f.groups, f.seconds / std::max(1, f.panoramas));
    std::printf("  right pairs (measured, in the tour) by co-visibility:");
    const char* const names[] = {"0.3+", "0.15-0.3", "0.05-0.15", "0.01-0.05"};
    for (int b = 0; b < 4; ++b)
        std::printf("  %s %d, %d of %d", names[b], f.bands[b].measured, f.bands[b].final_right,
                    f.bands[b].pairs);
    std::printf("\n  AUC at 0.5/1/5/10 deg: %.3f %.3f %.3f %.3f; ATE rms %.1f mm, worst %.1f mm; heading "
                "median %.3f deg\n",
                areaUnderCurve(f.pose_errors_deg, 0.5), areaUnderCurve(f.pose_errors_deg, 1.0),
                areaUnderCurve(f.pose_errors_deg, 5.0), areaUnderCurve(f.pose_errors_deg, 10.0),
                1000.0 * std::sqrt(f.squares_m2 / std::max<double>(1.0, double(f.headings_deg.size()))),
                1000.0 * f.worst_m, median(f.headings_deg));
    std::printf("  links %d: wrong %d, grossly %d; at reliability 0.9+ %d, wrong %d; precision %.3f; recall "
                "%.3f, within %g m "
                "%.3f, of those that the rule leaves %.3f (%d of %d)\n",
                f.links, f.wrong, f.gross, f.trusted, f.trusted_wrong, share(f.links_with_sight, f.links),
                share(f.sights_linked, f.sights), kNear_m, share(f.near_sights_linked, f.near_sights),
                share(f.ruled_sights_linked, f.ruled_sights), f.ruled_sights_linked, f.ruled_sights);
    if (!f.chi2.empty()) {
        std::vector<double> sorted = f.chi2;
        std::sort(sorted.begin(), sorted.end());
        std::printf(
            "  squared errors of right metric pairs over the graph's covariance: median %.1f (5.3 if exact), "
            "nine tenths below %.1f (10.6)\n",
            sorted[sorted.size() / 2], sorted[sorted.size() * 9 / 10]);
    }
    std::printf("  measured pairs %d: wrong %d, grossly %d, at reliability 0.9+ %d\n", f.measured,
                f.measured_wrong, f.measured_gross, f.measured_trusted_wrong);
}

void printCalibration(const LinkFigures& f)
{
    constexpr int kBins = 10;
    double stated[kBins] = {}, expected = 0.0;
    int count[kBins] = {}, right[kBins] = {};
    for (const auto& [reliability, is_right] : f.reliabilities) {
        const int bin = std::clamp(int(reliability * kBins), 0, kBins - 1);
        ++count[bin];
        right[bin] += is_right;
        stated[bin] += reliability;
    }
    std::printf("reliability of measured pairs, stated and true:");
    for (int bin = 0; bin < kBins; ++bin) {
        if (!count[bin]) continue;
        std::printf("  %.3f %.3f (%d)", stated[bin] / count[bin], double(right[bin]) / count[bin],
                    count[bin]);
        expected += std::abs(stated[bin] - right[bin]);
    }
    std::printf("\nexpected calibration error %.3f\n",
                f.reliabilities.empty() ? 0.0 : expected / double(f.reliabilities.size()));
}

namespace {

/// Without ranges a tour has a size of its own: a length is wrong when it is off from what the other links
/// say that size is.
void printWrongLengths(const LinkedSet& set)
{
    std::map<int, std::vector<double>> sizes; // by group
    const auto size = [&](const Pair& pair) {
        return LinkedSet::relative(set.found, pair).t.norm() / set.sights.at(pair).distance_m;
    };
    for (const auto& [pair, link] : set.links)
        sizes[set.group[std::size_t(pair.first)]].push_back(size(pair));
    for (const auto& [pair, link] : set.links) {
        std::vector<double>& others = sizes[set.group[std::size_t(pair.first)]];
        std::nth_element(others.begin(), others.begin() + long(others.size() / 2), others.end());
        const double ratio = size(pair) / others[others.size() / 2];
        if (std::abs(std::log(ratio)) > 0.2)
            std::printf("  wrong length %d-%d: %.2f m apart, %.2f times as long as the group's links are; "
                        "reliability %.3f\n",
                        pair.first, pair.second, set.sights.at(pair).distance_m, ratio, link.reliability);
    }
}

} // namespace

void printPairs(const LinkedSet& set)
{
    for (const auto& [pair, pose] : set.measured) {
        const RigidPose truth = LinkedSet::relative(set.truth, pair);
        if (!pose.metric || !isRight(errorOf({pose.R_0_from_1, pose.t_0_from_1}, truth), true)) continue;
        const Vector6d error = stateError(pose, truth);
        const Matrix6d covariance = graphInformation(pose).inverse();
        std::printf("  pair %d-%d: co-visible %.3f, %zu inliers, %.2f m; reliability %.3f, chi2 %.1f; turn",
                    pair.first, pair.second, set.sights.at(pair).covisible, pose.inliers.size(),
                    truth.t.norm(), pose.reliability, chi2Of(pose, truth));
        for (int k = 0; k < 6; ++k)
            std::printf("%s %.2f (%.2f)", k == 3 ? " mrad; move" : "", 1e3 * error[k],
                        1e3 * std::sqrt(covariance(k, k)));
        std::printf(" mm\n");
    }
}

void printWrong(const LinkedSet& set)
{
    printWrongLengths(set);
    printMissedSights(set);
    for (const auto& [pair, sight] : set.sights) {
        const RigidPose truth = LinkedSet::relative(set.truth, pair);
        const auto link = set.links.find(pair);
        const auto measured = set.measured.find(pair);
        const auto line = [&, &pair = pair, &sight = sight](const char* what, const PairError& e,
                                                            double reliability) {
            std::printf(
                "  %s %d-%d: co-visible %.3f, %.2f m apart, off by %.2f deg, direction %.1f deg, %.3f m; "
                "reliability %.3f\n",
                what, pair.first, pair.second, sight.covisible, sight.distance_m, e.rotation_deg,
                e.direction_deg, e.shift_m, reliability);
        };
        if (link != set.links.end()) {
            const PairError error = errorOf(LinkedSet::relative(set.found, pair), truth);
            if (!isRight(error, set.ranged)) line("wrong link", error, link->second.reliability);
        }
        if (measured != set.measured.end()) {
            const PairPose& pose = measured->second;
            PairError error = errorOf({pose.R_0_from_1, pose.t_0_from_1}, truth);
            if (pose.rotation_only) error.direction_deg = sight.distance_m < 0.2 ? 0.0 : 180.0;
            if (!isRight(error, pose.metric)) line("wrong measurement", error, pose.reliability);
        }
    }
}
