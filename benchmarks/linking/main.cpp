// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// How well pairs of panoramas with known poses are linked, by what they see in common.
#include "benchmarks/linking/KernelRace.h"
#include "benchmarks/linking/TruthSet.h"
#include "nexomap/src/pair/PairSolver.h"
#include "nexomap/src/pair/Sphere.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>

using namespace nexomap;

namespace {

struct Band
{
    double low, high;
    const char* name;
};
constexpr Band kBands[] = {{0.5, 2.0, ">=0.5"},       {0.3, 0.5, "0.3-0.5"},     {0.15, 0.3, "0.15-0.3"},
                           {0.05, 0.15, "0.05-0.15"}, {0.01, 0.05, "0.01-0.05"}, {-1.0, 0.01, "<0.01"}};

struct Outcome
{
    TruthSet::Pair pair;
    bool solved = false, accepted = false, right = false, metric = false, rotation_only = false;
    double rotation_deg = 180.0, translation = 0.0; ///< metres, or degrees of direction without scale
    double reliability = 0.0;
    Evidence evidence;
};

Outcome judge(const TruthSet& set, const TruthSet::Pair& pair)
{
    const Panorama& p0 = *set.panoramas[std::size_t(pair.index_0)];
    const Panorama& p1 = *set.panoramas[std::size_t(pair.index_1)];
    Outcome outcome;
    outcome.pair = pair;
    const auto pose = solvePair(p0, p1, matchFeatures(p0, p1), &outcome.evidence);
    if (!pose) return outcome;
    const RigidPose truth = set.relative(pair);
    outcome.solved = true;
    outcome.metric = pose->metric;
    outcome.rotation_only = pose->rotation_only;
    outcome.reliability = pose->reliability;
    outcome.accepted = pose->reliability >= kMinReliability;
    outcome.rotation_deg = Eigen::AngleAxisd(pose->R_0_from_1.transpose() * truth.R).angle() / kDegree;
    if (pose->metric)
        outcome.translation = (pose->t_0_from_1 - truth.t).norm();
    else if (!pose->rotation_only)
        outcome.translation =
            std::acos(std::clamp(pose->t_0_from_1.dot(truth.t.normalized()), -1.0, 1.0)) / kDegree;
    outcome.right = outcome.rotation_deg < 1.0 && outcome.translation < (pose->metric ? 0.1 : 5.0);
    return outcome;
}

double quantile(std::vector<double> values, double share)
{
    if (values.empty()) return 0.0;
    const auto nth = values.begin() + std::ptrdiff_t(share * double(values.size() - 1) + 0.5);
    std::nth_element(values.begin(), nth, values.end());
    return *nth;
}

void printTable(const std::vector<Outcome>& outcomes)
{
    std::printf(
        "%-10s %6s %6s %9s %6s %6s  %s\n", "covisible", "pairs", "right", "accepted", "wrong", "lost",
        "of the accepted: rotation deg median, p95; translation (m, or deg of direction) median, p95");
    for (const Band& band : kBands) {
        int pairs = 0, right = 0, accepted = 0, wrong = 0, lost = 0;
        std::vector<double> rotations, translations;
        for (const Outcome& o : outcomes) {
            if (o.pair.covisible < band.low || o.pair.covisible >= band.high) continue;
            ++pairs;
            right += o.right;
            accepted += o.accepted;
            wrong += o.accepted && !o.right;
            lost += o.right && !o.accepted;
            if (!o.accepted) continue;
            rotations.push_back(o.rotation_deg);
            translations.push_back(o.translation);
        }
        std::printf("%-10s %6d %6d %9d %6d %6d  %.3f, %.3f; %.4f, %.4f\n", band.name, pairs, right, accepted,
                    wrong, lost, quantile(rotations, 0.5), quantile(rotations, 0.95),
                    quantile(translations, 0.5), quantile(translations, 0.95));
    }
}

void printPair(const Outcome& o)
{
    const Evidence& e = o.evidence;
    std::printf("%2d-%2d covis %.3f %s %s%s rot %.3f t %.4f rel %.3f | inliers %d cells %d share %.2f second "
                "%.2f guided "
                "%d chance %.1f lean %.2f rms %.2f el %.1f sig %.2f agree %.2f viol %.2f\n",
                o.pair.index_0, o.pair.index_1, o.pair.covisible, o.pair.sees ? "sees" : "-   ",
                !o.solved ? "none "
                : o.right ? "right"
                          : "wrong",
                o.accepted ? " ACCEPTED" : "", o.rotation_deg, o.translation, o.reliability, e.inliers,
                e.cells, e.inlier_share, e.second_share, e.guided, e.chance, e.lean / kDegree, e.rms,
                e.elevation / kDegree, e.direction_sigma / kDegree, e.ranges.agree, e.ranges.violation);
}

} // namespace

int main(int argc, char** argv)
{
    bool each = false;
    std::vector<std::string> folders;
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--pairs") == 0)
            each = true;
        else
            folders.push_back(argv[i]);
    if (folders.empty() || folders.front() == "--help") {
        std::printf("bench_linking [--pairs] FOLDER...\n"
                    "Links every pair of the panoramas in the folders (panorama files and a truth.json, as "
                    "samplescene\n"
                    "writes them) and prints how many poses are right (1 degree, 10 cm; without lidar 1 "
                    "degree, 5 degrees\n"
                    "of direction), accepted, accepted though wrong, and right but not accepted. --pairs "
                    "lists each one.\n");
        return folders.empty() ? 2 : 0;
    }
    std::vector<Outcome> outcomes;
    bool kernels_agree = true;
    for (const std::string& folder : folders) {
        const auto set = readTruthSet(folder);
        if (!set) return 1;
        const auto start = std::chrono::steady_clock::now();
        for (const TruthSet::Pair& pair : set->pairs) {
            outcomes.push_back(judge(*set, pair));
            if (each) printPair(outcomes.back());
        }
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        std::printf("%s: %zu panoramas, %.2f s each to load; %zu pairs, %.1f ms each\n", folder.c_str(),
                    set->panoramas.size(), set->load_seconds / double(set->panoramas.size()),
                    set->pairs.size(),
                    1000.0 * seconds / double(std::max<std::size_t>(1, set->pairs.size())));
        if (set->panoramas.size() >= 2 && folder == folders.front())
            kernels_agree = raceKernels(set->panoramas[0]->features, set->panoramas[1]->features);
    }
    printTable(outcomes);
    return kernels_agree ? 0 : 1;
}
