// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A whole upload from the dialog: which requests, in which order, byte by byte.

#include "tests/app/support/UploadTest.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QTest>

namespace {

class UploadBytes : public UploadTest
{
protected:
    /// Two panoramas, one link, hotspots of both kinds, awkward captions.
    void makeTour()
    {
        importRooms(2);
        addLink();
        addPhoto(0, 0, QByteArray("photo \0\xFF zero", 13));
        addPhoto(1, 7, "photo seven");

        PanoNode& first = *project().panoramas[0];
        first.position_x = 1.5;
        first.position_y = -2.25;
        first.position_z = 0.00000004;
        first.vertex_x = 1.5;
        first.vertex_y = -2.25;
        first.direction = 3.14159265358979;
        first.plan_center_x = 640;
        first.plan_center_y = -3;
        first.plan_src = writeFile(inWorkingFolder(QStringLiteral("AAAAAAAAAAAAAA-00000000.png")), "plan");
        PanoNode& second = *project().panoramas[1];
        second.position_x = 1e9;
        second.plan_src = first.plan_src;

        PhotoHotspot& photo = first.photos[0];
        photo.sphere_x = -1.0;
        photo.sphere_y = 2.0;
        photo.caption = QStringLiteral("图 \"a\" <b> & 'c'");
        PhotoHotspot without;
        without.caption = QStringLiteral("left out");
        first.photos.prepend(without);
        InfoHotspot info;
        info.sphere_x = 0.1;
        info.caption = QStringLiteral("caption <&>");
        info.content = QStringLiteral("a<b & c\n&lt; \"漫游\" été");
        first.infos << info << InfoHotspot();

        PanoLink& link = *project().links[0];
        link.rot_0 = 0.1;
        link.rot_1 = -3.0;
        link.tilt_x0 = 0.01;
        link.tilt_x1 = 0.02;
        link.tilt_y0 = 0.03;
        link.icon_y0 = 2.0;
        link.icon_y1 = 2.5;
        link.spacing = 4.125;
        link.mode = LinkMatched;
        link.reliability = 0.9;
    }

    void expectRequest(const SeenRequest& request, const char* line, const QByteArray& body)
    {
        EXPECT_EQ(request.line.toStdString(), std::string(line) + " HTTP/1.1");
        EXPECT_EQ(request.body.toStdString(), body.toStdString()) << line;
    }

    QByteArray bytesOf(const QString& path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
};

TEST_F(UploadBytes, EveryRequestOfATourIsAsExpected)
{
    makeTour();
    service.reply("login", grantedLogin());
    service.reply("get_pano_list", QString());
    service.reply("get_pano_list", QStringLiteral("AAAAAAAAAAAAAA"));
    service.reply("get_pano_list", QStringLiteral("AAAAAAAAAAAAAA"));
    service.reply("get_pano_list", QStringLiteral("AAAAAAAAAAAAAA\r\nBBBBBBBBBBBBBB"));
    service.reply("create_roaming_album", grantedAlbum());
    startService();
    chooseEntry("comboSelEntryPano", 1);
    openDialog();
    fillIn(QStringLiteral("a.b-c@d_e.com"), QStringLiteral("p w&1=+%41#?密"), QStringLiteral("漫游_1"));
    clickInDialog("buttonUpload");
    expectBox(waitForBox(), QMessageBox::Information, QStringLiteral("Upload File"),
              QStringLiteral("Uploading completed!"));
    EXPECT_EQ(state(), kClosed);

    const std::vector<SeenRequest> seen = service.requests();
    ASSERT_EQ(seen.size(), 18u);
    std::size_t i = 0;
    expectRequest(seen[i++], "GET /login?email=a.b-c@d_e.com&password=p%20w%261%3D%2B%2541%23?%E5%AF%86", "");
    expectRequest(seen[i++], "GET /get_pano_list?token=TOKEN-0123456789", "");
    expectRequest(seen[i++], "POST /upload?token=TOKEN-0123456789&panoid=AAAAAAAAAAAAAA",
                  bytesOf(project().panoramas[0]->file_path));
    expectRequest(seen[i++], "GET /get_pano_list?token=TOKEN-0123456789", "");
    expectRequest(seen[i++], "GET /get_pano_list?token=TOKEN-0123456789", "");
    expectRequest(seen[i++], "POST /upload?token=TOKEN-0123456789&panoid=BBBBBBBBBBBBBB",
                  bytesOf(project().panoramas[1]->file_path));
    expectRequest(seen[i++], "GET /get_pano_list?token=TOKEN-0123456789", "");
    expectRequest(seen[i++],
                  "POST /create_roaming_album?token=TOKEN-0123456789&albumnotes=%E6%BC%AB%E6%B8%B8_1&"
                  "albummode=1&entrypanoid=BBBBBBBBBBBBBB&direction=0&elevation=1.5707963267949&"
                  "viewangle=1.5707963267949",
                  "AAAAAAAAAAAAAA\r\nBBBBBBBBBBBBBB");
    expectRequest(seen[i++],
                  "POST /set_albumpano_location?token=TOKEN-0123456789&albumid=ALBUM-01234567&"
                  "panoid=AAAAAAAAAAAAAA",
                  "<location position_x = \"1.5000000\" position_y=\"-2.2500000\" position_z=\"0.0000000\" "
                  "vertex_x=\"1.5000000\" vertex_y=\"-2.2500000\" direction=\"3.1415927\" "
                  "plan_center_x=\"640\" plan_center_y=\"-3\" plan_src=\"AAAAAAAAAAAAAA-00000000.png\"/>");
    expectRequest(seen[i++],
                  "POST /set_albumpano_location?token=TOKEN-0123456789&albumid=ALBUM-01234567&"
                  "panoid=BBBBBBBBBBBBBB",
                  "<location position_x = \"1000000000.0000000\" position_y=\"0.0000000\" "
                  "position_z=\"0.0000000\" vertex_x=\"0.0000000\" vertex_y=\"0.0000000\" "
                  "direction=\"0.0000000\" plan_center_x=\"0\" plan_center_y=\"0\" "
                  "plan_src=\"AAAAAAAAAAAAAA-00000000.png\"/>");
    expectRequest(seen[i++],
                  "POST /set_albumpano_linktags?token=TOKEN-0123456789&albumid=ALBUM-01234567&"
                  "panoid=AAAAAAAAAAAAAA",
                  "\t\t\t\t<link_photo sphere_x=\"-1.0000000\" sphere_y=\"2.0000000\" "
                  "caption=\"图 \"a\" <b> & 'c'\" src=\"AAAAAAAAAAAAAA-00000000.jpg\"/>\r\n"
                  "\t\t\t\t<link_info sphere_x=\"0.1000000\" sphere_y=\"1.5707963\" "
                  "caption=\"caption <&>\">a&lt;b &amp; c\n&amp;lt; \"漫游\" été</link_info>\r\n"
                  "\t\t\t\t<link_info sphere_x=\"0.0000000\" sphere_y=\"1.5707963\" caption=\"\">"
                  "</link_info>\r\n");
    expectRequest(seen[i++],
                  "POST /set_albumpano_linktags?token=TOKEN-0123456789&albumid=ALBUM-01234567&"
                  "panoid=BBBBBBBBBBBBBB",
                  "\t\t\t\t<link_photo sphere_x=\"0.0000000\" sphere_y=\"1.5707963\" caption=\"\" "
                  "src=\"BBBBBBBBBBBBBB-00000007.jpg\"/>\r\n");
    expectRequest(seen[i++],
                  "POST /add_panolink?token=TOKEN-0123456789&albumid=ALBUM-01234567&"
                  "panoid0=AAAAAAAAAAAAAA&panoid1=BBBBBBBBBBBBBB",
                  "<pano_link pano_id_0=\"AAAAAAAAAAAAAA\" pano_id_1=\"BBBBBBBBBBBBBB\" "
                  "rot_0=\"0.1000000\" rot_1=\"-3.0000000\" tilt_x0=\"0.0100000\" tilt_x1=\"0.0200000\" "
                  "tilt_y0=\"0.0300000\" icon_y0=\"2.0000000\" icon_y1=\"2.5000000\" "
                  "spacing=\"4.1250000\" mode=\"0\"/>");
    expectRequest(seen[i++],
                  "POST /upload_linkmodel?token=TOKEN-0123456789&panoid0=AAAAAAAAAAAAAA&"
                  "panoid1=BBBBBBBBBBBBBB&levelSel=0",
                  "zero");
    expectRequest(seen[i++],
                  "POST /upload_linkmodel?token=TOKEN-0123456789&panoid0=AAAAAAAAAAAAAA&"
                  "panoid1=BBBBBBBBBBBBBB&levelSel=1",
                  "one");
    expectRequest(seen[i++],
                  "POST /upload_linkphoto?token=TOKEN-0123456789&panoid=AAAAAAAAAAAAAA&"
                  "photoname=AAAAAAAAAAAAAA-00000000.jpg",
                  QByteArray("photo \0\xFF zero", 13));
    expectRequest(seen[i++],
                  "POST /upload_linkphoto?token=TOKEN-0123456789&panoid=BBBBBBBBBBBBBB&"
                  "photoname=BBBBBBBBBBBBBB-00000007.jpg",
                  "photo seven");
    expectRequest(seen[i++],
                  "POST /upload_linkphoto?token=TOKEN-0123456789&panoid=AAAAAAAAAAAAAA&"
                  "photoname=AAAAAAAAAAAAAA-00000000.png",
                  "plan");
}

TEST_F(UploadBytes, TwoPanoramasOneLinkTwoModelsAndNoPhotosInOrder)
{
    importRooms(2);
    addLink();
    service.reply("login", grantedLogin());
    for (const char* list : {"", "", "AAAAAAAAAAAAAA", "AAAAAAAAAAAAAA", "AAAAAAAAAAAAAA BBBBBBBBBBBBBB"})
        service.reply("get_pano_list", QLatin1String(list));
    service.reply("create_roaming_album", grantedAlbum());
    startService();
    upload();
    EXPECT_EQ(waitForBox().text, QStringLiteral("Uploading completed!"));
    EXPECT_EQ(service.words().join(QLatin1Char(' ')),
              QStringLiteral("login get_pano_list upload get_pano_list get_pano_list get_pano_list upload "
                             "get_pano_list create_roaming_album set_albumpano_location "
                             "set_albumpano_location set_albumpano_linktags set_albumpano_linktags "
                             "add_panolink upload_linkmodel upload_linkmodel"));
    EXPECT_EQ(state(), kClosed);
}

TEST_F(UploadBytes, TheWaitBetweenPollsServesEvents)
{
    importRooms(1);
    service.reply("login", grantedLogin());
    for (const char* list : {"", "", "AAAAAAAAAAAAAA"})
        service.reply("get_pano_list", QLatin1String(list));
    service.reply("create_roaming_album", QStringLiteral("ER"));
    startService();
    // While the reply slot waits, its reply is not counted yet: four requests have come, three replies.
    int ticks = 0;
    QElapsedTimer pause;
    qint64 paused_ms = -1;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (replies->count() != 3 || service.requests().size() != 4u) return;
        if (!pause.isValid()) pause.start();
        ++ticks;
        paused_ms = pause.elapsed();
    });
    timer.start(20);
    upload();
    waitForBox();
    EXPECT_GE(ticks, 10);
    EXPECT_GE(paused_ms, 500); // a good part of the second
}

TEST_F(UploadBytes, PanoramasAlreadyListedAreNotSent)
{
    importRooms(2);
    addLink();
    service.reply("login", grantedLogin());
    service.reply("get_pano_list", QStringLiteral("BBBBBBBBBBBBBB\r\nAAAAAAAAAAAAAA"));
    service.reply("create_roaming_album", QStringLiteral("ER"));
    startService();
    upload();
    waitForReplies(2);
    EXPECT_EQ(state(), (UploadState{false, false, true, 33}));
    waitForReplies(3);
    EXPECT_EQ(state(), (UploadState{false, false, true, 66}));
    waitForBox();
    EXPECT_FALSE(service.words().contains(QStringLiteral("upload")));
}

TEST_F(UploadBytes, TheDialogClosedInBetweenStopsNothing)
{
    importRooms(2);
    addLink();
    service.reply("login", grantedLogin(), 200, 200);
    service.reply("get_pano_list", QStringLiteral("AAAAAAAAAAAAAA BBBBBBBBBBBBBB"));
    service.reply("create_roaming_album", grantedAlbum());
    startService();
    upload();
    clickInDialog("buttonCancel");
    EXPECT_FALSE(dialog()->isVisible());
    EXPECT_EQ(waitForBox().text, QStringLiteral("Uploading completed!"));
    EXPECT_EQ(state(), kClosed);
}

TEST_F(UploadBytes, ATourWithoutLinksEndsAfterTheTagsWithoutAWord)
{
    importRooms(1);
    addPhoto(0, 0);
    service.reply("login", grantedLogin());
    service.reply("get_pano_list", QStringLiteral("AAAAAAAAAAAAAA"));
    service.reply("create_roaming_album", grantedAlbum());
    startService();
    upload();
    waitForReplies(5);
    EXPECT_TRUE(atRest());
    EXPECT_EQ(state(), kReady); // open still
    EXPECT_TRUE(robot->boxes.empty());
    EXPECT_EQ(service.words().back(), QStringLiteral("set_albumpano_linktags"));
}

TEST_F(UploadBytes, TokenAndAlbumStayInMemoryAfterTheEnd)
{
    importRooms(2);
    addLink();
    service.reply("login", grantedLogin());
    service.reply("get_pano_list", QStringLiteral("AAAAAAAAAAAAAA BBBBBBBBBBBBBB"));
    service.reply("create_roaming_album", grantedAlbum());
    startService();
    project().modified = false;
    upload();
    waitForBox();
    EXPECT_EQ(project().cloud.token, QStringLiteral("TOKEN-0123456789"));
    EXPECT_EQ(project().cloud.album_id, QStringLiteral("ALBUM-01234567"));
    EXPECT_EQ(project().cloud.album_name, QStringLiteral("漫游_1"));
    EXPECT_FALSE(project().modified);
}

} // namespace
