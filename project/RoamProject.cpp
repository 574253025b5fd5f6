// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/RoamProject.h"

PanoNode* findPanorama(const RoamProject& project, quint64 id)
{
    for (auto node = project.panoramas.rbegin(); node != project.panoramas.rend(); ++node)
        if ((*node)->id == id) return node->get();
    return nullptr;
}

void clearProject(RoamProject& project)
{
    project.cloud = CloudLogin();
    project.file_path.clear();
    project.modified = false;
    for (quint64& word : project.editor_state)
        word = 0;
    for (quint32& counter : project.upload_counters)
        counter = 0;
    project.has_plan_image = false;
    project.stage = NotLinked;
    project.links.clear();
    project.panoramas.clear();
    project.lidar = false;
}
