// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/map/GenerateMap.h"

#include "linking/map/MapFiles.h"
#include "linking/map/PoseTable.h"
#include "linking/ReadBack.h"

namespace {

int densityOf(MapOptions::Density density)
{
    switch (density) {
    case MapOptions::Low:
        return 0;
    case MapOptions::Mid:
        return 1;
    default:
        return 2;
    }
}

int merge(const MapOptions& options, Linker& linker)
{
    const int indoor = options.scene == MapOptions::Indoor ? 1 : 0;
    const int outputs = (options.fullCloud ? 1 : 0) + (options.binaryCloud ? 2 : 0);
    const int cloudMap = options.mode == MapOptions::Cloud3D ? 1 : 0;
    return linker.mergePointCloud(indoor, outputs, 1, densityOf(options.density), cloudMap);
}

} // namespace

bool isConnected(const RoamProject& project, Linker& linker)
{
    const int groups = linker.groupCount();
    const int inFirst = linker.nodeCountInGroup(0);
    return groups <= 1 && inFirst == static_cast<int>(project.panoramas.size());
}

int generateMap(RoamProject& project, Linker& linker, const std::function<void(const MapStep&)>& atStep)
{
    using Kind = MapStep::Kind;
    atStep({Kind::CompletingLinks, 0});
    linker.autoCreateMatch();
    atStep({Kind::LinksCompleted, 10});
    readBackMatches(project, linker);
    atStep({Kind::Merging, 10});

    const int status = merge(project.map_options, linker);
    atStep({Kind::Merged, 90});
    readBackNodes(project, linker);
    atStep({Kind::HandingOut, 90});

    moveMapOutputs(project.folders);
    writePoseTable(project, linker);
    project.stage = MapGenerated;
    project.modified = true;
    atStep({Kind::Finished, 100});
    return status;
}
