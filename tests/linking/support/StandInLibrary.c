/* SPDX-FileCopyrightText: 2026 The Tourwright developers
   SPDX-License-Identifier: MIT */

/* The 24 functions in plain C, for the test of the run-time binding: each writes its name and arguments as
   one line to the file that the environment variable STAND_IN_LOG names. STAND_IN_LACKS_RELOCATE leaves one
   out. */

#define NEXOMAP_BUILDING
#include "nexomap/include/NexomapLib.h"

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static int note(const char* format, ...)
{
    const char* path = getenv("STAND_IN_LOG");
    FILE* log = path ? fopen(path, "a") : NULL;
    if (log) {
        va_list arguments;
        va_start(arguments, format);
        vfprintf(log, format, arguments);
        va_end(arguments);
        fputc('\n', log);
        fclose(log);
    }
    return 0;
}

int NexomapInit(const char* folder, int reserved)
{
    return note("NexomapInit %s %d", folder, reserved);
}
int NexomapClean(void)
{
    return note("NexomapClean");
}
int NexomapReset(void)
{
    return note("NexomapReset");
}
int NexomapAddNode(const char* path)
{
    return note("NexomapAddNode %s", path);
}
int NexomapFinishAddNode(void)
{
    return note("NexomapFinishAddNode");
}

int NexomapGetPanoNodeNum(void)
{
    note("NexomapGetPanoNodeNum");
    return 3;
}

int NexomapGetPanoNodeParas(char* name, double* position_x, double* position_y, double* position_z,
                            double* vertex_x, double* vertex_y, double* direction, int* plan_center_x,
                            int* plan_center_y, char* plan_name, int index)
{
    memset(name, 'N', 16); /* no terminator: the caller has to keep its own */
    *position_x = 1;
    *position_y = 2;
    *position_z = 3;
    *vertex_x = 4;
    *vertex_y = 5;
    *direction = 6;
    *plan_center_x = 7;
    *plan_center_y = 8;
    memset(plan_name, 'P', 256);
    return note("NexomapGetPanoNodeParas %d", index);
}

int NexomapGetPanoNodeParasB(char* name, double* position_x, double* position_y, double* position_z,
                             double* rotation, int* plan_center_x, int* plan_center_y, char* plan_name,
                             int index)
{
    int i = 0;
    strcpy(name, "BBBBBBBBBBBBBB");
    *position_x = 11;
    *position_y = 12;
    *position_z = 13;
    for (i = 0; i < 9; ++i)
        rotation[i] = 20 + i;
    *plan_center_x = 17;
    *plan_center_y = 18;
    strcpy(plan_name, "plan.png");
    return note("NexomapGetPanoNodeParasB %d", index);
}

int NexomapGetPanoMatchNum(void)
{
    note("NexomapGetPanoMatchNum");
    return 2;
}

int NexomapGetPanoMatchParas(char* name_0, char* name_1, double* rot_0, double* rot_1, double* tilt_x0,
                             double* tilt_x1, double* tilt_y0, double* icon_y0, double* icon_y1,
                             double* spacing, int* mode, double* reliability, int index)
{
    strcpy(name_0, "AAAAAAAAAAAAAA");
    strcpy(name_1, "BBBBBBBBBBBBBB");
    *rot_0 = 1;
    *rot_1 = 2;
    *tilt_x0 = 3;
    *tilt_x1 = 4;
    *tilt_y0 = 5;
    *icon_y0 = 6;
    *icon_y1 = 7;
    *spacing = 8;
    *mode = 9;
    *reliability = 10;
    return note("NexomapGetPanoMatchParas %d", index);
}

int NexomapAddPanoMatch(const char* name_0, const char* name_1)
{
    return note("NexomapAddPanoMatch %s %s", name_0, name_1);
}

int NexomapAddPanoLinkPair(const char* name_0, const char* name_1, double x_0, double y_0, double x_1,
                           double y_1)
{
    return note("NexomapAddPanoLinkPair %s %s %g %g %g %g", name_0, name_1, x_0, y_0, x_1, y_1);
}

int NexomapAnalyzePanoMatchParas(const char* name_0, const char* name_1)
{
    return note("NexomapAnalyzePanoMatchParas %s %s", name_0, name_1);
}

#ifndef STAND_IN_LACKS_RELOCATE
int NexomapRelocateAll(void)
{
    return note("NexomapRelocateAll");
}
#endif

int NexomapDeletePanoMatch(const char* name_0, const char* name_1)
{
    return note("NexomapDeletePanoMatch %s %s", name_0, name_1);
}

int NexomapDrawPanoMatchPng(const char* name_0, const char* name_1)
{
    return note("NexomapDrawPanoMatchPng %s %s", name_0, name_1);
}

int NexomapAutoCreatePanoMatch(void)
{
    return note("NexomapAutoCreatePanoMatch");
}

int NexomapGetPanoGroupNum(void)
{
    note("NexomapGetPanoGroupNum");
    return 4;
}

int NexomapGetPanoNodeNumInOneGroup(int group)
{
    note("NexomapGetPanoNodeNumInOneGroup %d", group);
    return 5;
}

int NexomapMergePointCloud(int indoor, int outputs, int constant, int density, int cloud_map)
{
    return note("NexomapMergePointCloud %d %d %d %d %d", indoor, outputs, constant, density, cloud_map);
}

int NexomapLoadPanoNode(const char* path, double position_x, double position_y, double position_z,
                        double vertex_x, double vertex_y, double direction, int plan_center_x,
                        int plan_center_y, const char* plan_name)
{
    return note("NexomapLoadPanoNode %s %g %g %g %g %g %g %d %d %s", path, position_x, position_y, position_z,
                vertex_x, vertex_y, direction, plan_center_x, plan_center_y, plan_name);
}

int NexomapLoadPanoMatch(const char* name_0, const char* name_1, double rot_0, double rot_1, double tilt_x0,
                         double tilt_x1, double tilt_y0, double icon_y0, double icon_y1, double spacing,
                         int mode, double reliability)
{
    return note("NexomapLoadPanoMatch %s %s %g %g %g %g %g %g %g %g %d %g", name_0, name_1, rot_0, rot_1,
                tilt_x0, tilt_x1, tilt_y0, icon_y0, icon_y1, spacing, mode, reliability);
}

int NexomapDecompressPointCloudFile(const char* path)
{
    return note("NexomapDecompressPointCloudFile %s", path);
}

int NexomapCompressPointCloudFile(const char* path)
{
    return note("NexomapCompressPointCloudFile %s", path);
}
