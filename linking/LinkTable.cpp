// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/LinkTable.h"

std::vector<LinkRow> linkRows(const RoamProject& project)
{
    std::vector<LinkRow> rows;
    for (const auto& link : project.links) {
        const LinkEnds ends = endsOf(project, *link);
        LinkRow row;
        row.automatic = link->mode != LinkByHand;
        if (ends.panorama_0) row.panorama_0 = ends.panorama_0->base_name;
        if (ends.panorama_1) row.panorama_1 = ends.panorama_1->base_name;
        rows.push_back(row);
    }
    return rows;
}

LinkEnds endsOf(const RoamProject& project, const PanoLink& link)
{
    return {findPanorama(project, static_cast<quint64>(link.id_0)),
            findPanorama(project, static_cast<quint64>(link.id_1))};
}
