// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/truth/PlanScore.h"

#include <cmath>
#include <complex>

namespace {

constexpr double kStep_m = 0.01;  ///< between places on the wall faces
constexpr double kMargin_m = 0.4; ///< about the walls: what is drawn farther out is no wall

bool isBlack(const QImage& plan, int x, int y)
{
    return plan.valid(x, y) && qGray(plan.pixel(x, y)) < 128;
}

Eigen::AlignedBox2d boundsOf(const TrueStorey& storey)
{
    Eigen::AlignedBox2d bounds;
    for (const PlanOutline& wall : storey.walls)
        for (const Eigen::Vector2d& corner : wall)
            bounds.extend(corner);
    const Eigen::Vector2d margin = Eigen::Vector2d::Constant(kMargin_m);
    return bounds.isEmpty() ? bounds : Eigen::AlignedBox2d(bounds.min() - margin, bounds.max() + margin);
}

void scorePixels(const QImage& plan, const PlanFrame& frame, const TrueStorey& storey, PlanScore* score)
{
    const Eigen::AlignedBox2d bounds = boundsOf(storey);
    for (int y = 0; y < plan.height(); ++y)
        for (int x = 0; x < plan.width(); ++x) {
            if (!isBlack(plan, x, y)) continue;
            const Eigen::Vector2d place = frame.worldOf(x + 0.5, y + 0.5);
            if (!bounds.contains(place)) continue;
            const bool wall = anyNear(storey.walls, place, PlanScore::kNear_m);
            if (!wall && anyNear(storey.openings, place, PlanScore::kNear_m)) continue;
            score->precision.count(wall);
            if (!wall && anyNear(storey.furniture, place, PlanScore::kNear_m)) ++score->onFurniture;
        }
}

bool seenAtSomeHeight(const ScannerSight& sight, const TrueStorey& storey, const Eigen::Vector2d& face,
                      const Eigen::Vector2d& outward)
{
    const double top = storey.ceiling ? *storey.ceiling - 0.1 : storey.floor + 2.5;
    const Eigen::Vector3f normal(static_cast<float>(outward.x()), static_cast<float>(outward.y()), 0.0f);
    for (double height = storey.floor + 0.3; height < top; height += 0.1) {
        const Eigen::Vector3f place(static_cast<float>(face.x()), static_cast<float>(face.y()),
                                    static_cast<float>(height));
        if (sight.anySees(place, normal)) return true;
    }
    return false;
}

bool blackNear(const QImage& plan, const PlanFrame& frame, const Eigen::Vector2d& place)
{
    const Eigen::Vector2d at = frame.world_from_plan.inverse() * place;
    const int reach = static_cast<int>(std::ceil(PlanScore::kNear_m / frame.pixel_m));
    const int column = static_cast<int>(std::floor(at.x())), row = static_cast<int>(std::floor(-at.y()));
    for (int y = row - reach; y <= row + reach; ++y)
        for (int x = column - reach; x <= column + reach; ++x)
            if (isBlack(plan, x, y) && (frame.worldOf(x + 0.5, y + 0.5) - place).norm() <= PlanScore::kNear_m)
                return true;
    return false;
}

/// A face borders on the air of a room: neither on another wall nor on the facade.
bool bordersOnRoom(const TrueStorey& storey, const Eigen::Vector2d& face, const Eigen::Vector2d& outward)
{
    constexpr double kBefore_m = 0.01;
    const Eigen::Vector2d before = face + kBefore_m * outward;
    if (!storey.rooms.empty() && !storey.roomAt(before)) return false;
    return !anyNear(storey.walls, before, 0.0) && !anyNear(storey.openings, before, 0.0);
}

void scoreFaces(const QImage& plan, const PlanFrame& frame, const TrueStorey& storey,
                const ScannerSight& sight, PlanScore* score)
{
    for (const PlanOutline& wall : storey.walls)
        for (std::size_t i = 0; i < wall.size(); ++i) {
            const Eigen::Vector2d side = wall[(i + 1) % wall.size()] - wall[i];
            const double length = side.norm();
            const Eigen::Vector2d outward(side.y() / length, -side.x() / length);
            for (double along = kStep_m / 2; along < length; along += kStep_m) {
                const Eigen::Vector2d face = wall[i] + along / length * side;
                if (!bordersOnRoom(storey, face, outward)) continue;
                const bool drawn = blackNear(plan, frame, face);
                score->recallOfAll.count(drawn);
                if (seenAtSomeHeight(sight, storey, face, outward)) score->recall.count(drawn);
            }
        }
}

} // namespace

PlanFrame planFrame(const std::vector<Eigen::Vector2i>& pixels, const std::vector<Eigen::Vector2d>& places)
{
    // As complex numbers the similarity is place = factor * pixel + shift.
    using Complex = std::complex<double>;
    std::vector<Complex> from, to;
    Complex fromMiddle, toMiddle;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        from.emplace_back(pixels[i].x() + 0.5, -(pixels[i].y() + 0.5));
        to.emplace_back(places[i].x(), places[i].y());
        fromMiddle += from.back() / static_cast<double>(pixels.size());
        toMiddle += to.back() / static_cast<double>(pixels.size());
    }
    Complex across;
    double spread = 0.0;
    for (std::size_t i = 0; i < from.size(); ++i) {
        across += std::conj(from[i] - fromMiddle) * (to[i] - toMiddle);
        spread += std::norm(from[i] - fromMiddle);
    }
    const Complex factor = spread > 0.0 ? across / spread : Complex(1.0);
    const Complex shift = toMiddle - factor * fromMiddle;
    PlanFrame frame;
    frame.world_from_plan.matrix() << factor.real(), -factor.imag(), shift.real(), factor.imag(),
        factor.real(), shift.imag(), 0.0, 0.0, 1.0;
    frame.pixel_m = std::abs(factor);
    return frame;
}

PlanScore scorePlan(const QImage& plan, const PlanFrame& frame, const TrueStorey& storey,
                    const ScannerSight& sight)
{
    PlanScore score;
    scorePixels(plan, frame, storey, &score);
    scoreFaces(plan, frame, storey, sight, &score);
    return score;
}
