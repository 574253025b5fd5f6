// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The linking library, bound at run time from beside the program.

#pragma once

#include "linking/Linker.h"

#include <memory>

/// Binds the 24 functions once. Where the library or one of its functions is missing, nothing is bound: every
/// operation returns -1 and every count 0, so that the program runs on without linking.
class NexomapLinker : public Linker
{
public:
    /// @param folder  where the library lies, ends in "/"; usually the application folder
    explicit NexomapLinker(const QString& folder);
    ~NexomapLinker() override;

    bool available() const;

    /// One sentence for the user saying which library or function is missing; empty when all is bound.
    QString problem() const { return m_problem; }

    /// The library's file name on this system.
    static QString libraryFileName();

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
    struct Functions;

    std::unique_ptr<const Functions> m_functions; ///< null when the library or a function is missing
    QString m_problem;
};
