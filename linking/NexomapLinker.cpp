// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/NexomapLinker.h"

#include "linking/NexomapFunctions.h"
#include "project/LocalText.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLibrary>

namespace {

constexpr int kMissing = -1;

/// A library that fills a text to its last byte must not make us read behind it.
template <std::size_t size>
void terminate(char (&text)[size])
{
    text[size - 1] = '\0';
}

} // namespace

struct NexomapLinker::Functions : NexomapFunctions
{};

NexomapLinker::NexomapLinker(const QString& folder)
{
    const QString path = folder + libraryFileName();
    if (!QFileInfo::exists(path)) {
        m_problem =
            QCoreApplication::translate("NexomapLinker", "The linking library %1 is missing.").arg(path);
        return;
    }
    QLibrary library(path);
    if (!library.load()) {
        m_problem = QCoreApplication::translate("NexomapLinker", "The linking library cannot be loaded: %1.")
                        .arg(library.errorString());
        return;
    }
    auto functions = std::make_unique<Functions>();
    const QStringList missing = functions->resolve(library);
    if (missing.isEmpty())
        m_functions = std::move(functions);
    else
        m_problem = QCoreApplication::translate("NexomapLinker", "The linking library %1 lacks %2.")
                        .arg(path, missing.join(QStringLiteral(", ")));
}

// The library stays loaded: it may own threads that outlast any moment at which we could unload it.
NexomapLinker::~NexomapLinker() = default;

bool NexomapLinker::available() const
{
    return m_functions != nullptr;
}

QString NexomapLinker::libraryFileName()
{
#if defined(Q_OS_WIN)
    return QStringLiteral("NexomapLib.dll");
#elif defined(Q_OS_MACOS)
    return QStringLiteral("libNexomapLib.dylib");
#else
    return QStringLiteral("libNexomapLib.so");
#endif
}

int NexomapLinker::init(const QString& workingFolder)
{
    return m_functions ? m_functions->init(localtext::toLocal(workingFolder).constData(), 0) : kMissing;
}

int NexomapLinker::clean()
{
    return m_functions ? m_functions->clean() : kMissing;
}

int NexomapLinker::reset()
{
    return m_functions ? m_functions->reset() : kMissing;
}

int NexomapLinker::addNode(const QString& pnoPath)
{
    return m_functions ? m_functions->addNode(localtext::toLocal(pnoPath).constData()) : kMissing;
}

int NexomapLinker::finishAddNode()
{
    return m_functions ? m_functions->finishAddNode() : kMissing;
}

int NexomapLinker::nodeCount()
{
    return m_functions ? m_functions->nodeCount() : 0;
}

int NexomapLinker::nodeParas(int index, PanoNodeParas* paras)
{
    if (!m_functions) return kMissing;
    const int status =
        m_functions->nodeParas(paras->name, &paras->position_x, &paras->position_y, &paras->position_z,
                               &paras->vertex_x, &paras->vertex_y, &paras->direction, &paras->plan_center_x,
                               &paras->plan_center_y, paras->plan_name, index);
    terminate(paras->name);
    terminate(paras->plan_name);
    return status;
}

int NexomapLinker::nodeParasB(int index, PanoNodeParasB* paras)
{
    if (!m_functions) return kMissing;
    const int status = m_functions->nodeParasB(paras->name, &paras->position_x, &paras->position_y,
                                               &paras->position_z, paras->rotation, &paras->plan_center_x,
                                               &paras->plan_center_y, paras->plan_name, index);
    terminate(paras->name);
    terminate(paras->plan_name);
    return status;
}

int NexomapLinker::matchCount()
{
    return m_functions ? m_functions->matchCount() : 0;
}

int NexomapLinker::matchParas(int index, PanoMatchParas* paras)
{
    if (!m_functions) return kMissing;
    const int status =
        m_functions->matchParas(paras->name_0, paras->name_1, &paras->rot_0, &paras->rot_1, &paras->tilt_x0,
                                &paras->tilt_x1, &paras->tilt_y0, &paras->icon_y0, &paras->icon_y1,
                                &paras->spacing, &paras->mode, &paras->reliability, index);
    terminate(paras->name_0);
    terminate(paras->name_1);
    return status;
}

int NexomapLinker::addMatch(const QByteArray& name_0, const QByteArray& name_1)
{
    return m_functions ? m_functions->addMatch(name_0.constData(), name_1.constData()) : kMissing;
}

int NexomapLinker::addLinkPair(const QByteArray& name_0, const QByteArray& name_1, double x_0, double y_0,
                               double x_1, double y_1)
{
    if (!m_functions) return kMissing;
    return m_functions->addLinkPair(name_0.constData(), name_1.constData(), x_0, y_0, x_1, y_1);
}

int NexomapLinker::analyzeMatch(const QByteArray& name_0, const QByteArray& name_1)
{
    return m_functions ? m_functions->analyzeMatch(name_0.constData(), name_1.constData()) : kMissing;
}

int NexomapLinker::relocateAll()
{
    return m_functions ? m_functions->relocateAll() : kMissing;
}

int NexomapLinker::deleteMatch(const QByteArray& name_0, const QByteArray& name_1)
{
    return m_functions ? m_functions->deleteMatch(name_0.constData(), name_1.constData()) : kMissing;
}

int NexomapLinker::drawMatchPng(const QByteArray& name_0, const QByteArray& name_1)
{
    return m_functions ? m_functions->drawMatchPng(name_0.constData(), name_1.constData()) : kMissing;
}

int NexomapLinker::autoCreateMatch()
{
    return m_functions ? m_functions->autoCreateMatch() : kMissing;
}

int NexomapLinker::groupCount()
{
    return m_functions ? m_functions->groupCount() : 0;
}

int NexomapLinker::nodeCountInGroup(int group)
{
    return m_functions ? m_functions->nodeCountInGroup(group) : 0;
}

int NexomapLinker::mergePointCloud(int indoor, int outputs, int constant, int density, int cloudMap)
{
    return m_functions ? m_functions->mergePointCloud(indoor, outputs, constant, density, cloudMap)
                       : kMissing;
}

int NexomapLinker::loadNode(const QString& pnoPath, const PanoNodeParas& paras)
{
    if (!m_functions) return kMissing;
    return m_functions->loadNode(localtext::toLocal(pnoPath).constData(), paras.position_x, paras.position_y,
                                 paras.position_z, paras.vertex_x, paras.vertex_y, paras.direction,
                                 paras.plan_center_x, paras.plan_center_y, paras.plan_name);
}

int NexomapLinker::loadMatch(const PanoMatchParas& paras)
{
    if (!m_functions) return kMissing;
    return m_functions->loadMatch(paras.name_0, paras.name_1, paras.rot_0, paras.rot_1, paras.tilt_x0,
                                  paras.tilt_x1, paras.tilt_y0, paras.icon_y0, paras.icon_y1, paras.spacing,
                                  paras.mode, paras.reliability);
}

int NexomapLinker::decompressCloud(const QString& path)
{
    return m_functions ? m_functions->decompressCloud(localtext::toLocal(path).constData()) : kMissing;
}

int NexomapLinker::compressCloud(const QString& path)
{
    return m_functions ? m_functions->compressCloud(localtext::toLocal(path).constData()) : kMissing;
}
