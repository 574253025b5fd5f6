// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Descriptor matching against OpenCV's brute force.
#include "benchmarks/linking/KernelRace.h"

#include "nexomap/src/pair/DescriptorMatcher.h"

#include <opencv2/features2d.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <map>

using namespace nexomap;

namespace {

constexpr double kRatio = 0.85;

double milliseconds(int rounds, const std::function<void()>& work)
{
    double best = 1e30; // the machine has other users: the quickest of some rounds is its own time
    for (int i = 0; i < rounds; ++i) {
        const auto start = std::chrono::steady_clock::now();
        work();
        best = std::min(
            best,
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    return best;
}

cv::Mat1f asFloat(const Features& features)
{
    const cv::Mat1b bytes(int(features.size()), kDescriptorBytes,
                          const_cast<std::uint8_t*>(features.descriptors.data()));
    cv::Mat1f floats;
    bytes.convertTo(floats, CV_32F);
    return floats;
}

/// Ratio test and mutual check with the library's own brute force, twice over.
std::map<int, int> openCvMatches(const cv::Mat1f& a, const cv::Mat1f& b)
{
    const cv::BFMatcher matcher(cv::NORM_L2);
    std::vector<std::vector<cv::DMatch>> rows, columns;
    matcher.knnMatch(a, b, rows, 2);
    matcher.knnMatch(b, a, columns, 1);
    std::map<int, int> result;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].size() < 2 || !(rows[i][0].distance < kRatio * rows[i][1].distance)) continue;
        if (columns[std::size_t(rows[i][0].trainIdx)][0].trainIdx == int(i))
            result[int(i)] = rows[i][0].trainIdx;
    }
    return result;
}

} // namespace

bool raceKernels(const Features& f0, const Features& f1)
{
    const cv::Mat1f a = asFloat(f0), b = asFloat(f1);
    std::map<int, int> expected;
    const double reference = milliseconds(3, [&] { expected = openCvMatches(a, b); });
    std::printf("descriptor matching, %zu x %zu, ratio and mutual\n", f0.size(), f1.size());
    std::printf("  %-12s %8.1f ms  %6zu matches\n", "OpenCV", reference, expected.size());
    bool same = true;
    for (const MatchKernel* kernel : availableMatchKernels()) {
        std::vector<DescriptorMatch> found;
        const double time = milliseconds(
            5, [&] { found = matchDescriptors(f0.descriptors, f1.descriptors, kRatio, kernel); });
        std::size_t equal = 0;
        for (const DescriptorMatch& match : found) {
            const auto at = expected.find(match.index_0);
            equal += at != expected.end() && at->second == match.index_1;
        }
        // Equal distances may be resolved either way, and OpenCV rounds its distances to floats.
        const bool agrees = found.size() + 2 >= expected.size() && equal + 2 >= found.size();
        same = same && agrees;
        std::printf("  %-12s %8.1f ms  %6zu matches, %zu the same  %6.1f times as fast\n", kernel->name, time,
                    found.size(), equal, reference / time);
    }
    return same;
}
