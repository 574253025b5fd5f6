// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The chain's first reply, and replies that are none.

#include "tests/publish/support/ChainTest.h"

namespace {

using namespace publish;
using LoginStep = ChainTest;

TEST_F(LoginStep, BeginningNotesNameAndFilesAndForgetsTheEarlierAlbum)
{
    makeTour(2, 1);
    project.cloud.album_id = QStringLiteral("EARLIER-ALBUM-");
    project.cloud.model_files << QStringLiteral("/old");
    project.links[0]->match_path_0 = makeFile(QStringLiteral("m"));
    project.panoramas[0]->plan_src = makeFile(QStringLiteral("p"));
    const UploadRequest request =
        beginUpload(project, {QStringLiteral("a@b.com"), QStringLiteral("abcd123"), QStringLiteral("相册")});
    EXPECT_EQ(request.path, QStringLiteral("login"));
    EXPECT_EQ(request.method, UploadRequest::Method::Get);
    EXPECT_EQ(project.cloud.album_name, QStringLiteral("相册"));
    EXPECT_TRUE(project.cloud.album_id.isEmpty());
    EXPECT_EQ(project.cloud.model_files, QStringList{folder.filePath(QStringLiteral("m"))});
    EXPECT_EQ(project.cloud.photo_files, QStringList{folder.filePath(QStringLiteral("p"))});
}

TEST_F(LoginStep, EightLinesGrantItAndLineOneIsTheToken)
{
    makeTour(1, 0);
    step() = 7;
    const UploadAction action = take("login", QStringLiteral("OK\r\nthe token\r\n\r\n\r\n\r\n\r\n\r\n"));
    EXPECT_EQ(project.cloud.token, QStringLiteral("the token"));
    EXPECT_TRUE(action.lock);
    EXPECT_EQ(action.progress, 0);
    EXPECT_EQ(step(), 0u);
    EXPECT_EQ(project.upload_counters[UploadPollAgain], 0u);
    EXPECT_EQ(sent(action), QStringLiteral("get_pano_list"));
    EXPECT_FALSE(action.unlock);
}

TEST_F(LoginStep, SevenLinesAreTooFewAndDisableNothing)
{
    makeTour(1, 0);
    for (const char* body : {"OK\r\ntoken\r\n\r\n\r\n\r\n\r\n", "OK", "OK\ntoken\n3\n4\n5\n6\n7\n8"}) {
        const UploadAction action = take("login", QLatin1String(body));
        EXPECT_EQ(action.notice, UploadNotice::LoginIncomplete);
        EXPECT_FALSE(action.lock || action.unlock || action.request);
        EXPECT_TRUE(project.cloud.token.isEmpty());
    }
}

TEST_F(LoginStep, WithoutPanoramasTheTokenIsKeptAndNothingFollows)
{
    EXPECT_TRUE(nothing(take("login", grantedLogin())));
    EXPECT_EQ(project.cloud.token, QStringLiteral("TOKEN-0123456789"));
}

TEST_F(LoginStep, TheTriesLeftAreOneCharacterAtPositionThree)
{
    const struct
    {
        const char* body;
        const char* tries;
    } cases[] = {{"ER 5", "5"}, {"ER 12", "1"}, {"ER 99", "9"}, {"ER\r\n7", "0"}, {"ER", "0"},
                 {"ER x", "0"}, {"ER -1", "0"}, {"ER  8", "0"}, {"ERR4", "4"},    {"ER ３", "0"}};
    for (const auto& each : cases) {
        const UploadAction action = take("login", QString::fromUtf8(each.body));
        EXPECT_EQ(action.notice, UploadNotice::WrongPassword) << each.body;
        EXPECT_EQ(action.detail, QLatin1String(each.tries)) << each.body;
        EXPECT_FALSE(action.lock || action.unlock || action.request);
    }
}

TEST_F(LoginStep, AnyOtherBodyDoesNothing)
{
    makeTour(1, 0);
    for (const char* body : {"", "ok\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8", " OK", "<html>", "er 5"})
        EXPECT_TRUE(nothing(take("login", QLatin1String(body)))) << body;
}

TEST_F(LoginStep, AnyStatusBut200EndsTheUpload)
{
    makeTour(1, 1);
    for (const char* path :
         {"login", "get_pano_list", "upload", "create_roaming_album", "set_albumpano_location",
          "set_albumpano_linktags", "add_panolink", "upload_linkmodel", "upload_linkphoto", "elsewhere"})
        for (const int status : {0, 201, 204, 301, 404, 500}) {
            const UploadAction action = fail(status, path, QStringLiteral("the reason"));
            EXPECT_EQ(action.notice, UploadNotice::AccessFailed);
            EXPECT_EQ(action.detail, QStringLiteral("the reason"));
            EXPECT_TRUE(action.unlock);
            EXPECT_FALSE(action.request || action.close || action.progress);
        }
}

TEST_F(LoginStep, AnUnknownPathIsIgnored)
{
    makeTour(1, 1);
    for (const char* path : {"", "elsewhere", "LOGIN", "Upload", "upload_", "upload_other"})
        EXPECT_TRUE(nothing(take(path, grantedLogin()))) << path;
}

TEST_F(LoginStep, TheFirstWordThatThePathHoldsDecides)
{
    makeTour(1, 1);
    begin();
    EXPECT_EQ(sent(take("upload/login", grantedLogin())), QStringLiteral("get_pano_list"));
    // "upload" anywhere, "upload_" nowhere: the panorama's step.
    EXPECT_EQ(sent(take("upload/get_pano_list", QStringLiteral("OK"))), QStringLiteral("get_pano_list"));
    EXPECT_EQ(project.upload_counters[UploadPollAgain], 1u);
    // Below a base URL with "upload_" in it, the panorama's reply is none.
    EXPECT_TRUE(nothing(take("upload_here/upload", QStringLiteral("OK"))));
}

} // namespace
