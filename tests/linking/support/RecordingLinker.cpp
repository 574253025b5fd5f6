// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/linking/support/RecordingLinker.h"

#include <algorithm>
#include <cstring>

namespace {

QString text(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes);
}

QString text(const char* name)
{
    return QString::fromLocal8Bit(name);
}

QString number(double value)
{
    return QString::number(value, 'g', 15);
}

QString call(const char* operation, const QStringList& arguments = {})
{
    return (QStringList{QString::fromLatin1(operation)} + arguments).join(QLatin1Char(' '));
}

bool joinsPair(const PanoMatchParas& match, const QByteArray& one, const QByteArray& other)
{
    const QByteArray name_0(match.name_0);
    const QByteArray name_1(match.name_1);
    return (name_0 == one && name_1 == other) || (name_0 == other && name_1 == one);
}

template <class Record>
void answer(const std::vector<Record>& script, int index, Record* paras)
{
    if (index >= 0 && index < static_cast<int>(script.size()))
        *paras = script[static_cast<std::size_t>(index)];
}

} // namespace

int RecordingLinker::record(const QString& call)
{
    calls << call;
    if (onCall) onCall(call);
    return status;
}

QStringList RecordingLinker::commands() const
{
    static const QStringList kQuestions{QStringLiteral("nodeCount"),       QStringLiteral("nodeParas"),
                                        QStringLiteral("nodeParasB"),      QStringLiteral("matchCount"),
                                        QStringLiteral("matchParas"),      QStringLiteral("groupCount"),
                                        QStringLiteral("nodeCountInGroup")};
    QStringList result;
    for (const QString& call : calls)
        if (!kQuestions.contains(call.section(QLatin1Char(' '), 0, 0))) result << call;
    return result;
}

int RecordingLinker::init(const QString& workingFolder)
{
    return record(call("init", {workingFolder}));
}

int RecordingLinker::clean()
{
    return record(call("clean"));
}

int RecordingLinker::reset()
{
    m_solved = false;
    return record(call("reset"));
}

int RecordingLinker::addNode(const QString& pnoPath)
{
    return record(call("addNode", {pnoPath}));
}

int RecordingLinker::finishAddNode()
{
    m_solved = true;
    return record(call("finishAddNode"));
}

int RecordingLinker::nodeCount()
{
    record(call("nodeCount"));
    return m_solved ? static_cast<int>(std::max(nodes.size(), nodesB.size())) : 0;
}

int RecordingLinker::nodeParas(int index, PanoNodeParas* paras)
{
    if (!leavesOutputsUntouched) answer(nodes, index, paras);
    return record(call("nodeParas", {QString::number(index)}));
}

int RecordingLinker::nodeParasB(int index, PanoNodeParasB* paras)
{
    if (!leavesOutputsUntouched) answer(nodesB, index, paras);
    return record(call("nodeParasB", {QString::number(index)}));
}

int RecordingLinker::matchCount()
{
    record(call("matchCount"));
    return m_solved ? static_cast<int>(matches.size()) : 0;
}

int RecordingLinker::matchParas(int index, PanoMatchParas* paras)
{
    if (!leavesOutputsUntouched) answer(matches, index, paras);
    return record(call("matchParas", {QString::number(index)}));
}

int RecordingLinker::addMatch(const QByteArray& name_0, const QByteArray& name_1)
{
    return record(call("addMatch", {text(name_0), text(name_1)}));
}

int RecordingLinker::addLinkPair(const QByteArray& name_0, const QByteArray& name_1, double x_0, double y_0,
                                 double x_1, double y_1)
{
    return record(call("addLinkPair",
                       {text(name_0), text(name_1), number(x_0), number(y_0), number(x_1), number(y_1)}));
}

int RecordingLinker::analyzeMatch(const QByteArray& name_0, const QByteArray& name_1)
{
    return record(call("analyzeMatch", {text(name_0), text(name_1)}));
}

int RecordingLinker::relocateAll()
{
    return record(call("relocateAll"));
}

int RecordingLinker::deleteMatch(const QByteArray& name_0, const QByteArray& name_1)
{
    matches.erase(std::remove_if(matches.begin(), matches.end(),
                                 [&](const auto& m) { return joinsPair(m, name_0, name_1); }),
                  matches.end());
    return record(call("deleteMatch", {text(name_0), text(name_1)}));
}

int RecordingLinker::drawMatchPng(const QByteArray& name_0, const QByteArray& name_1)
{
    return record(call("drawMatchPng", {text(name_0), text(name_1)}));
}

int RecordingLinker::autoCreateMatch()
{
    return record(call("autoCreateMatch"));
}

int RecordingLinker::groupCount()
{
    record(call("groupCount"));
    return static_cast<int>(groups.size());
}

int RecordingLinker::nodeCountInGroup(int group)
{
    record(call("nodeCountInGroup", {QString::number(group)}));
    return group >= 0 && group < static_cast<int>(groups.size()) ? groups[static_cast<std::size_t>(group)]
                                                                 : -1;
}

int RecordingLinker::mergePointCloud(int indoor, int outputs, int constant, int density, int cloudMap)
{
    return record(
        call("mergePointCloud", {QString::number(indoor), QString::number(outputs), QString::number(constant),
                                 QString::number(density), QString::number(cloudMap)}));
}

int RecordingLinker::loadNode(const QString& pnoPath, const PanoNodeParas& paras)
{
    m_solved = true;
    return record(call("loadNode", {pnoPath, number(paras.position_x), number(paras.position_y),
                                    number(paras.position_z), number(paras.vertex_x), number(paras.vertex_y),
                                    number(paras.direction), QString::number(paras.plan_center_x),
                                    QString::number(paras.plan_center_y), text(paras.plan_name)}));
}

int RecordingLinker::loadMatch(const PanoMatchParas& paras)
{
    return record(
        call("loadMatch", {text(paras.name_0), text(paras.name_1), number(paras.rot_0), number(paras.rot_1),
                           number(paras.tilt_x0), number(paras.tilt_x1), number(paras.tilt_y0),
                           number(paras.icon_y0), number(paras.icon_y1), number(paras.spacing),
                           QString::number(paras.mode), number(paras.reliability)}));
}

int RecordingLinker::decompressCloud(const QString& path)
{
    return record(call("decompressCloud", {path}));
}

int RecordingLinker::compressCloud(const QString& path)
{
    return record(call("compressCloud", {path}));
}

PanoNodeParas nodeAt(const char* name, double x, double y, double z)
{
    PanoNodeParas paras;
    qstrncpy(paras.name, name, sizeof paras.name);
    paras.position_x = paras.vertex_x = x;
    paras.position_y = paras.vertex_y = y;
    paras.position_z = z;
    return paras;
}

PanoMatchParas matchOf(const char* name_0, const char* name_1, int mode)
{
    PanoMatchParas paras;
    qstrncpy(paras.name_0, name_0, sizeof paras.name_0);
    qstrncpy(paras.name_1, name_1, sizeof paras.name_1);
    paras.mode = mode;
    return paras;
}
