// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/RangeModel.h"

#include "companions/samplescene/Random.h"

namespace samplescene {
namespace {

/// A coarser scan laid into the picture: every second column, of those the share of rows that makes up the
/// fill.
bool measured(double fill, RangePixel p)
{
    if (fill >= 1) return true;
    const double columns = fill <= 0.5 ? 0.5 : fill;
    const double rows = fill <= 0.5 ? fill / 0.5 : 1.0;
    const auto kept = [](int i, double share) { return std::floor((i + 1) * share) > std::floor(i * share); };
    return kept(p.x, columns) && kept(p.y, rows);
}

} // namespace

std::uint16_t measuredRange(const Options& options, RangePixel pixel, const FirstReturn& back,
                            const FirstReturn* const (&neighbours)[4], std::uint32_t lot)
{
    if (!measured(options.rangeFill, pixel)) return 0;
    const double polar_deg = 360.0 * (pixel.y + 0.5) / pixel.width;
    if (polar_deg > 180 - options.blindCone_deg) return 0;
    float distance = back.distance;
    if (distance <= 0) return 0;
    const std::uint32_t draw = hash(lot, 0x7a09eU);
    if (unit(draw) < static_cast<float>(options.dropOuts)) return 0;
    if (unit(hash(draw, 1)) < back.dark) return 0;
    if (back.cosine < 0.06f && unit(hash(draw, 2)) < 0.5f) return 0;

    // A beam that straddles an edge comes back from both surfaces: a point in the air between them.
    const FirstReturn& other = *neighbours[draw % 4];
    if (other.distance > 0 && std::fabs(other.distance - distance) > std::max(0.1f, 0.05f * distance) &&
        unit(hash(draw, 3)) < 0.4f)
        distance = mix(distance, other.distance, unit(hash(draw, 4)));

    // The footprint of the beam stretches with the incidence, and its middle is less well known.
    const float spread = std::min(5.0f, 1 + 0.25f * (1 / std::max(back.cosine, 0.02f) - 1));
    distance += static_cast<float>(options.rangeNoise_m) * spread * gaussianOf(hash(draw, 5));
    if (distance > static_cast<float>(options.maxRange_m) || distance < 0.05f) return 0;
    const float millimetres = distance * 1000 + 0.5f;
    return millimetres < 65535 ? static_cast<std::uint16_t>(millimetres) : 0;
}

} // namespace samplescene
