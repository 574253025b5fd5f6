// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A tour file becomes a project, its files and the linking library's state.

#include "project/SaveTour.h"
#include "tests/linking/support/TourFolders.h"

#include <QFileInfo>
#include <QImage>

#include <gtest/gtest.h>

namespace {

constexpr const char* kA = "AAAAAAAAAAAAAB";
constexpr const char* kB = "BBBBBBBBBBBBBB";

QByteArray panoElement(const char* identity, const QByteArray& inside = "")
{
    return QByteArray("<panorama pano_id=\"") + identity + "\">" + inside + "</panorama>";
}

QByteArray linkElement(const char* name_0, const char* name_1, const QByteArray& more = "")
{
    return QByteArray("<pano_link pano_id_0=\"") + name_0 + "\" pano_id_1=\"" + name_1 + "\" " + more + "/>";
}

RecordBytes xml(const QByteArray& panoramas, const QByteArray& links = "",
                const QByteArray& entry = "<entry_point/>")
{
    return {0xFFE0, "pano_group.xml", xmlOf(panoramas, links, entry)};
}

class OpenTour : public TourFolders, public testing::Test
{
protected:
    QStringList filesInWorking() const { return QDir(working()).entryList(QDir::Files, QDir::Name); }

    static QByteArray pictureBytes(int width, int height)
    {
        QImage picture(width, height, QImage::Format_RGB32);
        picture.fill(Qt::green);
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("p.png"));
        picture.save(path);
        return bytesOf(path);
    }
};

TEST_F(OpenTour, AFileThatIsNotThereFailsWithItsPath)
{
    const OpenResult result = openTour(project, linker, top() + QStringLiteral("none.roa"));
    EXPECT_EQ(result.outcome, OpenOutcome::Failed);
    EXPECT_EQ(result.path, top() + QStringLiteral("none.roa"));
}

TEST_F(OpenTour, AFileWithoutAByteIsEmptyAndLeavesAnEmptyProject)
{
    for (const char* bytes : {"", "\xC1"}) {
        const OpenResult result = openBytes(bytes);
        EXPECT_EQ(result.outcome, OpenOutcome::Empty);
        EXPECT_EQ(result.path, tourPath());
        EXPECT_TRUE(project.panoramas.empty());
        EXPECT_TRUE(linker.calls.isEmpty());
    }
}

TEST_F(OpenTour, OtherFirstTwoBytesFailWithTheTourFilesPath)
{
    QByteArray bytes = tourBytes({xml(panoElement(kA))});
    bytes[1] = '\x74';
    const OpenResult result = openBytes(bytes);
    EXPECT_EQ(result.outcome, OpenOutcome::Failed);
    EXPECT_EQ(result.path, tourPath());
    EXPECT_EQ(result.detail, QStringLiteral("it is not a tour file"));
    EXPECT_TRUE(project.panoramas.empty());
}

TEST_F(OpenTour, APanoramaFileIsTiedToItsPanoramaByIdentity)
{
    const QByteArray file = panoramaBytes(kB);
    ASSERT_TRUE(open({xml(panoElement(kA) + panoElement(kB)), {0xFFE1, "客厅 1.pno", file}}));
    EXPECT_EQ(node(1).name(), QByteArray(kB));
    EXPECT_EQ(node(1).base_name, QStringLiteral("客厅 1"));
    EXPECT_EQ(node(1).file_path, inWorking(QStringLiteral("客厅 1.pno")));
    EXPECT_EQ(node(1).thumbnail.size(), QSize(256, 96));
    EXPECT_EQ(bytesOf(node(1).file_path), file);
    EXPECT_TRUE(node(0).file_path.isEmpty());
}

TEST_F(OpenTour, APanoramaFileThatDoesNotOpenOrBelongsToNoneStaysOnDiskAndIsIgnored)
{
    ASSERT_TRUE(
        open({xml(panoElement(kA)), {0xFFE1, "broken.pno", "x"}, {0xFFE1, "other.pno", panoramaBytes(kB)}}));
    EXPECT_TRUE(node(0).file_path.isEmpty());
    EXPECT_EQ(filesInWorking(), (QStringList{QStringLiteral("broken.pno"), QStringLiteral("other.pno")}));
}

TEST_F(OpenTour, OfPanoramasWithOneIdentityTheFirstGetsTheFile)
{
    ASSERT_TRUE(open({xml(panoElement(kA) + panoElement(kA)), {0xFFE1, "a.pno", panoramaBytes(kA)}}));
    EXPECT_FALSE(node(0).file_path.isEmpty());
    EXPECT_TRUE(node(1).file_path.isEmpty());
}

TEST_F(OpenTour, TheEntryIsTheFirstPanoramaOfItsIdentity)
{
    project.entry_index = 7;
    ASSERT_TRUE(open({xml(panoElement(kA) + panoElement(kB) + panoElement(kB), "",
                          "<entry_point pano_id=\"BBBBBBBBBBBBBB\"/>")}));
    EXPECT_EQ(project.entry_index, 1);
}

TEST_F(OpenTour, AnEntryThatMatchesNoPanoramaMakesTheFirstOneTheEntry)
{
    project.entry_index = 7;
    ASSERT_TRUE(
        open({xml(panoElement(kA) + panoElement(kB), "", "<entry_point pano_id=\"CCCCCCCCCCCCCC\"/>")}));
    EXPECT_EQ(project.entry_index, 0);
}

TEST_F(OpenTour, ModesZeroAndOneReadAsOneAndBecomeZeroWithMatchData)
{
    const QByteArray links = linkElement(kA, kB) + linkElement(kA, kB, "mode=\"0\"") +
                             linkElement(kA, kB, "mode=\"1\"") +
                             linkElement(kB, "CCCCCCCCCCCCCC", "mode=\"1\"");
    ASSERT_TRUE(open({xml("", links), {0xFFE2, "AAAAAAAAAAAAAB_BBBBBBBBBBBBBB_1.dat", "1"}}));
    EXPECT_EQ(link(0).mode, 2);
    EXPECT_EQ(link(1).mode, 0);
    EXPECT_EQ(link(2).mode, 0);
    EXPECT_EQ(link(3).mode, 1);
}

TEST_F(OpenTour, MatchDataIsTiedByTheSmallerIdentityFirst)
{
    ASSERT_TRUE(open({xml("", linkElement("BAAAAAAAAAAAAA", "AZZZZZZZZZZZZZ")),
                      {0xFFE2, "AZZZZZZZZZZZZZ_BAAAAAAAAAAAAA_0.dat", "0"},
                      {0xFFE2, "AZZZZZZZZZZZZZ_BAAAAAAAAAAAAA_1.dat", "1"},
                      {0xFFE2, "BAAAAAAAAAAAAA_AZZZZZZZZZZZZZ_0.dat", "2"},
                      {0xFFE2, "AZZZZZZZZZZZZZ_BAAAAAAAAAAAAA_2.dat", "3"}}));
    EXPECT_EQ(link(0).match_path_0, inWorking(QStringLiteral("AZZZZZZZZZZZZZ_BAAAAAAAAAAAAA_0.dat")));
    EXPECT_EQ(link(0).match_path_1, inWorking(QStringLiteral("AZZZZZZZZZZZZZ_BAAAAAAAAAAAAA_1.dat")));
    EXPECT_EQ(bytesOf(link(0).match_path_0), QByteArray("0"));
}

TEST_F(OpenTour, APhotoIsTiedToTheFirstHotspotOfItsNameAndMeasured)
{
    const QByteArray photo = "<link_photo src=\"p.png\"/>";
    ASSERT_TRUE(open(
        {xml(panoElement(kA, photo) + panoElement(kB, photo)), {0xFFE3, "p.png", pictureBytes(30, 20)}}));
    EXPECT_EQ(node(0).photos[0].photo_path, inWorking(QStringLiteral("p.png")));
    EXPECT_EQ(node(0).photos[0].photo_width, 30);
    EXPECT_EQ(node(0).photos[0].photo_height, 20);
    EXPECT_EQ(node(1).photos[0].photo_path, QStringLiteral("p.png"));
    EXPECT_EQ(node(1).photos[0].photo_width, 0);
}

TEST_F(OpenTour, APhotoThatDoesNotLoadKeepsItsPathAndNoSize)
{
    const QByteArray picture = pictureBytes(300, 200);
    ASSERT_TRUE(open({xml(panoElement(kA, "<link_photo src='p.png'/><link_photo src='q.png'/>")),
                      {0xFFE3, "p.png", "text"},
                      {0xFFE3, "q.png", picture.left(picture.size() / 2)}}));
    for (const PhotoHotspot& photo : node(0).photos) {
        EXPECT_TRUE(photo.photo_path.startsWith(working()));
        EXPECT_EQ(photo.photo_width, 0);
        EXPECT_EQ(photo.photo_height, 0);
    }
}

TEST_F(OpenTour, APhotoThatIsNotInTheTourIsNotTakenFromTheCurrentFolderWhenItIsSaved)
{
    ASSERT_TRUE(
        open({xml(panoElement(kA, "<link_photo src='secret.txt'/>")), {0xFFE1, "a.pno", panoramaBytes(kA)}}));
    EXPECT_EQ(node(0).photos[0].photo_path, QStringLiteral("secret.txt"));
    writeBytes(top() + QStringLiteral("secret.txt"), "mine");
    const QString before = QDir::currentPath();
    QDir::setCurrent(top());
    const SaveResult result = saveTour(project, 0, top() + QStringLiteral("again.roa"));
    QDir::setCurrent(before);
    EXPECT_EQ(result.outcome, SaveOutcome::Failed);
    EXPECT_TRUE(result.detail.contains(QLatin1String("secret.txt")));
    EXPECT_FALSE(QFileInfo::exists(top() + QStringLiteral("again.roa")));
}

TEST_F(OpenTour, TwoPhotosOfOneNameWithDifferentBytesKeepTheirOwn)
{
    ASSERT_TRUE(open({xml(panoElement(kA, "<link_photo src='p.png'/><link_photo src='p.png'/>")),
                      {0xFFE3, "p.png", pictureBytes(10, 10)},
                      {0xFFE3, "p.png", pictureBytes(20, 10)}}));
    EXPECT_EQ(node(0).photos[0].photo_width, 10);
    EXPECT_EQ(node(0).photos[1].photo_width, 20);
    EXPECT_NE(node(0).photos[0].photo_path, node(0).photos[1].photo_path);
}

TEST_F(OpenTour, TwoPanoramaFilesOfOneNameKeepTheirOwnDataAndTheirBaseName)
{
    ASSERT_TRUE(open({xml(panoElement(kA) + panoElement(kB)),
                      {0xFFE1, "room.pno", panoramaBytes(kA)},
                      {0xFFE1, "room.pno", panoramaBytes(kB)}}));
    EXPECT_EQ(node(0).base_name, QStringLiteral("room"));
    EXPECT_EQ(node(1).base_name, QStringLiteral("room"));
    EXPECT_EQ(bytesOf(node(0).file_path), panoramaBytes(kA));
    EXPECT_EQ(bytesOf(node(1).file_path), panoramaBytes(kB));
    EXPECT_TRUE(node(1).file_path.endsWith(QLatin1String("room.pno")));
}

TEST_F(OpenTour, APlanIsTiedToEveryPanoramaOfItsName)
{
    const QByteArray location = "<location plan_src='x-00000000.png'/>";
    QStringList shown;
    PlanViews views;
    views.showPicture = [&](const QString& path) { shown << path; };
    ASSERT_TRUE(open({xml(panoElement(kA, location) + panoElement(kB, location)),
                      {0xFFE4, "x-00000000.png", pictureBytes(4, 4)}},
                     views));
    const QString path = inWorking(QStringLiteral("x-00000000.png"));
    EXPECT_EQ(node(0).plan_src, path);
    EXPECT_EQ(node(1).plan_src, path);
    EXPECT_EQ(shown, QStringList{path});
    EXPECT_TRUE(project.has_plan_image);
    EXPECT_EQ(project.stage, MapGenerated);
}

TEST_F(OpenTour, ACloudIsDecompressedByTheLibraryAndThenShown)
{
    QStringList order;
    linker.onCall = [&](const QString& call) { order << call; };
    PlanViews views;
    views.showCloud = [&](const QString& path) { order << QStringLiteral("show ") + path; };
    views.showPicture = [](const QString&) { ADD_FAILURE(); };
    ASSERT_TRUE(open({xml(panoElement(kA, "<location plan_src='x-00000000.cld'/>")),
                      {0xFFE4, "x-00000000.cld", "cloud"},
                      {0xFFE4, "other.CLD", "cloud"}},
                     views));
    const QString path = inWorking(QStringLiteral("x-00000000.cld"));
    ASSERT_GE(order.size(), 3);
    EXPECT_EQ(order[0], QStringLiteral("decompressCloud ") + path);
    EXPECT_EQ(order[1], QStringLiteral("show ") + path);
    EXPECT_TRUE(order[2].startsWith(QLatin1String("loadNode ")));
    EXPECT_EQ(project.stage, MapGenerated);
}

TEST_F(OpenTour, APlanThatNeverCameIsClearedBeforeTheLibraryHearsOfIt)
{
    ASSERT_TRUE(open({xml(panoElement(kA, "<location plan_src='x-00000000.png'/>"))}));
    EXPECT_TRUE(node(0).plan_src.isEmpty());
    EXPECT_EQ(project.stage, NotLinked);
    EXPECT_FALSE(project.has_plan_image);
    EXPECT_EQ(linker.calls, QStringList{QStringLiteral("loadNode  0 0 0 0 0 0 0 0 ")});
}

TEST_F(OpenTour, StageIsTwoOnlyForPlansOfTheLibrarysNames)
{
    ASSERT_TRUE(open({xml(panoElement(kA, "<location plan_src='plan.png'/>"), linkElement(kA, kB)),
                      {0xFFE4, "plan.png", "x"}}));
    EXPECT_EQ(project.stage, Linked);
    EXPECT_TRUE(project.has_plan_image);
}

TEST_F(OpenTour, StageFollowsLinksAndPlans)
{
    ASSERT_TRUE(open({xml(panoElement(kA))}));
    EXPECT_EQ(project.stage, NotLinked);
    ASSERT_TRUE(open({xml(panoElement(kA), linkElement(kA, kB))}));
    EXPECT_EQ(project.stage, Linked);
}

TEST_F(OpenTour, TheFirstPanoramaDecidesWhetherTheTourHasLidar)
{
    ASSERT_TRUE(open({xml(panoElement(kA, "<image_attributes lidar='1'/>") + panoElement(kB))}));
    EXPECT_TRUE(project.lidar);
}

TEST_F(OpenTour, TheLibraryGetsAllNodesThenAllLinksInListOrder)
{
    const QByteArray location = "<location position_x='1.5' position_y='2' position_z='-3' vertex_x='4' "
                                "vertex_y='5' direction='0.25' plan_center_x='6' plan_center_y='7' "
                                "plan_src='x-00000000.png'/>";
    const QByteArray values =
        "rot_0='1' rot_1='2' tilt_x0='3' tilt_x1='4' tilt_y0='5' icon_y0='6' icon_y1='7' "
        "spacing='8' mode='0' reliability='0.5'";
    ASSERT_TRUE(open(
        {xml(panoElement(kB, location) + panoElement(kA), linkElement(kB, kA, values) + linkElement(kA, kA)),
         {0xFFE1, "b.pno", panoramaBytes(kB)},
         {0xFFE4, "x-00000000.png", "x"}}));
    EXPECT_EQ(
        linker.calls,
        (QStringList{
            QStringLiteral("loadNode ") + inWorking(QStringLiteral("b.pno")) +
                QStringLiteral(" 1.5 2 -3 4 5 0.25 6 7 x-00000000.png"),
            QStringLiteral("loadNode  0 0 0 0 0 0 0 0 "),
            QStringLiteral("loadMatch BBBBBBBBBBBBBB AAAAAAAAAAAAAB 1 2 3 4 5 6 7 8 1 0.5"),
            QStringLiteral("loadMatch AAAAAAAAAAAAAB AAAAAAAAAAAAAB 1.5707963267949 1.5707963267949 0 0 "
                           "0 2.356 2.356 2 2 0"),
        }));
}

TEST_F(OpenTour, AFileCutShortInsideItsRecordsLeavesPanoramasWithoutLibraryState)
{
    const QByteArray whole = tourBytes({xml(panoElement(kA) + panoElement(kB), linkElement(kA, kB)),
                                        {0xFFE1, "a.pno", panoramaBytes(kA)},
                                        {0xFFE1, "b.pno", panoramaBytes(kB)}});
    const OpenResult result = openBytes(whole.left(whole.size() - 1));
    EXPECT_EQ(result.outcome, OpenOutcome::Failed);
    EXPECT_EQ(result.path, tourPath());
    EXPECT_EQ(result.detail, QStringLiteral("it is cut short"));
    EXPECT_EQ(project.panoramas.size(), 2u);
    EXPECT_EQ(project.links.size(), 1u);
    EXPECT_EQ(project.stage, NotLinked);
    EXPECT_FALSE(node(0).file_path.isEmpty());
    EXPECT_EQ(filesInWorking(), QStringList{QStringLiteral("a.pno")});
    EXPECT_TRUE(linker.calls.isEmpty());
}

TEST_F(OpenTour, ADescriptionThatCannotBeReadFailsAndAddsNothing)
{
    const OpenResult result =
        open({xml(panoElement(kA, "<link_photo caption=\"the \"big\" room\"/>")), {0xFFE1, "a.pno", "x"}});
    EXPECT_EQ(result.outcome, OpenOutcome::Failed);
    EXPECT_EQ(result.path, tourPath());
    EXPECT_TRUE(result.detail.startsWith(QLatin1String("its description cannot be read: line 1,")));
    EXPECT_TRUE(project.panoramas.empty());
    EXPECT_EQ(filesInWorking(), QStringList());
    EXPECT_TRUE(linker.calls.isEmpty());
}

TEST_F(OpenTour, AnEmptyDescriptionFails)
{
    EXPECT_EQ(open({{0xFFE0, "pano_group.xml", ""}}).outcome, OpenOutcome::Failed);
}

TEST_F(OpenTour, ANameThatIsNoneFailsWithWhatWouldHaveBeenWritten)
{
    for (const char* name : {"../out.pno", "", "..", "/out.pno"}) {
        clearProject(project);
        const OpenResult result = open({xml(panoElement(kA)), {0xFFE1, name, panoramaBytes(kA)}});
        EXPECT_EQ(result.outcome, OpenOutcome::Failed);
        EXPECT_EQ(result.path, working() + QString::fromUtf8(name));
        EXPECT_EQ(project.panoramas.size(), 1u);
        EXPECT_FALSE(QFileInfo::exists(top() + QStringLiteral("工作 é/out.pno")));
        EXPECT_TRUE(linker.calls.isEmpty());
    }
}

TEST_F(OpenTour, AFileThatCannotBeMadeFailsWithItsOwnPath)
{
    QDir().mkpath(inWorking(QStringLiteral("Preview")));
    const OpenResult result = open({xml(panoElement(kA)), {0xFFE3, "Preview", "x"}});
    EXPECT_EQ(result.outcome, OpenOutcome::Failed);
    EXPECT_EQ(result.path, inWorking(QStringLiteral("Preview")));
    EXPECT_EQ(project.panoramas.size(), 1u);
}

TEST_F(OpenTour, RecordsOfUnknownKindsAreUnpackedAndIgnored)
{
    ASSERT_TRUE(open({{0x0001, "notes.txt", "n"}, xml(panoElement(kA))}));
    EXPECT_EQ(bytesOf(inWorking(QStringLiteral("notes.txt"))), QByteArray("n"));
    EXPECT_EQ(project.panoramas.size(), 1u);
}

TEST_F(OpenTour, FilesBeforeTheDescriptionAreUnpackedAndTiedToNothing)
{
    ASSERT_TRUE(open({{0xFFE1, "a.pno", panoramaBytes(kA)}, xml(panoElement(kA))}));
    EXPECT_TRUE(node(0).file_path.isEmpty());
    EXPECT_EQ(filesInWorking(), QStringList{QStringLiteral("a.pno")});
}

TEST_F(OpenTour, ATourWithoutADescriptionIsATourWithoutPanoramas)
{
    ASSERT_TRUE(open({}));
    EXPECT_TRUE(project.panoramas.empty());
    EXPECT_TRUE(linker.calls.isEmpty());
}

TEST_F(OpenTour, PathAndModifiedFlagAreTheCallers)
{
    project.file_path = QStringLiteral("/x.roa");
    ASSERT_TRUE(open({xml(panoElement(kA))}));
    EXPECT_EQ(project.file_path, QStringLiteral("/x.roa"));
    EXPECT_FALSE(project.modified);
}

} // namespace
