// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/EditLinks.h"

#include "linking/LinkTable.h"
#include "linking/ReadBack.h"

#include <algorithm>
#include <cstring>

namespace {

PanoNode* panoramaAt(const RoamProject& project, int row)
{
    const bool inside = row >= 0 && row < static_cast<int>(project.panoramas.size());
    return inside ? project.panoramas[static_cast<std::size_t>(row)].get() : nullptr;
}

bool linked(const RoamProject& project, const PanoNode& one, const PanoNode& other)
{
    const auto a = static_cast<qint64>(one.id);
    const auto b = static_cast<qint64>(other.id);
    return std::any_of(project.links.begin(), project.links.end(), [a, b](const auto& link) {
        return (link->id_0 == a && link->id_1 == b) || (link->id_0 == b && link->id_1 == a);
    });
}

std::unique_ptr<PanoLink> linkBetween(const PanoNode& panorama_0, const PanoNode& panorama_1)
{
    auto link = std::make_unique<PanoLink>();
    link->id_0 = static_cast<qint64>(panorama_0.id);
    link->id_1 = static_cast<qint64>(panorama_1.id);
    std::memcpy(link->name_0, panorama_0.parameters.identity, sizeof link->name_0);
    std::memcpy(link->name_1, panorama_1.parameters.identity, sizeof link->name_1);
    return link;
}

} // namespace

AddLinkResult addLinkByHand(RoamProject& project, int row, int otherRow)
{
    PanoNode* first = panoramaAt(project, row);
    PanoNode* second = panoramaAt(project, otherRow);
    if (!first || !second) return {AddLinkOutcome::NothingSelected};
    if (first == second) return {AddLinkOutcome::SamePanorama};
    if (second->name() < first->name()) std::swap(first, second);
    if (linked(project, *first, *second)) return {AddLinkOutcome::AlreadyLinked};
    if (project.lidar) return {AddLinkOutcome::NeedsEditor, first, second};

    project.links.push_back(linkBetween(*first, *second));
    project.modified = true;
    return {AddLinkOutcome::Added, first, second};
}

bool deleteLink(RoamProject& project, Linker& linker, int row)
{
    if (row < 0 || row >= static_cast<int>(project.links.size())) return false;
    const auto link = project.links.begin() + row;
    if (project.lidar) {
        linker.deleteMatch(QByteArray((*link)->name_0), QByteArray((*link)->name_1));
        linker.relocateAll();
        readBackAfterEdit(project, linker);
    } else {
        project.links.erase(link);
    }
    project.modified = true;
    return true;
}

bool hasMatchPicture(const RoamProject& project, const PanoLink& link)
{
    return project.lidar && project.stage == Linked && endsOf(project, link).complete();
}

bool drawMatchPicture(const RoamProject& project, Linker& linker, const PanoLink& link)
{
    if (!hasMatchPicture(project, link)) return false;
    linker.drawMatchPng(QByteArray(link.name_0), QByteArray(link.name_1));
    return true;
}
