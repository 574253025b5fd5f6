// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Minimal solver for two panoramas that both stand upright.
#include "nexomap/src/pair/UprightSolver.h"

#include "nexomap/src/pair/Sphere.h"

#include <cmath>

namespace nexomap {
namespace {

constexpr int kSamples = 48; // the polynomial has at most six roots

/// a x (Rz(yaw) b) = cosine * c + sine * s + k
struct Constraint
{
    Eigen::Vector3d c, s, k;

    Constraint(const Eigen::Vector3d& a, const Eigen::Vector3d& b)
        : c(a.cross(Eigen::Vector3d(b.x(), b.y(), 0.0)))
        , s(a.cross(Eigen::Vector3d(-b.y(), b.x(), 0.0)))
        , k(a.cross(Eigen::Vector3d(0.0, 0.0, b.z())))
    {}
    Eigen::Vector3d at(double cosine, double sine) const { return cosine * c + sine * s + k; }
};

struct Turns
{
    std::array<double, kSamples> cosine, sine;
    Turns()
    {
        for (int i = 0; i < kSamples; ++i) {
            cosine[i] = std::cos(2.0 * kPi * i / kSamples);
            sine[i] = std::sin(2.0 * kPi * i / kSamples);
        }
    }
};

} // namespace

std::vector<RigidPose> solveUpright(const std::array<Eigen::Vector3d, 3>& a,
                                    const std::array<Eigen::Vector3d, 3>& b)
{
    static const Turns turns;
    const Constraint e0(a[0], b[0]), e1(a[1], b[1]), e2(a[2], b[2]);
    const auto determinant = [&](double cosine, double sine) {
        return e0.at(cosine, sine).dot(e1.at(cosine, sine).cross(e2.at(cosine, sine)));
    };
    std::vector<RigidPose> poses;
    const auto collect = [&](double low, double f_low, double high, double f_high) {
        // Regula falsi with the Illinois rule.
        double yaw = low;
        for (int step = 0; step < 12; ++step) {
            yaw = (low * f_high - high * f_low) / (f_high - f_low);
            const double f = determinant(std::cos(yaw), std::sin(yaw));
            if (std::abs(f) < 1e-15) break;
            if ((f < 0.0) == (f_low < 0.0)) {
                low = yaw, f_low = f, f_high *= 0.5;
            } else {
                high = yaw, f_high = f, f_low *= 0.5;
            }
        }
        const double cosine = std::cos(yaw), sine = std::sin(yaw);
        const Eigen::Vector3d n0 = e0.at(cosine, sine), n1 = e1.at(cosine, sine), n2 = e2.at(cosine, sine);
        Eigen::Vector3d t = n0.cross(n1);
        for (const Eigen::Vector3d& other : {n0.cross(n2), n1.cross(n2)})
            if (other.squaredNorm() > t.squaredNorm()) t = other;
        if (t.squaredNorm() > 1e-20) poses.push_back({headingRotation(yaw), t.normalized()});
    };
    constexpr double kStep = 2.0 * kPi / kSamples;
    std::array<double, kSamples + 2> f;
    for (int i = 0; i < kSamples; ++i)
        f[i] = determinant(turns.cosine[i], turns.sine[i]);
    f[kSamples] = f[0];
    f[kSamples + 1] = f[1];
    for (int i = 1; i <= kSamples; ++i) {
        if ((f[i - 1] < 0.0) != (f[i] < 0.0)) {
            collect(kStep * (i - 1), f[i - 1], kStep * i, f[i]);
        } else if ((f[i + 1] < 0.0) == (f[i] < 0.0) && std::abs(f[i]) < std::abs(f[i - 1]) &&
                   std::abs(f[i]) <= std::abs(f[i + 1])) {
            // The curve turns back just before zero, or just behind it: then two roots hide between the
            // samples.
            const double bend = f[i - 1] - 2.0 * f[i] + f[i + 1];
            const double yaw = kStep * (i + 0.5 * (f[i - 1] - f[i + 1]) / bend);
            const double low = determinant(std::cos(yaw), std::sin(yaw));
            if ((low < 0.0) != (f[i] < 0.0)) {
                collect(kStep * (i - 1), f[i - 1], yaw, low);
                collect(yaw, low, kStep * (i + 1), f[i + 1]);
            }
        }
    }
    return poses;
}

} // namespace nexomap
