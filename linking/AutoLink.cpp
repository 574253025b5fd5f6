// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/AutoLink.h"

#include "linking/ReadBack.h"

bool linkAutomatically(RoamProject& project, Linker& linker,
                       const std::function<void(const AutoLinkStep&)>& afterStep)
{
    using Kind = AutoLinkStep::Kind;
    const int count = static_cast<int>(project.panoramas.size());
    if (count < 2) return false;

    linker.reset();
    afterStep({Kind::Started, -1, 0, false});
    readBackMatches(project, linker);
    afterStep({Kind::LinksDropped, -1, 0, false});

    for (int i = 0; i < count; ++i) {
        linker.addNode(project.panoramas[static_cast<std::size_t>(i)]->file_path);
        afterStep({Kind::PanoramaAdded, i, 90 * (i + 1) / count, i > 0});
    }
    linker.finishAddNode();
    afterStep({Kind::Finished, -1, 100, true});

    readBackNodes(project, linker);
    readBackMatches(project, linker);
    project.stage = Linked;
    project.modified = true;
    return true;
}
