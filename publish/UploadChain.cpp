// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "publish/UploadChain.h"

#include "project/TourContainer.h"
#include "publish/FileLists.h"
#include "publish/UploadRequests.h"

#include <QFile>

namespace publish {

namespace {

constexpr int kHttpOk = 200;
constexpr int kLoginLines = 8;
constexpr int kAlbumIdLength = 14;

UploadAction tell(UploadNotice notice, const QString& detail = {})
{
    UploadAction action;
    action.notice = notice;
    action.detail = detail;
    return action;
}

UploadAction giveUp(UploadNotice notice = UploadNotice::None, const QString& detail = {})
{
    UploadAction action = tell(notice, detail);
    action.unlock = true;
    return action;
}

UploadAction complete()
{
    UploadAction action = giveUp(UploadNotice::Completed);
    action.close = true;
    return action;
}

UploadAction send(const UploadRequest& request)
{
    UploadAction action;
    action.request = request;
    return action;
}

UploadAction at(int progress, UploadAction action)
{
    action.progress = progress;
    return action;
}

bool granted(const QString& body)
{
    return body.startsWith(QLatin1String("OK"));
}

bool canBeRead(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly);
}

/// One reply, met at the point of the upload that the project's counters tell. Every index is checked before
/// it is used: replies of an upload begun twice, or of a tour emptied meanwhile, arrive out of turn.
class Chain
{
public:
    Chain(RoamProject& project, int entrySelector)
        : m_project(project)
        , m_entrySelector(entrySelector)
    {}

    UploadAction afterLogin(const QString& body);
    UploadAction afterListing(const QString& body);
    UploadAction afterPanorama(const QString& body);
    UploadAction afterAlbum(const QString& body);
    UploadAction afterLocation();
    UploadAction afterLinkTags();
    UploadAction afterLink();
    UploadAction afterModel();
    UploadAction afterPhoto();

private:
    int step() const { return static_cast<int>(m_project.upload_counters[UploadStep]); }
    void goTo(int step) { m_project.upload_counters[UploadStep] = static_cast<quint32>(step); }
    int panoramas() const { return static_cast<int>(m_project.panoramas.size()); }
    int links() const { return static_cast<int>(m_project.links.size()); }
    const QStringList& models() const { return m_project.cloud.model_files; }
    const QStringList& photos() const { return m_project.cloud.photo_files; }

    UploadAction list(bool pollAgain);
    UploadAction sendPanorama() const;
    UploadAction createAlbum();
    UploadAction sendLocation() const;
    UploadAction sendLinkTags() const;
    UploadAction sendLink() const;
    UploadAction sendModel() const;
    UploadAction sendPhoto() const;
    UploadAction sendPhotosOrComplete();

    RoamProject& m_project;
    const int m_entrySelector;
};

UploadAction Chain::afterLogin(const QString& body)
{
    if (granted(body)) {
        const QStringList lines = body.split(QLatin1String("\r\n"));
        if (lines.size() < kLoginLines) return tell(UploadNotice::LoginIncomplete);
        m_project.cloud.token = lines[1];
        if (panoramas() == 0) return {};
        goTo(0);
        UploadAction action = at(0, list(false));
        action.lock = true;
        return action;
    }
    if (!body.startsWith(QLatin1String("ER"))) return {};
    // Only one character is read, so that no well-formed reply calls the address wrong; kept as it is.
    const int tries = body.mid(3, 1).toInt();
    return tries > 10 ? tell(UploadNotice::WrongEmail)
                      : tell(UploadNotice::WrongPassword, QString::number(tries));
}

UploadAction Chain::list(bool pollAgain)
{
    m_project.upload_counters[UploadPollAgain] = pollAgain ? 1 : 0;
    return send(listRequest(m_project));
}

UploadAction Chain::afterListing(const QString& body)
{
    if (step() >= panoramas()) return {};
    if (body.contains(panoramaId(m_project, static_cast<std::size_t>(step())))) {
        goTo(step() + 1);
        return at(step() * 100 / (panoramas() + 1), step() < panoramas() ? list(false) : createAlbum());
    }
    if (m_project.upload_counters[UploadPollAgain] == 0) return sendPanorama();
    UploadAction action = list(true);
    action.wait_ms = kListingPause_ms;
    return action;
}

UploadAction Chain::sendPanorama() const
{
    const auto panorama = static_cast<std::size_t>(step());
    const QString& path = m_project.panoramas[panorama]->file_path;
    return canBeRead(path) ? send(panoramaRequest(m_project, panorama)) : unreadableFile(path);
}

UploadAction Chain::afterPanorama(const QString& body)
{
    // The service lists a panorama only once it has worked it up.
    if (granted(body)) return at((step() * 100 + 50) / (panoramas() + 1), list(true));
    if (body.startsWith(QLatin1String("ER 1"))) return giveUp(UploadNotice::StorageFull);
    return {};
}

UploadAction Chain::createAlbum()
{
    m_project.entry_index = qMax(0, m_entrySelector);
    return send(albumRequest(m_project));
}

UploadAction Chain::afterAlbum(const QString& body)
{
    const QStringList lines = body.split(QLatin1String("\r\n"));
    if (!granted(body) || lines.size() < 2 || lines[1].size() != kAlbumIdLength)
        return giveUp(UploadNotice::AlbumRefused);
    m_project.cloud.album_id = lines[1];
    goTo(0);
    return sendLocation();
}

UploadAction Chain::sendLocation() const
{
    if (step() >= panoramas()) return giveUp();
    return send(locationRequest(m_project, static_cast<std::size_t>(step())));
}

UploadAction Chain::afterLocation()
{
    goTo(step() + 1);
    if (step() < panoramas()) return sendLocation();
    goTo(0);
    return sendLinkTags();
}

UploadAction Chain::sendLinkTags() const
{
    if (step() >= panoramas()) return giveUp();
    return send(linkTagsRequest(m_project, static_cast<std::size_t>(step())));
}

UploadAction Chain::afterLinkTags()
{
    goTo(step() + 1);
    if (step() < panoramas()) return sendLinkTags();
    goTo(0);
    return sendLink();
}

// A tour without links ends here: no files are sent and completion is not told; kept as it is.
UploadAction Chain::sendLink() const
{
    if (step() >= links()) return giveUp();
    return send(linkRequest(m_project, static_cast<std::size_t>(step())));
}

UploadAction Chain::afterLink()
{
    goTo(step() + 1);
    if (step() < links()) return sendLink();
    goTo(0);
    return models().isEmpty() ? sendPhotosOrComplete() : sendModel();
}

UploadAction Chain::sendPhotosOrComplete()
{
    goTo(0);
    return photos().isEmpty() ? complete() : sendPhoto();
}

UploadAction Chain::sendModel() const
{
    if (step() >= models().size()) return giveUp();
    const QString& path = models()[step()];
    if (!canBeRead(path)) return unreadableFile(path);
    const QString name = tour::fileNameOf(path);
    return isModelName(name) ? send(modelRequest(m_project, path))
                             : giveUp(UploadNotice::WrongModelName, name);
}

UploadAction Chain::afterModel()
{
    goTo(step() + 1);
    const int files = qMax(1, models().size());
    const int progress = (step() * 50 / files + panoramas() * 100) / (panoramas() + 1);
    return at(progress, step() < models().size() ? sendModel() : sendPhotosOrComplete());
}

UploadAction Chain::sendPhoto() const
{
    if (step() >= photos().size()) return giveUp();
    const QString& path = photos()[step()];
    if (!canBeRead(path)) return unreadableFile(path);
    const QString name = tour::fileNameOf(path);
    return isPhotoName(name) ? send(photoRequest(m_project, path))
                             : giveUp(UploadNotice::WrongPhotoName, name);
}

UploadAction Chain::afterPhoto()
{
    goTo(step() + 1);
    const int files = qMax(1, photos().size());
    const int progress = (panoramas() * 100 + 50 + step() * 50 / files) / (panoramas() + 1);
    if (step() < photos().size()) return at(progress, sendPhoto());
    goTo(0);
    return at(progress, complete());
}

} // namespace

UploadRequest beginUpload(RoamProject& project, const UploadEntries& entries)
{
    project.cloud.album_name = entries.album_name;
    project.cloud.album_id.clear();
    project.cloud.model_files = modelFiles(project);
    project.cloud.photo_files = photoFiles(project);
    return loginRequest(entries.account, entries.password);
}

UploadAction continueUpload(RoamProject& project, const UploadReply& reply, int entrySelector)
{
    if (reply.status != kHttpOk) return giveUp(UploadNotice::AccessFailed, reply.error);
    const auto answers = [&](const char* word) { return reply.path.contains(QLatin1String(word)); };
    const QString body = QString::fromUtf8(reply.body);
    Chain chain(project, entrySelector);
    if (answers("login")) return chain.afterLogin(body);
    if (answers("upload") && !answers("upload_")) return chain.afterPanorama(body);
    if (answers("get_pano_list")) return chain.afterListing(body);
    if (answers("create_roaming_album")) return chain.afterAlbum(body);
    if (answers("set_albumpano_location")) return chain.afterLocation();
    if (answers("set_albumpano_linktags")) return chain.afterLinkTags();
    if (answers("add_panolink")) return chain.afterLink();
    if (answers("upload_linkmodel")) return chain.afterModel();
    if (answers("upload_linkphoto")) return chain.afterPhoto();
    return {};
}

UploadAction unreadableFile(const QString& path)
{
    return giveUp(UploadNotice::FileUnreadable, path);
}

} // namespace publish
