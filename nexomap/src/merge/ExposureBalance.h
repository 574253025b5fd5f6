// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <Eigen/Core>

#include <array>
#include <cstdint>
#include <vector>

namespace nexomap {

/// Evens out exposure and white balance between panoramas: factors per channel, so that places that several
/// see have one colour, solved together by least squares on the logarithms.
class ExposureBalance
{
public:
    /// The colours of one station by the places it sees.
    class Station
    {
    public:
        void add(const Eigen::Vector3f& world, std::uint8_t red, std::uint8_t green, std::uint8_t blue);

    private:
        friend class ExposureBalance;
        struct Patch
        {
            std::uint64_t place;
            Eigen::Vector3f light; ///< logarithms of the channels
            float count;
        };
        void finish();
        std::vector<Patch> m_patches;
    };

    void add(Station&& station);
    /// One triple of factors (red, green, blue) for each station in order; 1 on the whole.
    std::vector<Eigen::Vector3f> factors() const;

private:
    std::vector<Station> m_stations;
};

} // namespace nexomap
