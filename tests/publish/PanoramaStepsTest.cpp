// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Listing, sending and listing again; the progress of each.

#include "tests/publish/support/ChainTest.h"

namespace {

using namespace publish;

class PanoramaSteps : public ChainTest
{
protected:
    void logIn(int panoramas)
    {
        makeTour(panoramas, 1);
        begin();
        take("login", grantedLogin());
    }
};

TEST_F(PanoramaSteps, APanoramaAlreadyListedIsNotSentAndMovesAWholeSlice)
{
    logIn(3);
    const UploadAction action = take("get_pano_list", QStringLiteral("x\r\nAAAAAAAAAAAAAA\r\ny"));
    EXPECT_EQ(action.progress, 25);
    EXPECT_EQ(sent(action), QStringLiteral("get_pano_list"));
    EXPECT_EQ(action.wait_ms, 0);
    EXPECT_EQ(step(), 1u);
    EXPECT_EQ(project.upload_counters[UploadPollAgain], 0u);
}

TEST_F(PanoramaSteps, TheIdentifierCountsAnywhereInTheBodyButInItsOwnCase)
{
    logIn(3);
    EXPECT_EQ(sent(take("get_pano_list", QStringLiteral("aaaaaaaaaaaaaa"))), QStringLiteral("upload"));
    EXPECT_EQ(sent(take("get_pano_list", QStringLiteral("<p>xAAAAAAAAAAAAAAx"))),
              QStringLiteral("get_pano_list"));
}

TEST_F(PanoramaSteps, OneThatIsMissingIsSentThenAskedForUntilItIsListed)
{
    logIn(2);
    UploadAction action = take("get_pano_list", QString());
    EXPECT_EQ(sent(action), QStringLiteral("upload"));
    EXPECT_FALSE(action.progress);
    EXPECT_EQ(action.request->body_file, project.panoramas[0]->file_path);

    action = take("upload", QStringLiteral("OK anything"));
    EXPECT_EQ(action.progress, 50 / 3);
    EXPECT_EQ(sent(action), QStringLiteral("get_pano_list"));
    EXPECT_EQ(action.wait_ms, 0);
    EXPECT_EQ(project.upload_counters[UploadPollAgain], 1u);

    for (int poll = 0; poll < 50; ++poll) {
        action = take("get_pano_list", QStringLiteral("others"));
        EXPECT_EQ(action.wait_ms, 1000);
        EXPECT_EQ(sent(action), QStringLiteral("get_pano_list"));
        EXPECT_EQ(project.upload_counters[UploadPollAgain], 1u);
        EXPECT_FALSE(action.progress);
    }
    action = take("get_pano_list", QStringLiteral("AAAAAAAAAAAAAA"));
    EXPECT_EQ(action.progress, 100 / 3);
    EXPECT_EQ(action.wait_ms, 0);
    EXPECT_EQ(project.upload_counters[UploadPollAgain], 0u);

    // The next one is sent at once, not waited for.
    EXPECT_EQ(sent(take("get_pano_list", QStringLiteral("AAAAAAAAAAAAAA"))), QStringLiteral("upload"));
    EXPECT_EQ(take("upload", QStringLiteral("OK")).progress, 150 / 3);
}

TEST_F(PanoramaSteps, AfterTheLastOneTheAlbumIsMade)
{
    logIn(1);
    const UploadAction action = take("get_pano_list", QStringLiteral("AAAAAAAAAAAAAA"));
    EXPECT_EQ(sent(action), QStringLiteral("create_roaming_album"));
    EXPECT_EQ(action.progress, 50);
}

TEST_F(PanoramaSteps, TheEntryPanoramaIsTheSelectorsWhenTheAlbumIsMadeANegativeOneTheFirst)
{
    logIn(2);
    const auto entryOf = [this](int selector) {
        step() = 1;
        const UploadAction action = take("get_pano_list", QStringLiteral("BBBBBBBBBBBBBB"), selector);
        return action.request->query[3];
    };
    using Item = QPair<QString, QString>;
    EXPECT_EQ(entryOf(1), Item(QStringLiteral("entrypanoid"), QStringLiteral("BBBBBBBBBBBBBB")));
    EXPECT_EQ(project.entry_index, 1);
    EXPECT_EQ(entryOf(-1), Item(QStringLiteral("entrypanoid"), QStringLiteral("AAAAAAAAAAAAAA")));
    EXPECT_EQ(project.entry_index, 0);
}

TEST_F(PanoramaSteps, TooLittleStorageEndsTheUpload)
{
    logIn(1);
    for (const char* body : {"ER 1", "ER 12", "ER 1\r\nmore"}) {
        const UploadAction action = take("upload", QLatin1String(body));
        EXPECT_EQ(action.notice, UploadNotice::StorageFull);
        EXPECT_TRUE(action.unlock);
        EXPECT_FALSE(action.request);
    }
}

TEST_F(PanoramaSteps, AnyOtherAnswerToAnUploadStallsTheChain)
{
    logIn(1);
    for (const char* body : {"", "ER 2", "ER", "ER1", "er 1", "ok", "<html>OK"})
        EXPECT_TRUE(nothing(take("upload", QLatin1String(body)))) << body;
}

TEST_F(PanoramaSteps, AListBehindTheLastPanoramaStops)
{
    logIn(1);
    step() = 1;
    EXPECT_TRUE(nothing(take("get_pano_list", QStringLiteral("AAAAAAAAAAAAAA"))));
    EXPECT_EQ(step(), 1u);
}

TEST_F(PanoramaSteps, APanoramaFileThatCannotBeOpenedEndsTheUpload)
{
    logIn(1);
    QFile::remove(project.panoramas[0]->file_path);
    const UploadAction action = take("get_pano_list", QString());
    EXPECT_EQ(action.notice, UploadNotice::FileUnreadable);
    EXPECT_EQ(action.detail, project.panoramas[0]->file_path);
    EXPECT_TRUE(action.unlock);
    EXPECT_FALSE(action.request);
}

TEST_F(PanoramaSteps, ProgressOfAThousandPanoramasIsExact)
{
    fillTour(project, 1000, 0);
    step() = 999;
    EXPECT_EQ(take("upload", QStringLiteral("OK")).progress, 99950 / 1001);
}

} // namespace
