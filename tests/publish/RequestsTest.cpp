// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Query items and bodies of the nine requests.

#include "publish/UploadRequests.h"
#include "tests/publish/support/Tours.h"

#include <gtest/gtest.h>

namespace {

using namespace publish;

std::string items(const UploadRequest& request)
{
    QStringList list;
    for (const auto& item : request.query)
        list << item.first + QLatin1Char('=') + item.second;
    return list.join(QLatin1Char('&')).toStdString();
}

class Requests : public testing::Test
{
protected:
    Requests()
    {
        fillTour(project, 2, 1);
        project.cloud.token = QStringLiteral("T");
        project.cloud.album_id = QStringLiteral("I");
        project.cloud.album_name = QStringLiteral("相册");
    }

    RoamProject project;
};

TEST_F(Requests, LoginAndListingAreGotTheOthersPosted)
{
    const UploadRequest login = loginRequest(QStringLiteral("a@b.com"), QStringLiteral("x y"));
    EXPECT_EQ(login.method, UploadRequest::Method::Get);
    EXPECT_EQ(items(login), "email=a@b.com&password=x y");
    const UploadRequest list = listRequest(project);
    EXPECT_EQ(list.method, UploadRequest::Method::Get);
    EXPECT_EQ(list.path, QStringLiteral("get_pano_list"));
    EXPECT_EQ(items(list), "token=T");
    EXPECT_EQ(panoramaRequest(project, 0).method, UploadRequest::Method::Post);
}

TEST_F(Requests, TheAlbumListsItsPanoramasWithoutALineEndAfterTheLast)
{
    project.entry_index = 1;
    const UploadRequest request = albumRequest(project);
    EXPECT_EQ(items(request), "token=T&albumnotes=相册&albummode=1&entrypanoid=BBBBBBBBBBBBBB&direction=0&"
                              "elevation=1.5707963267949&viewangle=1.5707963267949");
    EXPECT_EQ(request.body, QByteArray("AAAAAAAAAAAAAA\r\nBBBBBBBBBBBBBB"));
}

TEST_F(Requests, AnEntryBehindTheLastPanoramaIsTheFirst)
{
    project.entry_index = 2;
    EXPECT_EQ(albumRequest(project).query[3].second, QStringLiteral("AAAAAAAAAAAAAA"));
}

TEST_F(Requests, TheLocationBeginsWithBlanksRoundTheFirstEqualsSign)
{
    project.panoramas[0]->position_x = 1.5;
    const UploadRequest request = locationRequest(project, 0);
    EXPECT_EQ(items(request), "token=T&albumid=I&panoid=AAAAAAAAAAAAAA");
    EXPECT_TRUE(request.body.startsWith("<location position_x = \"1.5000000\" position_y=\"0.0000000\""));
    EXPECT_TRUE(request.body.endsWith(" plan_src=\"\"/>"));
}

TEST_F(Requests, AnInfosContentIsEscapedAndAPhotosCaptionIsNot)
{
    InfoHotspot info;
    info.content = QStringLiteral("a<b & c");
    PhotoHotspot photo;
    photo.caption = QStringLiteral("a<b");
    photo.photo_path = QStringLiteral("/tmp/p.jpg");
    project.panoramas[1]->infos << info;
    project.panoramas[1]->photos << photo;
    EXPECT_EQ(linkTagsRequest(project, 1).body,
              QByteArray("\t\t\t\t<link_photo sphere_x=\"0.0000000\" sphere_y=\"1.5707963\" caption=\"a<b\" "
                         "src=\"p.jpg\"/>\r\n"
                         "\t\t\t\t<link_info sphere_x=\"0.0000000\" sphere_y=\"1.5707963\" caption=\"\">"
                         "a&lt;b &amp; c</link_info>\r\n"));
}

TEST_F(Requests, APhotoHotspotWithoutAPictureIsLeftOutOfTheTags)
{
    project.panoramas[0]->photos << PhotoHotspot();
    const UploadRequest request = linkTagsRequest(project, 0);
    EXPECT_TRUE(request.body.isEmpty());
    EXPECT_TRUE(request.body_file.isEmpty());
}

TEST_F(Requests, ALinkTellsItsEndsAndNoReliability)
{
    project.links[0]->reliability = 0.5;
    const UploadRequest request = linkRequest(project, 0);
    EXPECT_EQ(items(request), "token=T&albumid=I&panoid0=AAAAAAAAAAAAAA&panoid1=BBBBBBBBBBBBBB");
    EXPECT_FALSE(request.body.contains("reliability"));
    EXPECT_TRUE(request.body.endsWith(" mode=\"1\"/>"));
}

TEST_F(Requests, AModelsNameIsTakenApart)
{
    const UploadRequest request =
        modelRequest(project, QStringLiteral("/some/CCCCCCCCCCCCCC_DDDDDDDDDDDDDD_1.dat"));
    EXPECT_EQ(request.path, QStringLiteral("upload_linkmodel"));
    EXPECT_EQ(items(request), "token=T&panoid0=CCCCCCCCCCCCCC&panoid1=DDDDDDDDDDDDDD&levelSel=1");
    EXPECT_EQ(request.body_file, QStringLiteral("/some/CCCCCCCCCCCCCC_DDDDDDDDDDDDDD_1.dat"));
}

TEST_F(Requests, APhotosNameIsSentWhole)
{
    const UploadRequest request = photoRequest(project, QStringLiteral("/some/CCCCCCCCCCCCCC-00000007.jpg"));
    EXPECT_EQ(request.path, QStringLiteral("upload_linkphoto"));
    EXPECT_EQ(items(request), "token=T&panoid=CCCCCCCCCCCCCC&photoname=CCCCCCCCCCCCCC-00000007.jpg");
}

TEST_F(Requests, FileNamesHaveTheirLengths)
{
    EXPECT_TRUE(isModelName(QString(35, QLatin1Char('x'))));
    EXPECT_FALSE(isModelName(QString(34, QLatin1Char('x'))));
    EXPECT_FALSE(isModelName(QString(36, QLatin1Char('x'))));
    EXPECT_TRUE(isPhotoName(QString(27, QLatin1Char('x'))));
    EXPECT_FALSE(isPhotoName(QString(26, QLatin1Char('x'))));
    EXPECT_FALSE(isPhotoName(QString(28, QLatin1Char('x'))));
}

} // namespace
