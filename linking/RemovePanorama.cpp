// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/RemovePanorama.h"

#include "linking/CommandState.h"

#include <algorithm>

bool joins(const PanoLink& link, quint64 id)
{
    return static_cast<quint64>(link.id_0) == id || static_cast<quint64>(link.id_1) == id;
}

int removePanorama(RoamProject& project, int row)
{
    if (row < 0 || row >= static_cast<int>(project.panoramas.size())) return -1;
    const auto node = project.panoramas.begin() + row;
    const quint64 id = (*node)->id;
    project.panoramas.erase(node);
    settleStage(project);

    const auto firstRemoved = std::remove_if(project.links.begin(), project.links.end(),
                                             [id](const auto& link) { return joins(*link, id); });
    const auto removed = static_cast<int>(project.links.end() - firstRemoved);
    project.links.erase(firstRemoved, project.links.end());
    project.modified = true;
    return removed;
}
