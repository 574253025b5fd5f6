// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Everything that can go wrong in an upload: the box, and what the author can do afterwards.

#include "tests/app/support/UploadTest.h"

#include <QTcpServer>
#include <QTest>

namespace {

const QString kTitle = QStringLiteral("Upload File");

/// All requests of a tour with two panoramas, a link, match data and a photo, in order.
const char* const kWords[] = {"login",
                              "get_pano_list",
                              "upload",
                              "create_roaming_album",
                              "set_albumpano_location",
                              "set_albumpano_linktags",
                              "add_panolink",
                              "upload_linkmodel",
                              "upload_linkphoto"};

class UploadFailure : public UploadTest
{
protected:
    void makeTour()
    {
        importRooms(2);
        addLink();
        addPhoto(0, 0);
    }

    /// Good answers up to the word, whose answer the test gives.
    void succeedUntil(const QString& last)
    {
        for (const char* word : kWords) {
            if (last == QLatin1String(word)) return;
            if (qstrcmp(word, "login") == 0) service.reply(word, grantedLogin());
            if (qstrcmp(word, "create_roaming_album") == 0) service.reply(word, grantedAlbum());
            if (qstrcmp(word, "get_pano_list") == 0)
                service.reply(word, last == QLatin1String("upload")
                                        ? QString()
                                        : QStringLiteral("AAAAAAAAAAAAAA BBBBBBBBBBBBBB"));
        }
    }

    QString accessing() const
    {
        return QStringLiteral("Error accessing ") + service.url() + QStringLiteral(": ");
    }

    void expectAccessFailure(const SeenBox& box)
    {
        EXPECT_EQ(box.kind, QMessageBox::Information);
        EXPECT_EQ(box.title, kTitle);
        EXPECT_TRUE(box.text.startsWith(accessing())) << box.text.toStdString();
        EXPECT_GT(box.text.size(), accessing().size());
        EXPECT_FALSE(box.text.contains(QLatin1String("secret1"))) << box.text.toStdString();
        EXPECT_FALSE(box.text.contains(QLatin1String("TOKEN"))) << box.text.toStdString();
        EXPECT_TRUE(box.modalToWindow);
    }
};

TEST_F(UploadFailure, ARefusedConnection)
{
    makeTour();
    QTcpServer free;
    ASSERT_TRUE(free.listen(QHostAddress::LocalHost));
    const QString url = QStringLiteral("http://127.0.0.1:%1/").arg(free.serverPort());
    free.close();
    useService(url);
    upload();
    expectBox(waitForBox(), QMessageBox::Information, kTitle,
              QStringLiteral("Error accessing ") + url + QStringLiteral(": Connection refused"));
    EXPECT_EQ(state(), kReady);
}

TEST_F(UploadFailure, AServiceThatGoesAwayInBetween)
{
    makeTour();
    service.reply("login", grantedLogin());
    service.reply("get_pano_list", QString());
    startService();
    upload();
    // Between two requests: the service is gone before the panorama's comes.
    waitForReplies(1);
    service.stop();
    expectAccessFailure(waitForBox());
    EXPECT_EQ(state(), kReady);
}

/// The same faults at each stage, one after the other in the same window.
class UploadStage : public UploadFailure, public testing::WithParamInterface<const char*>
{
protected:
    UploadStage() { makeTour(); }

    /// Uploads to a service that the test has scripted for this stage only.
    SeenBox failHere()
    {
        const QString stage = QLatin1String(GetParam());
        succeedUntil(stage);
        startService();
        robot->boxes.clear();
        upload();
        const SeenBox box = waitForBox();
        EXPECT_EQ(robot->boxes.size(), 1u);
        EXPECT_EQ(state(), kReady);
        EXPECT_EQ(service.words().back(), stage);
        return box;
    }
};

TEST_P(UploadStage, AnyStatusBut200)
{
    for (const int status : {500, 404, 201}) {
        service.clear();
        service.reply(GetParam(), grantedLogin(), status);
        const SeenBox box = failHere();
        const QString reason = status == 201 ? QStringLiteral("Unknown error")
                                             : QStringLiteral("Error transferring ") + service.url() +
                                                   QLatin1String(GetParam()) +
                                                   QStringLiteral(" - server replied: As Told");
        expectBox(box, QMessageBox::Information, kTitle, accessing() + reason);
    }
}

TEST_P(UploadStage, ClosedOrGarbled)
{
    for (const char* deed : {"close at head", "close at end", "close in head", "garbage"}) {
        SCOPED_TRACE(deed);
        service.clear();
        service.misbehave(GetParam(), deed);
        expectAccessFailure(failHere());
    }
}

INSTANTIATE_TEST_SUITE_P(At, UploadStage, testing::ValuesIn(kWords),
                         [](const auto& info) { return std::string(info.param); });

TEST_F(UploadFailure, AReplyCutInItsBodyIsReadAsFarAsItCame)
{
    makeTour();
    succeedUntil(QStringLiteral("create_roaming_album"));
    service.misbehave("create_roaming_album", "close in reply", grantedAlbum());
    startService();
    upload();
    expectBox(waitForBox(), QMessageBox::Information, kTitle, QStringLiteral("Error when create album"));
    EXPECT_EQ(state(), kReady);
}

TEST_F(UploadFailure, ASlowServiceIsWaitedForWithTheWindowsDisabled)
{
    makeTour();
    service.reply("login", grantedLogin(), 200, 300);
    service.reply("get_pano_list", QStringLiteral("ER"), 200, 600);
    service.reply("upload", QStringLiteral("ER 1"), 200, 600);
    startService();
    upload();
    EXPECT_EQ(state(), kReady); // logging in disables nothing
    waitForReplies(1);
    EXPECT_EQ(state(), (UploadState{false, false, true, 0}));
    waitForReplies(2);
    EXPECT_EQ(state(), (UploadState{false, false, true, 0}));
    expectBox(waitForBox(), QMessageBox::Information, kTitle, QStringLiteral("Insufficient cloud storage"));
    EXPECT_EQ(state(), kReady);
}

TEST_F(UploadFailure, AGrantedLoginOfTooFewLines)
{
    makeTour();
    service.reply("login", QStringLiteral("OK\r\n1\r\n2\r\n3\r\n4\r\n5\r\n6"));
    startService();
    upload();
    expectBox(waitForBox(), QMessageBox::Information, kTitle,
              QStringLiteral("Error accessing ") + service.url());
    EXPECT_EQ(state(), kReady);
    EXPECT_EQ(service.words(), QStringList{QStringLiteral("login")});
}

TEST_F(UploadFailure, AWrongPasswordAndTheTriesLeft)
{
    makeTour();
    service.reply("login", QStringLiteral("ER 4"));
    startService();
    upload();
    expectBox(waitForBox(), QMessageBox::Information, kTitle,
              QStringLiteral("Incorrect password! You can retry 4 times today"));
    EXPECT_EQ(state(), kReady);
}

TEST_F(UploadFailure, TwelveTriesLeftAreToldAsOne)
{
    makeTour();
    service.reply("login", QStringLiteral("ER 12"));
    startService();
    upload();
    expectBox(waitForBox(), QMessageBox::Information, kTitle,
              QStringLiteral("Incorrect password! You can retry 1 times today"));
    EXPECT_EQ(state(), kReady);
}

TEST_F(UploadFailure, AnUnknownLoginReplyDoesNothing)
{
    makeTour();
    service.reply("login", QStringLiteral("<html>hello</html>"));
    startService();
    upload();
    waitForReplies(1);
    EXPECT_TRUE(atRest());
    EXPECT_EQ(state(), kReady);
}

TEST_F(UploadFailure, TooLittleStorage)
{
    makeTour();
    succeedUntil(QStringLiteral("upload"));
    service.reply("upload", QStringLiteral("ER 1"));
    startService();
    upload();
    expectBox(waitForBox(), QMessageBox::Information, kTitle, QStringLiteral("Insufficient cloud storage"));
    EXPECT_EQ(state(), kReady);
    EXPECT_EQ(service.words().join(QLatin1Char(' ')), QStringLiteral("login get_pano_list upload"));
}

TEST_F(UploadFailure, AnyOtherAnswerToAnUploadStallsWithTheWindowsDisabled)
{
    makeTour();
    succeedUntil(QStringLiteral("upload"));
    service.reply("upload", QStringLiteral("ER 2"));
    startService();
    upload();
    waitForReplies(3);
    EXPECT_TRUE(atRest());
    EXPECT_TRUE(robot->boxes.empty());
    EXPECT_EQ(state(), (UploadState{false, false, true, 0}));
    EXPECT_EQ(service.words().join(QLatin1Char(' ')), QStringLiteral("login get_pano_list upload"));
    // The program can be left all the same.
    project().modified = false;
    EXPECT_TRUE(window->close());
}

TEST_F(UploadFailure, AnAlbumWithAnIdentifierOfThirteenCharacters)
{
    makeTour();
    succeedUntil(QStringLiteral("create_roaming_album"));
    service.reply("create_roaming_album", QStringLiteral("OK\r\n1234567890123"));
    startService();
    upload();
    expectBox(waitForBox(), QMessageBox::Information, kTitle, QStringLiteral("Error when create album"));
    EXPECT_EQ(state(), kReady);
    EXPECT_EQ(service.words().back(), QStringLiteral("create_roaming_album"));
}

TEST_F(UploadFailure, AnAlbumThatIsRefused)
{
    makeTour();
    succeedUntil(QStringLiteral("create_roaming_album"));
    service.reply("create_roaming_album", QStringLiteral("ER 3"));
    startService();
    upload();
    expectBox(waitForBox(), QMessageBox::Information, kTitle, QStringLiteral("Error when create album"));
    EXPECT_EQ(state(), kReady);
}

TEST_F(UploadFailure, APanoramaFileThatIsGone)
{
    makeTour();
    succeedUntil(QStringLiteral("upload"));
    startService();
    const QString path = project().panoramas[0]->file_path;
    QFile::remove(path);
    upload();
    expectBox(waitForBox(), QMessageBox::Warning, kTitle,
              QStringLiteral("File ") + path + QStringLiteral(" open failed!"));
    EXPECT_EQ(state(), kReady);
    EXPECT_EQ(service.words().back(), QStringLiteral("get_pano_list"));
}

TEST_F(UploadFailure, MatchDataThatIsGone)
{
    makeTour();
    succeedUntil(QStringLiteral("upload_linkmodel"));
    startService();
    const QString path = project().links[0]->match_path_1;
    QFile::remove(path);
    upload();
    expectBox(waitForBox(), QMessageBox::Warning, kTitle,
              QStringLiteral("File ") + path + QStringLiteral(" open failed!"));
    EXPECT_EQ(state(), kReady);
    EXPECT_EQ(service.words().count(QStringLiteral("upload_linkmodel")), 1);
}

TEST_F(UploadFailure, APhotoThatIsGone)
{
    makeTour();
    succeedUntil(QStringLiteral("upload_linkphoto"));
    startService();
    const QString path = project().panoramas[0]->photos[0].photo_path;
    QFile::remove(path);
    upload();
    expectBox(waitForBox(), QMessageBox::Warning, kTitle,
              QStringLiteral("File ") + path + QStringLiteral(" open failed!"));
    EXPECT_EQ(state(), kReady);
}

TEST_F(UploadFailure, AModelNameOfAnotherLength)
{
    makeTour();
    succeedUntil(QStringLiteral("upload_linkmodel"));
    startService();
    project().links[0]->match_path_0 = writeFile(inWorkingFolder(QStringLiteral("short_0.dat")));
    upload();
    expectBox(waitForBox(), QMessageBox::Warning, kTitle,
              QStringLiteral("Error model file name: short_0.dat"));
    EXPECT_EQ(state(), kReady);
    EXPECT_EQ(service.words().back(), QStringLiteral("add_panolink"));
}

TEST_F(UploadFailure, APhotoNameOfAnotherLength)
{
    makeTour();
    succeedUntil(QStringLiteral("upload_linkphoto"));
    startService();
    project().panoramas[1]->plan_src = writeFile(inWorkingFolder(QStringLiteral("plan <b>.png")));
    upload();
    expectBox(waitForBox(), QMessageBox::Warning, kTitle,
              QStringLiteral("Error photo file name: plan <b>.png"));
    EXPECT_EQ(state(), kReady);
}

} // namespace
