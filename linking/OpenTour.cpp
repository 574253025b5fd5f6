// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/OpenTour.h"

#include "linking/TourAssembly.h"
#include "project/LocalText.h"
#include "project/TourReader.h"
#include "project/UnpackFolder.h"
#include "project/XmlElement.h"

#include <QCoreApplication>

#include <cstring>

namespace {

QString say(const char* text)
{
    return QCoreApplication::translate("OpenTour", text);
}

void showPlan(const QString& path, Linker& linker, const PlanViews& views)
{
    if (path.endsWith(QLatin1String(".png"))) {
        if (views.showPicture) views.showPicture(path);
    } else if (path.endsWith(QLatin1String(".cld"))) {
        linker.decompressCloud(path);
        if (views.showCloud) views.showCloud(path);
    }
}

/// @return why the description cannot be used, or empty
QString readDescription(TourReader& tour, TourAssembly& assembly)
{
    tourxml::Description description;
    QString error;
    // One byte more than is accepted, so that a longer one is refused as such.
    if (!tourxml::read(tour.data(XmlElement::kLongest + 1), &description, &error)) return error;
    assembly.add(std::move(description));
    return QString();
}

OpenResult readRecords(RoamProject& project, Linker& linker, const QString& path, const PlanViews& views)
{
    TourReader tour(path);
    switch (tour.start()) {
    case TourReader::Start::Records:
        break;
    case TourReader::Start::Empty:
        return {OpenOutcome::Empty, path, QString()};
    case TourReader::Start::CannotOpen:
        return {OpenOutcome::Failed, path, tour.error()};
    case TourReader::Start::NotATour:
        return {OpenOutcome::Failed, path, say(QT_TRANSLATE_NOOP("OpenTour", "it is not a tour file"))};
    }

    UnpackFolder folder(project.folders.working, path);
    TourAssembly assembly(project);
    TourReader::Step step = tour.next();
    for (; step == TourReader::Step::Record; step = tour.next()) {
        if (tour.kind() == tour::KindXml) {
            const QString problem = readDescription(tour, assembly);
            if (!problem.isEmpty()) return {OpenOutcome::Failed, path, problem};
            continue;
        }
        QString unpacked, error;
        if (!folder.unpack(tour, &unpacked, &error)) return {OpenOutcome::Failed, unpacked, error};
        if (tour.kind() == tour::KindPanorama) assembly.addPanorama(tour.name(), unpacked);
        if (tour.kind() == tour::KindMatchData) assembly.addMatchData(tour.name(), unpacked);
        if (tour.kind() == tour::KindPhoto) assembly.addPhoto(tour.name(), unpacked);
        if (tour.kind() == tour::KindPlan) {
            assembly.addPlan(tour.name(), unpacked);
            showPlan(unpacked, linker, views);
        }
    }
    if (step == TourReader::Step::CutShort)
        return {OpenOutcome::Failed, path, say(QT_TRANSLATE_NOOP("OpenTour", "it is cut short"))};
    assembly.finish();
    return {};
}

PanoNodeParas parasOf(const PanoNode& node)
{
    PanoNodeParas paras;
    qstrncpy(paras.name, node.name().constData(), sizeof paras.name);
    paras.position_x = node.position_x;
    paras.position_y = node.position_y;
    paras.position_z = node.position_z;
    paras.vertex_x = node.vertex_x;
    paras.vertex_y = node.vertex_y;
    paras.direction = node.direction;
    paras.plan_center_x = node.plan_center_x;
    paras.plan_center_y = node.plan_center_y;
    qstrncpy(paras.plan_name, localtext::toLocal(tour::fileNameOf(node.plan_src)).constData(),
             sizeof paras.plan_name);
    return paras;
}

PanoMatchParas parasOf(const PanoLink& link)
{
    PanoMatchParas paras;
    std::memcpy(paras.name_0, link.name_0, sizeof paras.name_0);
    std::memcpy(paras.name_1, link.name_1, sizeof paras.name_1);
    paras.rot_0 = link.rot_0;
    paras.rot_1 = link.rot_1;
    paras.tilt_x0 = link.tilt_x0;
    paras.tilt_x1 = link.tilt_x1;
    paras.tilt_y0 = link.tilt_y0;
    paras.icon_y0 = link.icon_y0;
    paras.icon_y1 = link.icon_y1;
    paras.spacing = link.spacing;
    paras.mode = link.mode;
    paras.reliability = link.reliability;
    return paras;
}

} // namespace

OpenResult openTour(RoamProject& project, Linker& linker, const QString& path, const PlanViews& views)
{
    OpenResult result = readRecords(project, linker, path, views);
    if (!result) return result;
    for (const auto& node : project.panoramas)
        linker.loadNode(node->file_path, parasOf(*node));
    for (const auto& link : project.links)
        linker.loadMatch(parasOf(*link));
    result.path = path;
    return result;
}
