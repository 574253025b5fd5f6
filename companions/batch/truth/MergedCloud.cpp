// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/truth/MergedCloud.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>

namespace {
constexpr qint64 kHeaderBytes = 56;
constexpr double kOriginUnit_m = 0.0001;
} // namespace

MergedCloud readMergedCloud(const QString& path)
{
    MergedCloud cloud;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        cloud.error = QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString());
        return cloud;
    }
    const QByteArray bytes = file.readAll();
    const auto* head = reinterpret_cast<const uchar*>(bytes.constData());
    const auto field = [&](int offset) { return qFromLittleEndian<quint32>(head + offset); };
    const auto points = static_cast<std::size_t>((bytes.size() - kHeaderBytes) / 9);
    const bool fits = bytes.size() >= kHeaderBytes && field(48) == points &&
                      bytes.size() == kHeaderBytes + 9 * qint64(points) && field(12) > 0 &&
                      field(12) <= 100 && field(32) > 0 && field(36) > 0;
    if (!fits) {
        cloud.error = QStringLiteral("%1 is not a point cloud").arg(path);
        return cloud;
    }
    const double base = 100 / field(12);
    const double steps[3] = {field(32) * base, field(32) * base, field(36) * base};
    const uchar* planes = head + kHeaderBytes;
    cloud.points.resize(points);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double origin = field(static_cast<int>(4 * axis)) * kOriginUnit_m;
        const uchar* low = planes + 2 * axis * points;
        for (std::size_t i = 0; i < points; ++i)
            cloud.points[i][static_cast<int>(axis)] =
                static_cast<float>((low[i] + 256 * low[points + i] + 0.5) / steps[axis] - origin);
    }
    return cloud;
}

PointCells::PointCells(const std::vector<Eigen::Vector3f>& points, float reach_m)
    : m_reach(reach_m)
{
    m_entries.reserve(points.size());
    for (const Eigen::Vector3f& point : points)
        m_entries.push_back({cellAt(cellOf(point)), point});
    std::sort(m_entries.begin(), m_entries.end(),
              [](const Entry& a, const Entry& b) { return a.cell < b.cell; });
}

bool PointCells::hasPointNear(const Eigen::Vector3f& place) const
{
    const Eigen::Vector3i middle = cellOf(place);
    for (int x = -1; x <= 1; ++x)
        for (int y = -1; y <= 1; ++y) {
            // Three cells above each other have following numbers.
            const std::uint64_t low = cellAt(middle + Eigen::Vector3i(x, y, -1));
            auto entry = std::lower_bound(m_entries.begin(), m_entries.end(), low,
                                          [](const Entry& e, std::uint64_t cell) { return e.cell < cell; });
            for (; entry != m_entries.end() && entry->cell <= low + 2; ++entry)
                if ((entry->point - place).squaredNorm() <= m_reach * m_reach) return true;
        }
    return false;
}

std::uint64_t PointCells::cellAt(const Eigen::Vector3i& cell) const
{
    constexpr std::int64_t kMiddle = 1 << 20; // 21 bits each
    const auto part = [&](int axis) { return static_cast<std::uint64_t>((cell[axis] + kMiddle) & 0x1fffff); };
    return part(0) << 42 | part(1) << 21 | part(2);
}

Eigen::Vector3i PointCells::cellOf(const Eigen::Vector3f& point) const
{
    return (point / m_reach).array().floor().cast<int>();
}
