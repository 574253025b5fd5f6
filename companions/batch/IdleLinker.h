// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A linking library that does nothing, for commands that need the tour's files only.

#pragma once

#include "linking/Linker.h"

class IdleLinker : public Linker
{
public:
    int init(const QString&) override { return 0; }
    int clean() override { return 0; }
    int reset() override { return 0; }
    int addNode(const QString&) override { return 0; }
    int finishAddNode() override { return 0; }
    int nodeCount() override { return 0; }
    int nodeParas(int, PanoNodeParas*) override { return 0; }
    int nodeParasB(int, PanoNodeParasB*) override { return 0; }
    int matchCount() override { return 0; }
    int matchParas(int, PanoMatchParas*) override { return 0; }
    int addMatch(const QByteArray&, const QByteArray&) override { return 0; }
    int addLinkPair(const QByteArray&, const QByteArray&, double, double, double, double) override
    {
        return 0;
    }
    int analyzeMatch(const QByteArray&, const QByteArray&) override { return 0; }
    int relocateAll() override { return 0; }
    int deleteMatch(const QByteArray&, const QByteArray&) override { return 0; }
    int drawMatchPng(const QByteArray&, const QByteArray&) override { return 0; }
    int autoCreateMatch() override { return 0; }
    int groupCount() override { return 0; }
    int nodeCountInGroup(int) override { return 0; }
    int mergePointCloud(int, int, int, int, int) override { return 0; }
    int loadNode(const QString&, const PanoNodeParas&) override { return 0; }
    int loadMatch(const PanoMatchParas&) override { return 0; }
    int decompressCloud(const QString&) override { return 0; }
    int compressCloud(const QString&) override { return 0; }
};
