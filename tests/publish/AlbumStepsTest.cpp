// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// From the album to the end: album, locations, tags, links, match data, photos.

#include "tests/publish/support/ChainTest.h"

namespace {

using namespace publish;

class AlbumSteps : public ChainTest
{
protected:
    void expectRefused(const char* body)
    {
        const UploadAction action = take("create_roaming_album", QString::fromUtf8(body));
        EXPECT_EQ(action.notice, UploadNotice::AlbumRefused) << body;
        EXPECT_TRUE(action.unlock);
        EXPECT_FALSE(action.request);
    }

    /// A link with match data of both levels.
    void addModels()
    {
        const QString pair = QStringLiteral("AAAAAAAAAAAAAA_BBBBBBBBBBBBBB");
        project.links[0]->match_path_0 = makeFile(pair + QStringLiteral("_0.dat"));
        project.links[0]->match_path_1 = makeFile(pair + QStringLiteral("_1.dat"));
    }

    void addPhotos(int count)
    {
        for (int i = 0; i < count; ++i) {
            PhotoHotspot photo;
            photo.photo_path =
                makeFile(QStringLiteral("AAAAAAAAAAAAAA-%1.jpg").arg(i, 8, 10, QLatin1Char('0')));
            project.panoramas[0]->photos << photo;
        }
    }

    void expectCompleted(const UploadAction& action)
    {
        EXPECT_EQ(action.notice, UploadNotice::Completed);
        EXPECT_TRUE(action.unlock);
        EXPECT_TRUE(action.close);
        EXPECT_FALSE(action.request);
    }
};

TEST_F(AlbumSteps, AnIdentifierOfThirteenCharactersFails)
{
    makeTour(1, 1);
    expectRefused("OK\r\n1234567890123");
    expectRefused("OK\r\n123456789012345");
    expectRefused("OK\r\n 1234567890123 \r\n");
}

TEST_F(AlbumSteps, AReplyWithoutOkOrWithoutASecondLineFails)
{
    makeTour(1, 1);
    for (const char* body :
         {"", "OK", "ER 1", "ER\r\n12345678901234", "OK\n12345678901234", "12345678901234"})
        expectRefused(body);
}

TEST_F(AlbumSteps, AnIdentifierOfFourteenCharactersIsKept)
{
    makeTour(2, 1);
    step() = 2;
    const UploadAction action =
        take("create_roaming_album", QStringLiteral("OK and so\r\n一234567890123四\r\nmore"));
    EXPECT_EQ(project.cloud.album_id, QStringLiteral("一234567890123四"));
    EXPECT_EQ(sent(action), QStringLiteral("set_albumpano_location"));
    EXPECT_EQ(step(), 0u);
    EXPECT_FALSE(action.progress);
}

TEST_F(AlbumSteps, LocationsTagsAndLinksFollowWhateverTheBodiesSay)
{
    makeTour(2, 2);
    begin();
    take("create_roaming_album", grantedAlbum());
    QStringList words;
    const QString garbage = QStringLiteral("ER 1 garbage");
    QString word = QStringLiteral("set_albumpano_location");
    while (!word.isEmpty()) {
        words << word;
        const UploadAction action = take(word.toLatin1().constData(), garbage);
        EXPECT_FALSE(action.progress) << word.toStdString();
        word = sent(action);
        if (word.isEmpty()) expectCompleted(action);
    }
    EXPECT_EQ(words.join(QLatin1Char(' ')),
              QStringLiteral("set_albumpano_location set_albumpano_location set_albumpano_linktags "
                             "set_albumpano_linktags add_panolink add_panolink"));
}

TEST_F(AlbumSteps, ATourWithoutLinksEndsAfterTheTagsWithoutAWordAndWithoutFiles)
{
    makeTour(1, 0);
    addPhotos(1);
    begin();
    take("create_roaming_album", grantedAlbum());
    EXPECT_EQ(sent(take("set_albumpano_location", QString())), QStringLiteral("set_albumpano_linktags"));
    const UploadAction action = take("set_albumpano_linktags", QString());
    EXPECT_TRUE(action.unlock);
    EXPECT_EQ(action.notice, UploadNotice::None);
    EXPECT_FALSE(action.close || action.request || action.progress);
}

TEST_F(AlbumSteps, ModelsFillTheFirstHalfOfTheLastSlice)
{
    makeTour(2, 1);
    addModels();
    begin();
    UploadAction action = take("add_panolink", QString());
    EXPECT_EQ(sent(action), QStringLiteral("upload_linkmodel"));
    EXPECT_FALSE(action.progress);
    action = take("upload_linkmodel", QStringLiteral("ER 1"));
    EXPECT_EQ(sent(action), QStringLiteral("upload_linkmodel"));
    EXPECT_EQ(action.progress, (25 + 200) / 3);
    action = take("upload_linkmodel", QStringLiteral("ER 1"));
    EXPECT_EQ(action.progress, (50 + 200) / 3);
    expectCompleted(action);
}

TEST_F(AlbumSteps, PhotosFillTheSecondHalfAndModelsGoBeforeThem)
{
    makeTour(2, 1);
    addModels();
    addPhotos(3);
    begin();
    EXPECT_EQ(sent(take("add_panolink", QString())), QStringLiteral("upload_linkmodel"));
    take("upload_linkmodel", QString());
    UploadAction action = take("upload_linkmodel", QString());
    EXPECT_EQ(sent(action), QStringLiteral("upload_linkphoto"));
    EXPECT_EQ(take("upload_linkphoto", QString()).progress, (200 + 50 + 16) / 3);
    EXPECT_EQ(take("upload_linkphoto", QString()).progress, (200 + 50 + 33) / 3);
    action = take("upload_linkphoto", QString());
    EXPECT_EQ(action.progress, 100);
    expectCompleted(action);
}

TEST_F(AlbumSteps, WithoutModelsThePhotosFollowTheLinks)
{
    makeTour(2, 1);
    addPhotos(1);
    begin();
    EXPECT_EQ(sent(take("add_panolink", QString())), QStringLiteral("upload_linkphoto"));
}

TEST_F(AlbumSteps, AModelNameOfAnotherLengthEndsTheUpload)
{
    makeTour(2, 1);
    project.links[0]->match_path_0 = makeFile(QStringLiteral("AAAAAAAAAAAAAA_BBBBBBBBBBBBBB_10.dat"));
    begin();
    const UploadAction action = take("add_panolink", QString());
    EXPECT_EQ(action.notice, UploadNotice::WrongModelName);
    EXPECT_EQ(action.detail, QStringLiteral("AAAAAAAAAAAAAA_BBBBBBBBBBBBBB_10.dat"));
    EXPECT_TRUE(action.unlock);
    EXPECT_FALSE(action.request);
}

TEST_F(AlbumSteps, APhotoNameOfAnotherLengthEndsTheUpload)
{
    makeTour(2, 1);
    project.panoramas[1]->plan_src = makeFile(QStringLiteral("plan.png"));
    begin();
    const UploadAction action = take("add_panolink", QString());
    EXPECT_EQ(action.notice, UploadNotice::WrongPhotoName);
    EXPECT_EQ(action.detail, QStringLiteral("plan.png"));
    EXPECT_TRUE(action.unlock);
    EXPECT_FALSE(action.request);
}

TEST_F(AlbumSteps, AMissingFileIsToldBeforeItsWrongName)
{
    makeTour(2, 1);
    project.links[0]->match_path_0 = folder.filePath(QStringLiteral("missing.dat"));
    begin();
    EXPECT_EQ(take("add_panolink", QString()).notice, UploadNotice::FileUnreadable);
    project.links[0]->match_path_0.clear();
    project.panoramas[0]->plan_src = folder.filePath(QStringLiteral("missing.png"));
    begin();
    step() = 0;
    const UploadAction action = take("add_panolink", QString());
    EXPECT_EQ(action.notice, UploadNotice::FileUnreadable);
    EXPECT_EQ(action.detail, folder.filePath(QStringLiteral("missing.png")));
    EXPECT_TRUE(action.unlock);
}

TEST_F(AlbumSteps, RepliesOutOfTurnFindAnEmptiedTourWithoutHarm)
{
    makeTour(2, 1);
    begin();
    project.panoramas.clear();
    project.links.clear();
    for (const char* path :
         {"get_pano_list", "upload", "create_roaming_album", "set_albumpano_location",
          "set_albumpano_linktags", "add_panolink", "upload_linkmodel", "upload_linkphoto"}) {
        const UploadAction action = take(path, grantedAlbum());
        if (action.request) {
            EXPECT_EQ(sent(action), QStringLiteral("get_pano_list")) << path;
        }
    }
}

} // namespace
