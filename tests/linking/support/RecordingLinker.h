// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A linking library for tests: records every call and gives the results that the test put in.

#pragma once

#include "linking/Linker.h"

#include <QStringList>

#include <functional>
#include <vector>

/// Records calls as text, the operation's name and its arguments separated by blanks: "addNode /tmp/a.pno",
/// "addLinkPair AAAAAAAAAAAAAA BBBBBBBBBBBBBB 0.5 1 -2 1.25", "reset". Counts and read-outs are recorded too.
///
/// The scripted nodes and matches are told from `finishAddNode` or the first `loadNode` on, until `reset`.
/// `deleteMatch` takes the match of the unordered pair out of the script.
class RecordingLinker : public Linker
{
public:
    QStringList calls;

    std::vector<PanoNodeParas> nodes;
    std::vector<PanoNodeParasB> nodesB;
    std::vector<PanoMatchParas> matches;
    std::vector<int> groups;             ///< panoramas in each group
    bool leavesOutputsUntouched = false; ///< read-outs write nothing, so that the caller's presets stay
    int status = 0;                      ///< what every operation but the counts returns

    /// Called within each call after it was recorded, for example to write the files that a library would
    /// write or to change the script.
    std::function<void(const QString& call)> onCall;

    /// The recorded calls without counts and read-outs.
    QStringList commands() const;

    int init(const QString& workingFolder) override;
    int clean() override;
    int reset() override;
    int addNode(const QString& pnoPath) override;
    int finishAddNode() override;
    int nodeCount() override;
    int nodeParas(int index, PanoNodeParas* paras) override;
    int nodeParasB(int index, PanoNodeParasB* paras) override;
    int matchCount() override;
    int matchParas(int index, PanoMatchParas* paras) override;
    int addMatch(const QByteArray& name_0, const QByteArray& name_1) override;
    int addLinkPair(const QByteArray& name_0, const QByteArray& name_1, double x_0, double y_0, double x_1,
                    double y_1) override;
    int analyzeMatch(const QByteArray& name_0, const QByteArray& name_1) override;
    int relocateAll() override;
    int deleteMatch(const QByteArray& name_0, const QByteArray& name_1) override;
    int drawMatchPng(const QByteArray& name_0, const QByteArray& name_1) override;
    int autoCreateMatch() override;
    int groupCount() override;
    int nodeCountInGroup(int group) override;
    int mergePointCloud(int indoor, int outputs, int constant, int density, int cloudMap) override;
    int loadNode(const QString& pnoPath, const PanoNodeParas& paras) override;
    int loadMatch(const PanoMatchParas& paras) override;
    int decompressCloud(const QString& path) override;
    int compressCloud(const QString& path) override;

private:
    int record(const QString& call);

    bool m_solved = false;
};

/// Scripts in one line; the name is an identity text.
PanoNodeParas nodeAt(const char* name, double x, double y, double z);
PanoMatchParas matchOf(const char* name_0, const char* name_1, int mode = 0);
