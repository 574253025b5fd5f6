// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "publish/UploadRequests.h"

#include "project/TourContainer.h"
#include "project/TourXml.h"

namespace publish {

namespace {

constexpr int kIdentityLength = 14;
constexpr int kModelNameLength = 35;
constexpr int kPhotoNameLength = 27;

QPair<QString, QString> item(const char* name, const QString& value)
{
    return {QString(QLatin1String(name)), value};
}

QPair<QString, QString> item(const char* name, const char* value)
{
    return item(name, QString(QLatin1String(value)));
}

UploadRequest post(const RoamProject& project, const char* path, QList<QPair<QString, QString>> items)
{
    UploadRequest request;
    request.path = QLatin1String(path);
    request.query = QList<QPair<QString, QString>>{item("token", project.cloud.token)} + items;
    return request;
}

UploadRequest albumPart(const RoamProject& project, const char* path, std::size_t panorama,
                        const QString& fragment)
{
    UploadRequest request =
        post(project, path,
             {item("albumid", project.cloud.album_id), item("panoid", panoramaId(project, panorama))});
    request.body = fragment.toUtf8();
    return request;
}

} // namespace

QString panoramaId(const RoamProject& project, std::size_t panorama)
{
    return tourxml::identityText(project.panoramas[panorama]->parameters.identity);
}

UploadRequest loginRequest(const QString& account, const QString& password)
{
    UploadRequest request;
    request.method = UploadRequest::Method::Get;
    request.path = QStringLiteral("login");
    request.query = {item("email", account), item("password", password)};
    return request;
}

UploadRequest listRequest(const RoamProject& project)
{
    UploadRequest request = post(project, "get_pano_list", {});
    request.method = UploadRequest::Method::Get;
    return request;
}

UploadRequest panoramaRequest(const RoamProject& project, std::size_t panorama)
{
    UploadRequest request = post(project, "upload", {item("panoid", panoramaId(project, panorama))});
    request.body_file = project.panoramas[panorama]->file_path;
    return request;
}

UploadRequest albumRequest(const RoamProject& project)
{
    const auto entry = static_cast<std::size_t>(qMax(0, project.entry_index));
    QStringList ids;
    for (std::size_t panorama = 0; panorama < project.panoramas.size(); ++panorama)
        ids << panoramaId(project, panorama);
    UploadRequest request = post(
        project, "create_roaming_album",
        {item("albumnotes", project.cloud.album_name), item("albummode", "1"),
         item("entrypanoid", ids.value(entry < project.panoramas.size() ? static_cast<int>(entry) : 0)),
         item("direction", "0"), item("elevation", "1.5707963267949"), item("viewangle", "1.5707963267949")});
    request.body = ids.join(QLatin1String("\r\n")).toUtf8();
    return request;
}

UploadRequest locationRequest(const RoamProject& project, std::size_t panorama)
{
    return albumPart(project, "set_albumpano_location", panorama,
                     tourxml::location(*project.panoramas[panorama]));
}

UploadRequest linkTagsRequest(const RoamProject& project, std::size_t panorama)
{
    return albumPart(project, "set_albumpano_linktags", panorama,
                     tourxml::hotspotLines(*project.panoramas[panorama]));
}

UploadRequest linkRequest(const RoamProject& project, std::size_t link)
{
    const PanoLink& sent = *project.links[link];
    UploadRequest request =
        post(project, "add_panolink",
             {item("albumid", project.cloud.album_id), item("panoid0", tourxml::identityText(sent.name_0)),
              item("panoid1", tourxml::identityText(sent.name_1))});
    request.body = tourxml::panoLink(sent, tourxml::Reliability::LeftOut).toUtf8();
    return request;
}

bool isModelName(const QString& fileName)
{
    return fileName.size() == kModelNameLength;
}

bool isPhotoName(const QString& fileName)
{
    return fileName.size() == kPhotoNameLength;
}

UploadRequest modelRequest(const RoamProject& project, const QString& path)
{
    const QString name = tour::fileNameOf(path);
    UploadRequest request = post(project, "upload_linkmodel",
                                 {item("panoid0", name.left(kIdentityLength)),
                                  item("panoid1", name.mid(kIdentityLength + 1, kIdentityLength)),
                                  item("levelSel", name.mid(2 * kIdentityLength + 2, 1))});
    request.body_file = path;
    return request;
}

UploadRequest photoRequest(const RoamProject& project, const QString& path)
{
    const QString name = tour::fileNameOf(path);
    UploadRequest request = post(project, "upload_linkphoto",
                                 {item("panoid", name.left(kIdentityLength)), item("photoname", name)});
    request.body_file = path;
    return request;
}

} // namespace publish
