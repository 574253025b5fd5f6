// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/CommandState.h"

#include <algorithm>

CommandState commandState(const RoamProject& project, int panoramaRow, int linkRow)
{
    const bool several = project.panoramas.size() >= 2;
    const bool linked = project.stage >= Linked;

    CommandState state;
    state.add_panorama = project.stage == NotLinked;
    state.delete_panorama = panoramaRow >= 0 && project.stage == NotLinked;
    state.panorama = panoramaRow >= 0;
    state.auto_link = several;
    state.add_link = several && linked;
    state.generate_map = several && linked && project.lidar;
    state.delete_link = linkRow >= 0 && (!project.lidar || linked);
    return state;
}

int rowAfterRefresh(int remembered, int count)
{
    return std::min(std::max(remembered, 0), count - 1);
}

void settleStage(RoamProject& project)
{
    if (project.panoramas.empty()) project.stage = NotLinked;
}
