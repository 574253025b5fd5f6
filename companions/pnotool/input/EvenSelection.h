// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnomaker/PnoMaker.h"

#include <cstddef>
#include <vector>

namespace pnotool {

/// Keeps an even selection of a cloud of unknown length within bounded memory: every point at first, every
/// second once there are too many, and so on.
class EvenSelection
{
public:
    void add(const pnomaker::CloudPoint& point)
    {
        if (m_seen++ % m_step != 0) return;
        m_points.push_back(point);
        if (m_points.size() < kMaxKept) return;
        for (std::size_t i = 0; 2 * i < m_points.size(); ++i)
            m_points[i] = m_points[2 * i];
        m_points.resize(m_points.size() / 2);
        m_step *= 2;
    }

    std::vector<pnomaker::CloudPoint> take() { return std::move(m_points); }
    bool empty() const { return m_points.empty(); }

private:
    static constexpr std::size_t kMaxKept = std::size_t(1) << 21;

    std::vector<pnomaker::CloudPoint> m_points;
    std::size_t m_seen = 0;
    std::size_t m_step = 1;
};

} // namespace pnotool
