/* SPDX-FileCopyrightText: 2026 The Tourwright developers
   SPDX-License-Identifier: MIT */

/* The header as a C program sees it: every function is called with arguments that it must refuse. */

#include "nexomap/include/NexomapLib.h"

#include <math.h>
#include <stddef.h>

static const char* const kA = "AAAAAAAAAAAAAA";
static const char* const kB = "AAAAAAAAAAAAAB";

/* Number of calls that took bad arguments without complaint, or refused them with another status. */
int CountMissedBadArguments(void)
{
    char name[16], plan[256];
    double d[9];
    int i[2];
    int missed = 0;
    missed += NexomapInit(NULL, 0) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapInit("", 0) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapAddNode(NULL) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapAddNode("") != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapGetPanoNodeParas(NULL, d, d, d, d, d, d, i, i, plan, 0) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapGetPanoNodeParas(name, d, d, d, d, d, d, i, i, NULL, 0) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapGetPanoNodeParas(name, d, d, d, d, d, d, i, i, plan, -1) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapGetPanoNodeParas(name, d, d, d, d, d, d, i, i, plan, 1000000) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapGetPanoNodeParasB(name, d, d, d, NULL, i, i, plan, 0) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapGetPanoNodeParasB(name, d, d, d, d, i, i, plan, -1) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapGetPanoMatchParas(name, name, d, d, d, d, d, d, d, d, NULL, d, 0) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapGetPanoMatchParas(name, name, d, d, d, d, d, d, d, d, i, d, -1) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapGetPanoNodeNumInOneGroup(-1) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapGetPanoNodeNumInOneGroup(1000000) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapAddPanoMatch(NULL, kB) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapAddPanoMatch(kA, "short") != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapAddPanoMatch(kA, "AAAAAAAAAAAAAAA") != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapAddPanoMatch(kA, "../../AAAAAAAA") != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapAddPanoMatch(kA, kA) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapAddPanoLinkPair(NULL, kB, 0, 1, 0, 1) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapAddPanoLinkPair(kA, kB, NAN, 1, 0, 1) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapAddPanoLinkPair(kA, kB, 0, 1, INFINITY, 1) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapAddPanoLinkPair(kA, kB, 0, -0.1, 0, 1) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapAddPanoLinkPair(kA, kB, 0, 1, 0, 3.2) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapAnalyzePanoMatchParas(NULL, kB) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapDeletePanoMatch(kA, NULL) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapDrawPanoMatchPng(NULL, NULL) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapMergePointCloud(2, 0, 1, 0, 0) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapMergePointCloud(0, 4, 1, 0, 0) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapMergePointCloud(0, 0, 0, 0, 0) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapMergePointCloud(0, 0, 1, 3, 0) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapMergePointCloud(0, 0, 1, 0, -1) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapLoadPanoNode(NULL, 0, 0, 0, 0, 0, 0, 0, 0, "") != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapLoadPanoNode("x.pno", 0, 0, 0, 0, 0, 0, 0, 0, NULL) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapLoadPanoNode("x.pno", NAN, 0, 0, 0, 0, 0, 0, 0, "") != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapLoadPanoNode("x.pno", 0, 0, 0, 0, 0, 0, 0, 0, "../plan.png") != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapLoadPanoMatch(NULL, kB, 0, 0, 0, 0, 0, 2, 2, 2, 0, 1) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapLoadPanoMatch(kA, kB, NAN, 0, 0, 0, 0, 2, 2, 2, 0, 1) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapLoadPanoMatch(kA, kB, 0, 0, 0, 0, 0, 2, 2, 2, 3, 1) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapLoadPanoMatch(kA, kB, 0, 0, 0, 0, 0, 2, 2, -1, 0, 1) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapLoadPanoMatch(kA, kB, 0, 0, 0, 0, 0, 2, 2, 2, 0, 1.5) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapDecompressPointCloudFile(NULL) != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapDecompressPointCloudFile("cloud.tmp") != NEXOMAP_BAD_ARGUMENT;
    missed += NexomapCompressPointCloudFile("cloud.cld") != NEXOMAP_BAD_ARGUMENT;
    return missed;
}

/* Number of state functions that answer anything but "not ready" before NexomapInit. */
int CountReadyBeforeInit(void)
{
    int ready = 0;
    ready += NexomapClean() != NEXOMAP_NOT_READY;
    ready += NexomapReset() != NEXOMAP_NOT_READY;
    ready += NexomapAddNode("x.pno") != NEXOMAP_NOT_READY;
    ready += NexomapFinishAddNode() != NEXOMAP_NOT_READY;
    ready += NexomapGetPanoNodeNum() != NEXOMAP_NOT_READY;
    ready += NexomapGetPanoMatchNum() != NEXOMAP_NOT_READY;
    ready += NexomapAddPanoMatch(kA, kB) != NEXOMAP_NOT_READY;
    ready += NexomapAddPanoLinkPair(kA, kB, 0, 1, 0, 1) != NEXOMAP_NOT_READY;
    ready += NexomapAnalyzePanoMatchParas(kA, kB) != NEXOMAP_NOT_READY;
    ready += NexomapRelocateAll() != NEXOMAP_NOT_READY;
    ready += NexomapDeletePanoMatch(kA, kB) != NEXOMAP_NOT_READY;
    ready += NexomapDrawPanoMatchPng(kA, kB) != NEXOMAP_NOT_READY;
    ready += NexomapAutoCreatePanoMatch() != NEXOMAP_NOT_READY;
    ready += NexomapGetPanoGroupNum() != NEXOMAP_NOT_READY;
    ready += NexomapGetPanoNodeNumInOneGroup(0) != NEXOMAP_NOT_READY;
    ready += NexomapMergePointCloud(0, 0, 1, 0, 0) != NEXOMAP_NOT_READY;
    ready += NexomapLoadPanoNode("x.pno", 0, 0, 0, 0, 0, 0, 0, 0, "") != NEXOMAP_NOT_READY;
    ready += NexomapLoadPanoMatch(kA, kB, 0, 0, 0, 0, 0, 2, 2, 2, 0, 1) != NEXOMAP_NOT_READY;
    return ready;
}
