// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Panorama files into the project.

#include "linking/ImportPanoramas.h"
#include "project/PanoIdentity.h"
#include "tests/support/JpegTiles.h"
#include "tests/support/PnoParts.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using Fate = ImportResult::Fate;
using Mismatch = ImportResult::Mismatch;

/// A small panorama whose smallest tile decodes; with lidar on request.
pnotest::PnoOptions picture(const std::string& identity, bool lidar = false)
{
    pnotest::PnoOptions options;
    options.identity = identity;
    const pnotest::Bytes jpeg = pnotest::solidJpeg({200, 40, 40});
    options.tiles = [jpeg](int level, int, int) { return level == 0 ? jpeg : pnotest::Bytes{1, 2, 3, 4}; };
    if (lidar) options.depthTiles = pnotest::tinyTiles();
    return options;
}

class Import : public testing::Test
{
protected:
    QString write(const std::string& name, const pnotest::Bytes& bytes) const
    {
        return QString::fromStdString(m_folder.write(name, bytes));
    }
    QString write(const std::string& name, const std::string& identity, bool lidar = false) const
    {
        return write(name, pnotest::panorama(picture(identity, lidar)));
    }

    pnotest::TemporaryFolder m_folder;
    RoamProject project;
};

TEST_F(Import, TheRecordHoldsWhatTheFileSays)
{
    const QString path = write("room.pno", "AAAAAAAAAAAAAB", true);
    const ImportResult result = importPanoramas(project, {path});
    ASSERT_EQ(result.added, 1);
    EXPECT_EQ(result.files.at(0).fate, Fate::Added);
    const PanoNode& node = *project.panoramas.at(0);
    EXPECT_EQ(node.id, 1u);
    EXPECT_EQ(node.name(), QByteArray("AAAAAAAAAAAAAB"));
    EXPECT_TRUE(node.lidar);
    EXPECT_TRUE(project.lidar);
    EXPECT_EQ(node.plan_center_x, 11);
    EXPECT_EQ(node.plan_center_y, 22);
    EXPECT_EQ(node.plan_src, QString());
    EXPECT_EQ(node.base_name, QStringLiteral("room"));
    EXPECT_EQ(node.file_path, path);
    EXPECT_EQ(node.thumbnail.size(), QSize(256, 96));
    EXPECT_NEAR(qRed(node.thumbnail.pixel(100, 50)), 200, 3);
    EXPECT_EQ(node.position_x, 0);
    EXPECT_TRUE(node.photos.isEmpty());
    const PnoImageInfo expected = pnotest::parts(picture("AAAAAAAAAAAAAB", true)).info;
    EXPECT_EQ(std::memcmp(&node.parameters, &expected, sizeof expected), 0);
    EXPECT_TRUE(project.modified);
}

TEST_F(Import, WithoutAPointBlockThePlanCentreIsZero)
{
    importPanoramas(project, {write("a.pno", "AAAAAAAAAAAAAB")});
    EXPECT_EQ(project.panoramas.at(0)->plan_center_x, 0);
    EXPECT_EQ(project.panoramas.at(0)->plan_center_y, 0);
}

TEST_F(Import, TheSameFileTwiceIsAddedOnce)
{
    const QString path = write("a.pno", "AAAAAAAAAAAAAB");
    ImportResult result = importPanoramas(project, {path, path});
    EXPECT_EQ(result.added, 1);
    EXPECT_EQ(result.files.at(1).fate, Fate::Duplicate);
    result = importPanoramas(project, {path});
    EXPECT_EQ(result.added, 0);
    EXPECT_EQ(result.mismatch, Mismatch::None);
    EXPECT_EQ(project.panoramas.size(), 1u);
}

TEST_F(Import, AnIdentityThatDiffersInLetterCaseOnlyIsADuplicate)
{
    const ImportResult result =
        importPanoramas(project, {write("a.pno", "AAAAAAAAAAAAAB"), write("b.pno", "aaaaaaaaaaaaab")});
    EXPECT_EQ(result.added, 1);
    EXPECT_EQ(result.files.at(1).fate, Fate::Duplicate);
}

TEST_F(Import, RadarThenNoRadarInOneBatchKeepsTheFirstAndTellsOnce)
{
    const ImportResult result =
        importPanoramas(project, {write("a.pno", "AAAAAAAAAAAAAB", true), write("b.pno", "AAAAAAAAAAAAAC")});
    EXPECT_EQ(result.added, 1);
    EXPECT_EQ(result.files.at(1).fate, Fate::LidarMismatch);
    EXPECT_EQ(result.mismatch, Mismatch::DroppedWithoutLidar);
    EXPECT_EQ(project.panoramas.at(0)->name(), QByteArray("AAAAAAAAAAAAAB"));
    EXPECT_TRUE(project.lidar);
}

TEST_F(Import, TwoRadarFilesIntoAProjectWithoutAreBothDropped)
{
    importPanoramas(project, {write("a.pno", "AAAAAAAAAAAAAB")});
    const ImportResult result = importPanoramas(
        project, {write("b.pno", "AAAAAAAAAAAAAC", true), write("c.pno", "AAAAAAAAAAAAAD", true)});
    EXPECT_EQ(result.added, 0);
    EXPECT_EQ(result.mismatch, Mismatch::DroppedWithLidar);
    EXPECT_FALSE(project.lidar);
    EXPECT_EQ(project.panoramas.size(), 1u);
}

TEST_F(Import, TheFirstAcceptedPanoramaDecidesNotTheFirstFile)
{
    const ImportResult result = importPanoramas(
        project, {write("broken.pno", pnotest::Bytes{1, 2, 3}), write("a.pno", "AAAAAAAAAAAAAB", true)});
    EXPECT_EQ(result.added, 1);
    EXPECT_TRUE(project.lidar);
    EXPECT_EQ(result.mismatch, Mismatch::None);
}

TEST_F(Import, AProjectEmptiedAgainIsDecidedAnew)
{
    project.lidar = true; // what an earlier panorama left
    importPanoramas(project, {write("a.pno", "AAAAAAAAAAAAAB")});
    EXPECT_EQ(project.panoramas.size(), 1u);
    EXPECT_FALSE(project.lidar);
}

TEST_F(Import, TheBaseNameIsTheFileNameWithoutItsLastFourCharacters)
{
    EXPECT_EQ(panoBaseName(QStringLiteral("/a.b/room.pno")), QStringLiteral("room"));
    EXPECT_EQ(panoBaseName(QStringLiteral("/a.b/room")), QString());
    EXPECT_EQ(panoBaseName(QStringLiteral("/a.b/livingroom")), QStringLiteral("living"));
    EXPECT_EQ(panoBaseName(QStringLiteral("/x/abc")), QString());
    EXPECT_EQ(panoBaseName(QStringLiteral(u"/全景/客厅.pno")), QStringLiteral(u"客厅"));
}

TEST_F(Import, PathsWithChineseSpacesAndAccentsAreRead)
{
    const QString path = write("全景 été/客厅 1.pno", "AAAAAAAAAAAAAB");
    const ImportResult result = importPanoramas(project, {path});
    EXPECT_EQ(result.added, 1);
    EXPECT_EQ(project.panoramas.at(0)->base_name, QStringLiteral(u"客厅 1"));
    EXPECT_EQ(project.panoramas.at(0)->file_path, path);
}

TEST_F(Import, NoFileChosenLeavesTheModifiedFlag)
{
    importPanoramas(project, {});
    EXPECT_FALSE(project.modified);
}

TEST_F(Import, AnImportThatAddsNothingStillSetsTheModifiedFlag)
{
    const ImportResult result = importPanoramas(project, {QStringLiteral("/nowhere/a.pno")});
    EXPECT_EQ(result.added, 0);
    EXPECT_EQ(result.files.at(0).fate, Fate::Unreadable);
    EXPECT_EQ(result.files.at(0).status, -1);
    EXPECT_TRUE(project.modified);
}

TEST_F(Import, APanoramaWithoutADecodableThumbnailIsDropped)
{
    pnotest::PnoOptions options;
    options.identity = "AAAAAAAAAAAAAB"; // its tiles decode to nothing
    const ImportResult result = importPanoramas(project, {write("a.pno", pnotest::panorama(options))});
    EXPECT_EQ(result.files.at(0).fate, Fate::NoThumbnail);
    EXPECT_TRUE(project.panoramas.empty());
    EXPECT_FALSE(project.lidar);
}

TEST_F(Import, ADroppedLidarFileDoesNotDecideAnEmptyProject)
{
    pnotest::PnoOptions options;
    options.identity = "AAAAAAAAAAAAAB";
    options.depthTiles = pnotest::tinyTiles();
    importPanoramas(project, {write("a.pno", pnotest::panorama(options)), write("b.pno", "AAAAAAAAAAAAAC")});
    ASSERT_EQ(project.panoramas.size(), 1u);
    EXPECT_FALSE(project.lidar);
}

TEST_F(Import, TruncatedBentAndForeignFilesAreSkippedSilently)
{
    const pnotest::Bytes whole = pnotest::panorama(picture("AAAAAAAAAAAAAB"));
    QStringList paths;
    for (const std::size_t size : {std::size_t(0), std::size_t(1), std::size_t(703), whole.size() / 2}) {
        pnotest::Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        paths << write("cut" + std::to_string(size) + ".pno", cut);
    }
    pnotest::Bytes foreign = whole;
    foreign[0] = 0xD8;
    paths << write("foreign.pno", foreign);
    pnotest::PnoParts bent = pnotest::parts(picture("AAAAAAAAAAAAAB"));
    bent.capture.month = 13;
    paths << write("month.pno", bent.bytes());
    pnotest::PnoParts columnMajor = pnotest::parts(picture("AAAAAAAAAAAAAB"));
    std::swap(columnMajor.tiles[1], columnMajor.tiles[2]);
    paths << write("order.pno", columnMajor.bytes());
    paths << QString::fromStdString(m_folder.path("")); // a folder
    paths << write("good.pno", whole);

    const ImportResult result = importPanoramas(project, paths);
    EXPECT_EQ(result.added, 1);
    for (std::size_t i = 0; i + 1 < result.files.size(); ++i)
        EXPECT_EQ(result.files[i].fate, Fate::Unreadable) << result.files[i].path.toStdString();
    EXPECT_EQ(result.files.back().fate, Fate::Added);
    EXPECT_EQ(result.mismatch, Mismatch::None);
}

} // namespace
