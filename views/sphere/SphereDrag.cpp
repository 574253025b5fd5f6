// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/sphere/SphereDrag.h"

#include <cmath>

namespace sphere {

namespace {

constexpr double kFinestStep = 0.0005;
constexpr double kLowestPolar = 0.001;
constexpr double kHighestPolar = 3.1405926535897932;

/// Squared distance of the point under the cursor from the grabbed one, in angles, azimuth the short way
/// round.
double missOf(const Camera& candidate, ScreenPoint cursor, SpherePoint grabbed)
{
    const SpherePoint under = sphereFromScreen(cursor, candidate);
    double azimuth = under.azimuth;
    while (azimuth - grabbed.azimuth > kPi)
        azimuth -= 2.0 * kPi;
    while (azimuth - grabbed.azimuth < -kPi)
        azimuth += 2.0 * kPi;
    const double dAzimuth = azimuth - grabbed.azimuth;
    const double dPolar = under.polar - grabbed.polar;
    return dPolar * dPolar + dAzimuth * dAzimuth;
}

/// The best of the base and its eight neighbours at one step; the base itself when none may be taken.
Camera bestNeighbour(const Camera& base, double step, ScreenPoint cursor, SpherePoint grabbed)
{
    Camera best = base;
    double smallest = 1e10;
    for (int k = -1; k <= 1; ++k) {
        for (int l = -1; l <= 1; ++l) {
            const Camera candidate{base.yaw + l * step, base.polar + k * step, base.zoom};
            if (candidate.polar < kLowestPolar || candidate.polar > kHighestPolar) continue;
            const double miss = missOf(candidate, cursor, grabbed);
            if (miss < smallest) {
                smallest = miss;
                best = candidate;
            }
        }
    }
    return best;
}

} // namespace

void ViewDrag::begin(ScreenPoint cursor, const Camera& camera)
{
    m_last = cursor;
    m_grabbed = sphereFromScreen(cursor, camera);
}

Camera ViewDrag::follow(ScreenPoint cursor, Camera target)
{
    const double moved = std::hypot(cursor.u - m_last.u, cursor.v - m_last.v);
    // Four times the angle of the movement: the rounds together can then reach beyond it in every direction.
    for (double step = 4.0 * std::atan(moved / target.zoom); step > kFinestStep; step /= 2.0)
        target = bestNeighbour(target, step, cursor, m_grabbed);
    m_last = cursor;
    return target;
}

} // namespace sphere
