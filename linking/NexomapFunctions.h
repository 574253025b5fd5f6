// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The linking library's functions as pointers, with the signatures of its own header.

#pragma once

#include "nexomap/include/NexomapLib.h"

#include <QLibrary>
#include <QStringList>

/// Nothing here links against the library: the header gives the types, `resolve` the addresses.
struct NexomapFunctions
{
    decltype(&NexomapInit) init = nullptr;
    decltype(&NexomapClean) clean = nullptr;
    decltype(&NexomapReset) reset = nullptr;
    decltype(&NexomapAddNode) addNode = nullptr;
    decltype(&NexomapFinishAddNode) finishAddNode = nullptr;
    decltype(&NexomapGetPanoNodeNum) nodeCount = nullptr;
    decltype(&NexomapGetPanoNodeParas) nodeParas = nullptr;
    decltype(&NexomapGetPanoNodeParasB) nodeParasB = nullptr;
    decltype(&NexomapGetPanoMatchNum) matchCount = nullptr;
    decltype(&NexomapGetPanoMatchParas) matchParas = nullptr;
    decltype(&NexomapAddPanoMatch) addMatch = nullptr;
    decltype(&NexomapAddPanoLinkPair) addLinkPair = nullptr;
    decltype(&NexomapAnalyzePanoMatchParas) analyzeMatch = nullptr;
    decltype(&NexomapRelocateAll) relocateAll = nullptr;
    decltype(&NexomapDeletePanoMatch) deleteMatch = nullptr;
    decltype(&NexomapDrawPanoMatchPng) drawMatchPng = nullptr;
    decltype(&NexomapAutoCreatePanoMatch) autoCreateMatch = nullptr;
    decltype(&NexomapGetPanoGroupNum) groupCount = nullptr;
    decltype(&NexomapGetPanoNodeNumInOneGroup) nodeCountInGroup = nullptr;
    decltype(&NexomapMergePointCloud) mergePointCloud = nullptr;
    decltype(&NexomapLoadPanoNode) loadNode = nullptr;
    decltype(&NexomapLoadPanoMatch) loadMatch = nullptr;
    decltype(&NexomapDecompressPointCloudFile) decompressCloud = nullptr;
    decltype(&NexomapCompressPointCloudFile) compressCloud = nullptr;

    /// Looks up every function; the names of those that are missing.
    QStringList resolve(QLibrary& library)
    {
        QStringList missing;
        const auto bind = [&](auto& function, const char* name) {
            function = reinterpret_cast<std::decay_t<decltype(function)>>(library.resolve(name));
            if (!function) missing << QLatin1String(name);
        };
        bind(init, "NexomapInit");
        bind(clean, "NexomapClean");
        bind(reset, "NexomapReset");
        bind(addNode, "NexomapAddNode");
        bind(finishAddNode, "NexomapFinishAddNode");
        bind(nodeCount, "NexomapGetPanoNodeNum");
        bind(nodeParas, "NexomapGetPanoNodeParas");
        bind(nodeParasB, "NexomapGetPanoNodeParasB");
        bind(matchCount, "NexomapGetPanoMatchNum");
        bind(matchParas, "NexomapGetPanoMatchParas");
        bind(addMatch, "NexomapAddPanoMatch");
        bind(addLinkPair, "NexomapAddPanoLinkPair");
        bind(analyzeMatch, "NexomapAnalyzePanoMatchParas");
        bind(relocateAll, "NexomapRelocateAll");
        bind(deleteMatch, "NexomapDeletePanoMatch");
        bind(drawMatchPng, "NexomapDrawPanoMatchPng");
        bind(autoCreateMatch, "NexomapAutoCreatePanoMatch");
        bind(groupCount, "NexomapGetPanoGroupNum");
        bind(nodeCountInGroup, "NexomapGetPanoNodeNumInOneGroup");
        bind(mergePointCloud, "NexomapMergePointCloud");
        bind(loadNode, "NexomapLoadPanoNode");
        bind(loadMatch, "NexomapLoadPanoMatch");
        bind(decompressCloud, "NexomapDecompressPointCloudFile");
        bind(compressCloud, "NexomapCompressPointCloudFile");
        return missing;
    }
};
