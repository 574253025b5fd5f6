// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The C functions: each checks its arguments and calls one function that does the work.

#include "nexomap/include/NexomapLib.h"

#include "nexomap/src/interface/Arguments.h"
#include "nexomap/src/interface/Library.h"
#include "nexomap/src/merge/CloudCompression.h"
#include "nexomap/src/merge/MergeGroup.h"
#include "nexomap/src/model/Adding.h"
#include "nexomap/src/model/HandMade.h"
#include "nexomap/src/model/LinkChoice.h"
#include "nexomap/src/model/MatchFiles.h"
#include "nexomap/src/model/Relocation.h"
#include "nexomap/src/model/SavedTour.h"

using namespace nexomap;

namespace {

const Node& nodeAt(const Model& model, int index)
{
    if (index < 0 || index >= int(model.nodes.size()))
        throw Failure(NEXOMAP_BAD_ARGUMENT, "there is no such panorama index");
    return model.nodes[index];
}

bool isBareName(const std::string& text)
{
    return text.size() < 256 && text.find_first_of("/\\") == std::string::npos && text != "." && text != "..";
}

} // namespace

extern "C" {

int NexomapInit(const char* folder, int reserved)
{
    return guarded([&](Library& here) {
        const std::string path = pathOf(folder);
        if (reserved != 0) throw Failure(NEXOMAP_BAD_ARGUMENT, "the reserved number is 0");
        WorkingFolder checked(path);
        Model empty;
        here.folder.emplace(std::move(checked));
        std::swap(here.model, empty);
        return NEXOMAP_OK;
    });
}

int NexomapClean(void)
{
    return guarded([](Library& here) {
        if (!here.folder) throw Failure(NEXOMAP_NOT_READY, "NexomapInit was not called");
        here.model = {};
        here.folder.reset();
        return NEXOMAP_OK;
    });
}

int NexomapReset(void)
{
    return changing([](Model& model, const Workplace&) { model = {}; });
}

int NexomapAddNode(const char* pno_path)
{
    return changing(
        [&](Model& model, const Workplace& workplace) { addNode(model, workplace, pathOf(pno_path)); });
}

int NexomapFinishAddNode(void)
{
    return changing([](Model& model, const Workplace& workplace) { finishAdding(model, workplace); });
}

int NexomapGetPanoNodeNum(void)
{
    return reading([](const Model& model, const Workplace&) { return model.nodes.size(); });
}

int NexomapGetPanoNodeParas(char* name, double* position_x, double* position_y, double* position_z,
                            double* vertex_x, double* vertex_y, double* direction, int* plan_center_x,
                            int* plan_center_y, char* plan_name, int index)
{
    return reading([&](const Model& model, const Workplace&) {
        requireAll(name, position_x, position_y, position_z, vertex_x, vertex_y, direction, plan_center_x,
                   plan_center_y, plan_name);
        const Node& node = nodeAt(model, index);
        putText(name, 16, node.name);
        *position_x = node.pose.t.x();
        *position_y = node.pose.t.y();
        *position_z = node.pose.t.z();
        *vertex_x = node.vertex.x();
        *vertex_y = node.vertex.y();
        *direction = headingOf(node.pose.R);
        *plan_center_x = node.plan_x;
        *plan_center_y = node.plan_y;
        putText(plan_name, 256, node.plan_name);
        return NEXOMAP_OK;
    });
}

int NexomapGetPanoNodeParasB(char* name, double* position_x, double* position_y, double* position_z,
                             double* rotation, int* plan_center_x, int* plan_center_y, char* plan_name,
                             int index)
{
    return reading([&](const Model& model, const Workplace&) {
        requireAll(name, position_x, position_y, position_z, rotation, plan_center_x, plan_center_y,
                   plan_name);
        const Node& node = nodeAt(model, index);
        putText(name, 16, node.name);
        *position_x = node.pose.t.x();
        *position_y = node.pose.t.y();
        *position_z = node.pose.t.z();
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column)
                rotation[3 * row + column] = node.pose.R(row, column);
        *plan_center_x = node.plan_x;
        *plan_center_y = node.plan_y;
        putText(plan_name, 256, node.plan_name);
        return NEXOMAP_OK;
    });
}

int NexomapGetPanoMatchNum(void)
{
    return reading([](const Model& model, const Workplace&) { return model.links().size(); });
}

int NexomapGetPanoMatchParas(char* name_0, char* name_1, double* rot_0, double* rot_1, double* tilt_x0,
                             double* tilt_x1, double* tilt_y0, double* icon_y0, double* icon_y1,
                             double* spacing, int* mode, double* reliability, int index)
{
    return reading([&](const Model& model, const Workplace&) {
        requireAll(name_0, name_1, rot_0, rot_1, tilt_x0, tilt_x1, tilt_y0, icon_y0, icon_y1, spacing, mode,
                   reliability);
        const std::vector<const Edge*> links = model.links();
        if (index < 0 || index >= int(links.size()))
            throw Failure(NEXOMAP_BAD_ARGUMENT, "there is no such match index");
        const Edge& link = *links[index];
        putText(name_0, 16, model.nodes[link.node_0].name);
        putText(name_1, 16, model.nodes[link.node_1].name);
        *rot_0 = link.values.rot_0;
        *rot_1 = link.values.rot_1;
        *tilt_x0 = link.values.tilt_x0;
        *tilt_x1 = link.values.tilt_x1;
        *tilt_y0 = link.values.tilt_y0;
        *icon_y0 = link.values.icon_y0;
        *icon_y1 = link.values.icon_y1;
        *spacing = link.values.spacing;
        *mode = int(link.origin);
        *reliability = link.reliability;
        return NEXOMAP_OK;
    });
}

int NexomapAddPanoMatch(const char* name_0, const char* name_1)
{
    return changingSettled(
        [&](Model& model, const Workplace&) { announceMatch(model, nameOf(name_0), nameOf(name_1)); });
}

int NexomapAddPanoLinkPair(const char* name_0, const char* name_1, double x_0, double y_0, double x_1,
                           double y_1)
{
    return changingSettled([&](Model& model, const Workplace&) {
        const std::string first = nameOf(name_0), second = nameOf(name_1);
        requireFinite(x_0, y_0, x_1, y_1);
        if (std::min(y_0, y_1) < 0.0 || std::max(y_0, y_1) > kPi + 1e-9)
            throw Failure(NEXOMAP_BAD_ARGUMENT, "a polar angle lies between 0 and pi");
        addPick(model, first, second, {x_0, y_0, x_1, y_1});
    });
}

int NexomapAnalyzePanoMatchParas(const char* name_0, const char* name_1)
{
    return changingSettled([&](Model& model, const Workplace& workplace) {
        analyseMatch(model, workplace, nameOf(name_0), nameOf(name_1));
        writeMatchFiles(model, workplace.folder);
    });
}

int NexomapRelocateAll(void)
{
    return changingSettled([](Model& model, const Workplace& workplace) {
        relocate(model);
        writeMatchFiles(model, workplace.folder);
    });
}

int NexomapDeletePanoMatch(const char* name_0, const char* name_1)
{
    return changingSettled([&](Model& model, const Workplace& workplace) {
        const std::string key = deleteMatch(model, nameOf(name_0), nameOf(name_1));
        writeMatchFiles(model, workplace.folder);
        if (!key.empty()) removeMatchFiles(key, workplace.folder);
    });
}

int NexomapDrawPanoMatchPng(const char* name_0, const char* name_1)
{
    return reading([&](const Model& model, const Workplace& workplace) {
        const int a = model.nodeNamed(nameOf(name_0)), b = model.nodeNamed(nameOf(name_1));
        const Edge* edge = model.edgeBetween(a, b);
        if (!edge || !edge->link) throw Failure(NEXOMAP_UNKNOWN_NAME, "the two are not matched");
        drawMatchPicture(model, workplace, *edge);
        return NEXOMAP_OK;
    });
}

int NexomapAutoCreatePanoMatch(void)
{
    return changingSettled(
        [](Model& model, const Workplace& workplace) { addLinksByPose(model, workplace, kFarthestLink_m); });
}

int NexomapGetPanoGroupNum(void)
{
    return reading([](const Model& model, const Workplace&) { return model.groups().size(); });
}

int NexomapGetPanoNodeNumInOneGroup(int group)
{
    return reading([&](const Model& model, const Workplace&) {
        const std::vector<std::vector<int>> groups = model.groups();
        if (group < 0 || group >= int(groups.size()))
            throw Failure(NEXOMAP_BAD_ARGUMENT, "there is no such group index");
        return groups[group].size();
    });
}

int NexomapMergePointCloud(int indoor, int outputs, int constant, int density, int cloud_map)
{
    return changingSettled([&](Model& model, const Workplace& workplace) {
        const bool known = (indoor | 1) == 1 && (outputs | 3) == 3 && constant == 1 && density >= 0 &&
                           density <= 2 && (cloud_map | 1) == 1;
        if (!known) throw Failure(NEXOMAP_BAD_ARGUMENT, "a setting of the merge is out of range");
        MergeOptions options;
        options.indoor = indoor == 1;
        options.pts = (outputs & 1) != 0;
        options.binary = (outputs & 2) != 0;
        options.density = density;
        options.cloud_map = cloud_map == 1;
        for (const std::string& reason : mergeGroup(model, workplace, options))
            tell(reason.c_str());
    });
}

int NexomapLoadPanoNode(const char* pno_path, double position_x, double position_y, double position_z,
                        double vertex_x, double vertex_y, double direction, int plan_center_x,
                        int plan_center_y, const char* plan_name)
{
    return changingSettled([&](Model& model, const Workplace& workplace) {
        requireAll(plan_name);
        requireFinite(direction);
        requireLengths(position_x, position_y, position_z, vertex_x, vertex_y);
        const std::string plan = plan_name;
        if (!isBareName(plan)) throw Failure(NEXOMAP_BAD_ARGUMENT, "a plan's name has no folder");
        loadNode(model, workplace,
                 {pathOf(pno_path),
                  {position_x, position_y, position_z},
                  {vertex_x, vertex_y},
                  direction,
                  plan_center_x,
                  plan_center_y,
                  plan});
    });
}

int NexomapLoadPanoMatch(const char* name_0, const char* name_1, double rot_0, double rot_1, double tilt_x0,
                         double tilt_x1, double tilt_y0, double icon_y0, double icon_y1, double spacing,
                         int mode, double reliability)
{
    return changingSettled([&](Model& model, const Workplace& workplace) {
        const std::string first = nameOf(name_0), second = nameOf(name_1);
        requireFinite(rot_0, rot_1, tilt_x0, tilt_x1, tilt_y0, icon_y0, icon_y1, reliability);
        requireLengths(spacing);
        if (mode < 0 || mode > 2) throw Failure(NEXOMAP_BAD_ARGUMENT, "a mode is 0, 1 or 2");
        if (spacing < 0.0 || reliability < 0.0 || reliability > 1.0)
            throw Failure(NEXOMAP_BAD_ARGUMENT, "a spacing is not negative, a reliability lies in 0 to 1");
        loadMatch(model, workplace,
                  {first,
                   second,
                   {rot_0, rot_1, tilt_x0, tilt_x1, tilt_y0, icon_y0, icon_y1, spacing},
                   mode,
                   reliability});
    });
}

int NexomapDecompressPointCloudFile(const char* path)
{
    return guarded([&](Library&) {
        decompressCloudFile(pathOf(path));
        return NEXOMAP_OK;
    });
}

int NexomapCompressPointCloudFile(const char* path)
{
    return guarded([&](Library&) {
        compressCloudFile(pathOf(path));
        return NEXOMAP_OK;
    });
}

} // extern "C"
