// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/PairsFile.h"

#include "project/PanoIdentity.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

struct Row
{
    QByteArray name_0, name_1;
    DirectionPair pair;
};

std::optional<Row> rowFrom(const QByteArray& line)
{
    const QList<QByteArray> cells = line.split(',');
    if (cells.size() != 6) return std::nullopt;
    double values[4] = {};
    for (int i = 0; i < 4; ++i) {
        bool isNumber = false;
        values[i] = cells[2 + i].trimmed().toDouble(&isNumber);
        if (!isNumber || !std::isfinite(values[i])) return std::nullopt;
    }
    Row row{cells[0].trimmed(), cells[1].trimmed(), {values[0], values[1], values[2], values[3]}};
    if (row.name_1 < row.name_0) {
        std::swap(row.name_0, row.name_1);
        row.pair = {values[2], values[3], values[0], values[1]};
    }
    return row;
}

HandMadeLink& linkFor(std::vector<HandMadeLink>& links, const Row& row)
{
    const auto found = std::find_if(links.begin(), links.end(), [&](const HandMadeLink& link) {
        return link.name_0 == row.name_0 && link.name_1 == row.name_1;
    });
    if (found != links.end()) return *found;
    links.push_back({row.name_0, row.name_1, {}});
    return links.back();
}

bool isPanorama(const RoamProject& project, const QByteArray& name)
{
    const PanoNode* node = findPanorama(project, panoIdFromName(name.toStdString()));
    return node && node->name() == name;
}

} // namespace

int HandMadeLink::handTo(Linker& linker) const
{
    int status = linker.addMatch(name_0, name_1);
    for (const DirectionPair& pair : pairs) {
        if (status < 0) return status;
        status =
            linker.addLinkPair(name_0, name_1, pair.azimuth_0, pair.polar_0, pair.azimuth_1, pair.polar_1);
    }
    return status < 0 ? status : linker.analyzeMatch(name_0, name_1);
}

PairsFile readPairs(const QString& path, const RoamProject& project)
{
    PairsFile result;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        result.error = QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString());
        return result;
    }
    for (int number = 1; !file.atEnd(); ++number) {
        const QByteArray line = file.readLine().trimmed();
        if (line.isEmpty() || line.startsWith('#') || line.startsWith("id0")) continue;
        const std::optional<Row> row = rowFrom(line);
        if (!row) {
            result.error = QStringLiteral("%1, line %2: not id0,id1,azimuth0,polar0,azimuth1,polar1")
                               .arg(path)
                               .arg(number);
            return result;
        }
        for (const QByteArray& name : {row->name_0, row->name_1})
            if (!isPanorama(project, name)) {
                result.error = QStringLiteral("%1, line %2: no panorama %3 in the tour")
                                   .arg(path)
                                   .arg(number)
                                   .arg(QString::fromLatin1(name));
                return result;
            }
        linkFor(result.links, *row).pairs.push_back(row->pair);
    }
    return result;
}
