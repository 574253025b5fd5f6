// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/tour/PlanarFit.h"

#include <cmath>

namespace lumiscope {

double PlanarFit::pictureAngle(double heading) const
{
    const double x = std::cos(heading), y = std::sin(heading);
    return std::atan2(b * x - a * y, a * x + b * y);
}

std::optional<PlanarFit> fitPlan(const std::vector<std::pair<QPointF, QPointF>>& pairs)
{
    if (pairs.size() < 2) return {};
    QPointF worldMean, pixelMean;
    for (const auto& [world, pixel] : pairs) {
        worldMean += world / double(pairs.size());
        pixelMean += pixel / double(pairs.size());
    }
    double spread = 0.0, along = 0.0, across = 0.0;
    for (const auto& [world, pixel] : pairs) {
        const QPointF w = world - worldMean, p = pixel - pixelMean;
        spread += w.x() * w.x() + w.y() * w.y();
        along += w.x() * p.x() - w.y() * p.y();
        across += w.y() * p.x() + w.x() * p.y();
    }
    PlanarFit fit;
    fit.a = along / spread;
    fit.b = across / spread;
    // Fewer than two places in the world or on the plan say nothing of the turn.
    const double scale = std::hypot(fit.a, fit.b);
    if (spread < 1e-6 || !std::isfinite(scale) || scale < 1e-9) return {};
    fit.shift = QPointF();
    fit.shift = pixelMean - fit.pixel(worldMean);
    return fit;
}

} // namespace lumiscope
