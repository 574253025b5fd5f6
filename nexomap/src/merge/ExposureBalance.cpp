// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/ExposureBalance.h"

#include <Eigen/Cholesky>

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr double kPlace_m = 0.1;
constexpr std::size_t kLeastCommon = 50;
constexpr double kMostFactor = 2.5;
constexpr int kDark = 10, kBright = 245; // outside, cameras clip

std::uint64_t placeOf(const Eigen::Vector3f& world)
{
    std::uint64_t key = 0;
    for (int axis = 0; axis < 3; ++axis) {
        const auto number = std::int64_t(std::floor(double(world[axis]) / kPlace_m)) + (1 << 20);
        key = key << 21 | (std::uint64_t(number) & 0x1FFFFF);
    }
    return key;
}

float median(std::vector<float>& values)
{
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

void ExposureBalance::Station::add(const Eigen::Vector3f& world, std::uint8_t red, std::uint8_t green,
                                   std::uint8_t blue)
{
    if (std::min({red, green, blue}) < kDark || std::max({red, green, blue}) > kBright) return;
    const std::uint64_t place = placeOf(world);
    if ((place * 0x9E3779B97F4A7C15u) >> 62) return; // one place in four, the same for every station
    m_patches.push_back({place, {std::log(float(red)), std::log(float(green)), std::log(float(blue))}, 1.f});
}

void ExposureBalance::Station::finish()
{
    std::stable_sort(m_patches.begin(), m_patches.end(),
                     [](const Patch& a, const Patch& b) { return a.place < b.place; });
    std::size_t count = 0;
    for (std::size_t from = 0, to = 0; from < m_patches.size(); from = to) {
        Patch sum = m_patches[from];
        for (to = from + 1; to < m_patches.size() && m_patches[to].place == sum.place; ++to)
            sum.light += m_patches[to].light, sum.count += 1.f;
        sum.light /= sum.count;
        m_patches[count++] = sum;
    }
    m_patches.resize(count);
    m_patches.shrink_to_fit();
}

void ExposureBalance::add(Station&& station)
{
    station.finish();
    m_stations.push_back(std::move(station));
}

std::vector<Eigen::Vector3f> ExposureBalance::factors() const
{
    const int n = int(m_stations.size());
    // Everyone is held weakly at 1: who has nothing in common with others stays as it is.
    std::array<Eigen::MatrixXd, 3> normal;
    std::array<Eigen::VectorXd, 3> right;
    for (int channel = 0; channel < 3; ++channel) {
        normal[std::size_t(channel)] = Eigen::MatrixXd::Identity(n, n);
        right[std::size_t(channel)] = Eigen::VectorXd::Zero(n);
    }
    std::array<std::vector<float>, 3> ratios;
    for (int a = 0; a < n; ++a)
        for (int b = a + 1; b < n; ++b) {
            for (auto& list : ratios)
                list.clear();
            const auto &p = m_stations[std::size_t(a)].m_patches, &q = m_stations[std::size_t(b)].m_patches;
            for (std::size_t i = 0, j = 0; i < p.size() && j < q.size();) {
                if (p[i].place < q[j].place)
                    ++i;
                else if (q[j].place < p[i].place)
                    ++j;
                else {
                    for (int channel = 0; channel < 3; ++channel)
                        ratios[std::size_t(channel)].push_back(p[i].light[channel] - q[j].light[channel]);
                    ++i, ++j;
                }
            }
            if (ratios[0].size() < kLeastCommon) continue;
            const double weight = std::sqrt(double(ratios[0].size()));
            for (int channel = 0; channel < 3; ++channel) {
                const double ratio = double(median(ratios[std::size_t(channel)]));
                Eigen::MatrixXd& matrix = normal[std::size_t(channel)];
                matrix(a, a) += weight, matrix(b, b) += weight;
                matrix(a, b) -= weight, matrix(b, a) -= weight;
                right[std::size_t(channel)](a) -= weight * ratio;
                right[std::size_t(channel)](b) += weight * ratio;
            }
        }
    std::vector<Eigen::Vector3f> factors(std::size_t(n), Eigen::Vector3f::Ones());
    const double most = std::log(kMostFactor);
    for (int channel = 0; channel < 3; ++channel) {
        const Eigen::VectorXd logs = normal[std::size_t(channel)].ldlt().solve(right[std::size_t(channel)]);
        for (int k = 0; k < n; ++k)
            factors[std::size_t(k)][channel] = float(std::exp(std::clamp(logs(k), -most, most)));
    }
    return factors;
}

} // namespace nexomap
