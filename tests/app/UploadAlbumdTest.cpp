// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Panoramas of the sample building, uploaded to a real album service: from the dialog and from the batch
// program.

#include "tests/app/support/UploadTest.h"
#include "tests/support/AlbumService.h"

#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QUrlQuery>

#include <algorithm>

namespace {

const QString kAccount = QLatin1String(albumtest::kAccount);
const QString kPassword = QLatin1String(albumtest::kPassword);

class UploadToAlbumd : public UploadTest
{
protected:
    UploadToAlbumd()
    {
        if (albumd.baseUrl().isEmpty()) qFatal("albumd does not start");
        useService(albumd.baseUrl());
    }

    /// The sample building's first two panoramas, linked, with match data, a photo, a text and a plan.
    void makeTour()
    {
        QProcess scene;
        scene.start(QStringLiteral(TW_PROGRAMS "/samplescene"),
                    QStringLiteral("--count 2 --no-lidar --width 1024 --out").split(QLatin1Char(' ')) +
                        QStringList{inFolder(QStringLiteral("scene"))});
        ASSERT_TRUE(scene.waitForFinished(120000));
        ASSERT_EQ(scene.exitCode(), 0) << scene.readAllStandardError().toStdString();
        import(
            {inFolder(QStringLiteral("scene/pano-01.pno")), inFolder(QStringLiteral("scene/pano-02.pno"))});
        ASSERT_EQ(project().panoramas.size(), 2u);

        const QString pair = std::min(id(0), id(1)) + QLatin1Char('_') + std::max(id(0), id(1));
        linker->matches = {matchOf(id(0).toLatin1().constData(), id(1).toLatin1().constData())};
        writeFile(inWorkingFolder(pair + QStringLiteral("_0.dat")), "match data, level 0");
        writeFile(inWorkingFolder(pair + QStringLiteral("_1.dat")), "match data, level 1");
        click("buttonAutoGenLink");
        ASSERT_EQ(project().links.size(), 1u);

        PhotoHotspot photo;
        photo.caption = QStringLiteral("图 1");
        photo.photo_path = inWorkingFolder(id(0) + QStringLiteral("-00000001.jpg"));
        QImage(40, 30, QImage::Format_RGB888).save(photo.photo_path);
        project().panoramas[0]->photos << photo;
        InfoHotspot info;
        info.caption = QStringLiteral("Text");
        info.content = QStringLiteral("a<b & c");
        project().panoramas[1]->infos << info;
    }

    QString id(int panorama)
    {
        return QString::fromLatin1(project().panoramas[static_cast<std::size_t>(panorama)]->name());
    }

    QByteArray get(const QString& target)
    {
        QNetworkAccessManager network;
        QEventLoop loop;
        QNetworkReply* reply = network.get(QNetworkRequest(QUrl(albumd.baseUrl() + target)));
        QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
        return reply->readAll();
    }

    /// What the service lists for the account.
    QByteArray listed()
    {
        const QString password = QString::fromLatin1(QUrl::toPercentEncoding(kPassword));
        const QByteArray login = get(QStringLiteral("login?email=%1&password=").arg(kAccount) + password);
        const QByteArray token = login.split('\n').value(1).trimmed();
        return get(QStringLiteral("get_pano_list?token=") + QString::fromLatin1(token));
    }

    void expectAllListed()
    {
        const QByteArray list = listed();
        for (int panorama = 0; panorama < 2; ++panorama)
            EXPECT_TRUE(list.contains(id(panorama).toLatin1())) << list.toStdString();
    }

    /// The album as its page gets it.
    QJsonObject tourOf(const QString& album)
    {
        return QJsonDocument::fromJson(get(QStringLiteral("album/%1/tour").arg(album))).object();
    }

    albumtest::AlbumService albumd{QStringLiteral(TW_PROGRAMS "/albumd")};
};

TEST_F(UploadToAlbumd, FromTheDialogToTheListedAlbum)
{
    makeTour();
    openDialog();
    fillIn(kAccount, kPassword, QStringLiteral("样板间"));
    clickInDialog("buttonUpload");
    expectBox(waitForBox(150000), QMessageBox::Information, QStringLiteral("Upload File"),
              QStringLiteral("Uploading completed!"));
    EXPECT_EQ(state(), kClosed);
    expectAllListed();

    const QString album = project().cloud.album_id;
    EXPECT_EQ(album.size(), 14);
    EXPECT_EQ(tourOf(album)[QStringLiteral("panoramas")].toArray().size(), 2);
    ASSERT_EQ(albumd.run({QStringLiteral("list-albums")}), 0);
    const QByteArray albums = albumd.output();
    EXPECT_TRUE(albums.contains(album.toUtf8())) << albums.toStdString();
    EXPECT_TRUE(albums.contains("样板间")) << albums.toStdString();
    EXPECT_FALSE(albums.contains(albumtest::kPassword));
}

TEST_F(UploadToAlbumd, AgainNothingIsSentThatIsThereAndAnotherAlbumIsMade)
{
    importRooms(2);
    addLink();
    openDialog();
    fillIn(kAccount, kPassword, QStringLiteral("first"));
    clickInDialog("buttonUpload");
    waitForBox(150000);
    const QString first = project().cloud.album_id;
    const int before = replies->count();
    robot->boxes.clear();
    openDialog();
    type("lineAlbumName", QStringLiteral("second"));
    clickInDialog("buttonUpload");
    EXPECT_EQ(waitForBox(150000).text, QStringLiteral("Uploading completed!"));
    EXPECT_NE(project().cloud.album_id, first);
    // Login, two lists, the album, twice two for the panoramas, a link, two of match data.
    EXPECT_EQ(replies->count() - before, 11);
}

TEST_F(UploadToAlbumd, AWrongPassword)
{
    importRooms(1);
    openDialog();
    fillIn(kAccount, QStringLiteral("wrong123"), QStringLiteral("album"));
    clickInDialog("buttonUpload");
    const SeenBox box = waitForBox();
    EXPECT_TRUE(box.text.startsWith(QLatin1String("Incorrect password! You can retry ")))
        << box.text.toStdString();
    EXPECT_EQ(state(), kReady);
}

TEST_F(UploadToAlbumd, BatchProgramFromTheSavedTour)
{
    makeTour();
    const QString tour = inFolder(QStringLiteral("样板 tour.roa"));
    robot->choose(tour);
    choose("menuFile", "actionSaveAs");
    QProcess batch;
    batch.start(QStringLiteral(TW_PROGRAMS "/tourwright-batch"),
                {QStringLiteral("upload"), tour, QStringLiteral("--work"), inFolder(QStringLiteral("batch")),
                 QStringLiteral("--url"), albumd.baseUrl(), QStringLiteral("--account"), kAccount,
                 QStringLiteral("--album"), QStringLiteral("样板间")});
    ASSERT_TRUE(batch.waitForStarted());
    batch.write(kPassword.toUtf8() + "\n");
    batch.closeWriteChannel();
    ASSERT_TRUE(batch.waitForFinished(150000));
    const QByteArray errors = batch.readAllStandardError();
    EXPECT_EQ(batch.exitCode(), 0) << errors.toStdString();
    EXPECT_EQ(errors, QByteArray());
    const QByteArray words = batch.readAllStandardOutput();
    ASSERT_TRUE(words.startsWith("album ")) << words.toStdString();
    expectAllListed();
    EXPECT_EQ(
        tourOf(QString::fromLatin1(words.mid(6).trimmed()))[QStringLiteral("panoramas")].toArray().size(), 2);
}

} // namespace
