// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/TourAssembly.h"

#include "linking/ImportPanoramas.h"
#include "linking/MatchFiles.h"
#include "linking/pictures/Thumbnail.h"
#include "linking/pno/PnoFile.h"
#include "project/LocalText.h"

#include <QImageReader>

namespace {

/// 0 x 0 for what does not load as a picture.
QSize sizeOfPicture(const QString& path)
{
    constexpr qint64 kMostPixels = qint64(1) << 28;
    QImageReader reader(path);
    const QSize size = reader.size();
    if (!size.isValid() || qint64(size.width()) * size.height() > kMostPixels) return QSize(0, 0);
    // Whether it loads shows in a small picture as well; a JPEG is decoded to it in a fraction of the time.
    reader.setScaledSize((size / 8).expandedTo(QSize(1, 1)));
    return reader.read().isNull() ? QSize(0, 0) : size;
}

} // namespace

TourAssembly::TourAssembly(RoamProject& project)
    : m_project(project)
    , m_file(std::make_unique<PnoFile>())
{}

TourAssembly::~TourAssembly() = default;

void TourAssembly::add(tourxml::Description description)
{
    // As on import, the first panorama decides for the whole tour.
    if (m_project.panoramas.empty() && !description.panoramas.empty())
        m_project.lidar = description.panoramas.front()->lidar;
    for (auto& node : description.panoramas) {
        m_project.panoramas.push_back(std::move(node));
        index(m_project.panoramas.back().get());
    }
    m_project.entry_index = m_rows.value(description.entry_id, 0);
    for (auto& link : description.links) {
        m_project.links.push_back(std::move(link));
        index(m_project.links.back().get());
    }
}

void TourAssembly::index(PanoNode* node)
{
    if (!m_rows.contains(node->id)) m_rows.insert(node->id, static_cast<int>(m_project.panoramas.size()) - 1);
    for (PhotoHotspot& photo : node->photos)
        m_photos[photo.photo_path].enqueue(&photo);
    if (!node->plan_src.isEmpty()) m_plans[node->plan_src].push_back(node);
}

void TourAssembly::index(PanoLink* link)
{
    m_matches[matchKey(QByteArray(link->name_0), QByteArray(link->name_1))].push_back(link);
}

void TourAssembly::addPanorama(const QString& name, const QString& path)
{
    if (m_file->Open(localtext::toLocal(path).constData()) != 0) return;
    const auto row = m_rows.constFind(m_file->panoId());
    if (row == m_rows.constEnd()) return;
    PanoNode& node = *m_project.panoramas[static_cast<std::size_t>(row.value())];
    node.parameters = m_file->imageInfo();
    node.base_name = panoBaseName(name);
    node.file_path = path;
    node.thumbnail = panoramaThumbnail(*m_file);
}

void TourAssembly::addMatchData(const QString& name, const QString& path)
{
    constexpr int kEndingLength = 6;
    const bool first = name.endsWith(QLatin1String("_0.dat"));
    if (!first && !name.endsWith(QLatin1String("_1.dat"))) return;
    const auto links = m_matches.constFind(name.chopped(kEndingLength));
    if (links == m_matches.constEnd()) return;
    for (PanoLink* link : links.value()) {
        (first ? link->match_path_0 : link->match_path_1) = path;
        if (link->mode == LinkByHand) link->mode = LinkMatched;
    }
}

void TourAssembly::addPhoto(const QString& name, const QString& path)
{
    const auto photos = m_photos.find(name);
    if (photos == m_photos.end() || photos->isEmpty()) return;
    PhotoHotspot& photo = *photos->dequeue();
    photo.photo_path = path;
    const QSize size = sizeOfPicture(path);
    photo.photo_width = size.width();
    photo.photo_height = size.height();
}

void TourAssembly::addPlan(const QString& name, const QString& path)
{
    m_project.has_plan_image = true;
    // Once tied, a panorama's plan is a full path, which no further record has as its name.
    for (PanoNode* node : m_plans.take(name))
        node->plan_src = path;
}

void TourAssembly::finish()
{
    if (!m_project.links.empty()) m_project.stage = Linked;
    for (const auto& node : m_project.panoramas) {
        if (!node->plan_src.contains(QLatin1Char('/'))) node->plan_src.clear();
        if (node->plan_src.endsWith(QLatin1String("00000000.png")) ||
            node->plan_src.endsWith(QLatin1String("00000000.cld")))
            m_project.stage = MapGenerated;
    }
}
