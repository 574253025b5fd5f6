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
    std::array<double, kSamples + 1> cosine, sine;
    Turns()
    {
        for (int i = 0; i <= kSamples; ++i) {
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
    double previous = determinant(turns.cosine[0], turns.sine[0]);
    for (int i = 1; i <= kSamples; ++i) {
        const double value = determinant(turns.cosine[i], turns.sine[i]);
        if ((previous < 0.0) != (value < 0.0)) {
            // Regula falsi with the Illinois rule: six steps reach the noise of a bearing.
            double low = 2.0 * kPi * (i - 1) / kSamples, high = 2.0 * kPi * i / kSamples;
            double f_low = previous, f_high = value, yaw = low;
            for (int step = 0; step < 8; ++step) {
                yaw = (low * f_high - high * f_low) / (f_high - f_low);
                const double f = determinant(std::cos(yaw), std::sin(yaw));
                if (f == 0.0 || high - low < 1e-12) break;
                if ((f < 0.0) == (f_low < 0.0)) {
                    low = yaw, f_low = f, f_high *= 0.5;
                } else {
                    high = yaw, f_high = f, f_low *= 0.5;
                }
            }
            const double cosine = std::cos(yaw), sine = std::sin(yaw);
            const Eigen::Vector3d n0 = e0.at(cosine, sine), n1 = e1.at(cosine, sine),
                                  n2 = e2.at(cosine, sine);
            Eigen::Vector3d t = n0.cross(n1);
            for (const Eigen::Vector3d& other : {n0.cross(n2), n1.cross(n2)})
                if (other.squaredNorm() > t.squaredNorm()) t = other;
            if (t.squaredNorm() > 1e-20) poses.push_back({headingRotation(yaw), t.normalized()});
        }
        previous = value;
    }
    return poses;
}

} // namespace nexomap
