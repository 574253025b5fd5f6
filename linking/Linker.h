// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

/// What the library says of one panorama. The presets stay where the library leaves an output untouched.
struct PanoNodeParas
{
    char name[16] = {};
    double position_x = 0.0, position_y = 0.0, position_z = 0.0;
    double vertex_x = 0.0, vertex_y = 0.0;
    double direction = 0.0;
    int plan_center_x = -1, plan_center_y = -1;
    char plan_name[256] = {};
};

/// The same with the full rotation, row by row, for the pose table.
struct PanoNodeParasB
{
    char name[16] = {};
    double position_x = 0.0, position_y = 0.0, position_z = 0.0;
    double rotation[9] = {};
    int plan_center_x = -1, plan_center_y = -1;
    char plan_name[256] = {};
};

/// What the library says of one link, and takes back; meanings stand with `PanoLink`.
struct PanoMatchParas
{
    char name_0[16] = {};
    char name_1[16] = {};
    double rot_0 = 0.0, rot_1 = 0.0;
    double tilt_x0 = 0.0, tilt_x1 = 0.0, tilt_y0 = 0.0;
    double icon_y0 = 2.356194490192345, icon_y1 = 2.356194490192345;
    double spacing = 2.0;
    int mode = 0;
    double reliability = 0.0;
};

/// The linking library as the program sees it: its 24 operations, and nobody else calls it. Names are
/// identity texts; paths are the toolkit's and are converted to the local encoding here. Operations return 0
/// or a negative status, counts the count (0 when the library is missing).
class Linker
{
public:
    virtual ~Linker() = default;

    virtual int init(const QString& workingFolder) = 0;
    virtual int clean() = 0;
    virtual int reset() = 0;
    virtual int addNode(const QString& pnoPath) = 0;
    virtual int finishAddNode() = 0;
    virtual int nodeCount() = 0;
    virtual int nodeParas(int index, PanoNodeParas* paras) = 0;
    virtual int nodeParasB(int index, PanoNodeParasB* paras) = 0;
    virtual int matchCount() = 0;
    virtual int matchParas(int index, PanoMatchParas* paras) = 0;
    virtual int addMatch(const QByteArray& name_0, const QByteArray& name_1) = 0;
    virtual int addLinkPair(const QByteArray& name_0, const QByteArray& name_1, double x_0, double y_0,
                            double x_1, double y_1) = 0;
    virtual int analyzeMatch(const QByteArray& name_0, const QByteArray& name_1) = 0;
    virtual int relocateAll() = 0;
    virtual int deleteMatch(const QByteArray& name_0, const QByteArray& name_1) = 0;
    virtual int drawMatchPng(const QByteArray& name_0, const QByteArray& name_1) = 0;
    virtual int autoCreateMatch() = 0;
    virtual int groupCount() = 0;
    virtual int nodeCountInGroup(int group) = 0;
    virtual int mergePointCloud(int indoor, int outputs, int constant, int density, int cloudMap) = 0;
    virtual int loadNode(const QString& pnoPath, const PanoNodeParas& paras) = 0;
    virtual int loadMatch(const PanoMatchParas& paras) = 0;
    virtual int decompressCloud(const QString& path) = 0;
    virtual int compressCloud(const QString& path) = 0;
};
