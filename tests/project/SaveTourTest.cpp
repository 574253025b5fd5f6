// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The tour file taken apart again, and the outcomes of a save that cannot be done.

#include "project/SaveTour.h"
#include "project/TourContainer.h"
#include "project/TourXml.h"
#include "tests/project/TourParts.h"
#include "tests/project/Tours.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

constexpr const char* kA = "AAAAAAAAAAAAAB";
constexpr const char* kB = "BBBBBBBBBBBBBB";
constexpr const char* kC = "CCCCCCCCCCCCCC";

class SaveTour : public TourForTest, public testing::Test
{
protected:
    QString path() const { return file(QStringLiteral("tour.roa")); }
    QString kept() const { return path() + QLatin1Char('~'); }
    SaveResult save() { return saveTour(project, 0, path()); }

    std::vector<TourPart> parts() const
    {
        std::vector<TourPart> result;
        EXPECT_TRUE(takeApart(path(), &result));
        return result;
    }

    PhotoHotspot photo(const QString& name, const QByteArray& bytes)
    {
        PhotoHotspot hotspot;
        hotspot.photo_path = write(name, bytes);
        return hotspot;
    }
};

TEST_F(SaveTour, HoldsEveryFileInOrderUnderItsKindAndName)
{
    PanoNode* a = add(kA, QStringLiteral("room 1"), "first panorama");
    PanoNode* b = add(kB, QStringLiteral(u"客厅 été"), QByteArray("\0\x01\xFF second", 10));
    PanoLink* one = link(kA, kB);
    one->match_path_0 = write(QStringLiteral("AAAAAAAAAAAAAB_BBBBBBBBBBBBBB_0.dat"), "match 0");
    one->match_path_1 = write(QStringLiteral("AAAAAAAAAAAAAB_BBBBBBBBBBBBBB_1.dat"), "match 1");
    a->photos.append(photo(QStringLiteral("p1.jpg"), "photo 1"));
    a->photos.append(photo(QStringLiteral("p2.jpg"), ""));
    b->photos.append(photo(QStringLiteral("p3.jpg"), "photo 3"));
    a->plan_src = write(QStringLiteral("x-00000000.png"), "plan");
    ASSERT_TRUE(save());

    const std::vector<TourPart> found = parts();
    const struct
    {
        unsigned kind;
        QByteArray name;
        QByteArray data;
    } expected[] = {
        {0xFFE0, "pano_group.xml", tourxml::build(project, 0).toUtf8()},
        {0xFFE1, "room 1.pno", "first panorama"},
        {0xFFE1, QStringLiteral(u"客厅 été.pno").toUtf8(), QByteArray("\0\x01\xFF second", 10)},
        {0xFFE2, "AAAAAAAAAAAAAB_BBBBBBBBBBBBBB_0.dat", "match 0"},
        {0xFFE2, "AAAAAAAAAAAAAB_BBBBBBBBBBBBBB_1.dat", "match 1"},
        {0xFFE3, "p1.jpg", "photo 1"},
        {0xFFE3, "p2.jpg", ""},
        {0xFFE3, "p3.jpg", "photo 3"},
        {0xFFE4, "x-00000000.png", "plan"},
    };
    ASSERT_EQ(found.size(), std::size(expected));
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_EQ(found[i].kind, expected[i].kind) << i;
        EXPECT_EQ(found[i].name(), expected[i].name) << i;
        EXPECT_EQ(found[i].nameField, expected[i].name + QByteArray(256 - expected[i].name.size(), '\0'))
            << i;
        EXPECT_EQ(found[i].data, expected[i].data) << i;
    }
    EXPECT_FALSE(found[0].data.startsWith("\xEF\xBB\xBF"));
}

TEST_F(SaveTour, AProjectWithoutPanoramasIsAZeroByteFileAndASuccess)
{
    project.entry_index = 4;
    EXPECT_TRUE(save());
    EXPECT_TRUE(QFile::exists(path()));
    EXPECT_EQ(QFileInfo(path()).size(), 0);
    EXPECT_EQ(project.entry_index, 4); // no description was built
}

TEST_F(SaveTour, AnEmptyProjectReplacesAnEarlierTour)
{
    write(QStringLiteral("tour.roa"), "earlier");
    EXPECT_TRUE(save());
    EXPECT_EQ(QFileInfo(path()).size(), 0);
    EXPECT_FALSE(QFile::exists(kept()));
}

TEST_F(SaveTour, TwoPanoramasSharingOnePlanProduceOneRecord)
{
    const QString plan = write(QStringLiteral("00000000.png"), "plan");
    const QString other = write(QStringLiteral("00000000.PNG"), "other plan");
    add(kA, QStringLiteral("a"))->plan_src = plan;
    add(kB, QStringLiteral("b"))->plan_src = other; // paths are compared case-sensitively
    add(kC, QStringLiteral("c"))->plan_src = plan;
    ASSERT_TRUE(save());
    QList<QByteArray> plans;
    for (const TourPart& part : parts())
        if (part.kind == 0xFFE4) plans << part.data;
    EXPECT_EQ(plans, (QList<QByteArray>{"plan", "other plan"}));
}

TEST_F(SaveTour, APhotoHotspotWithoutAPathProducesNeitherElementNorRecord)
{
    add(kA, QStringLiteral("a"))->photos.append(PhotoHotspot());
    ASSERT_TRUE(save());
    const std::vector<TourPart> found = parts();
    ASSERT_EQ(found.size(), 2u);
    EXPECT_FALSE(found[0].data.contains("link_photo"));
}

TEST_F(SaveTour, ALinkWithoutMatchFilesHasItsElementAndNoRecord)
{
    add(kA, QStringLiteral("a"));
    add(kB, QStringLiteral("b"));
    link(kA, kB)->match_path_1 = write(QStringLiteral("m_1.dat"), "only the second");
    ASSERT_TRUE(save());
    const std::vector<TourPart> found = parts();
    ASSERT_EQ(found.size(), 4u);
    EXPECT_EQ(found[3].kind, 0xFFE2u);
    EXPECT_EQ(found[3].name(), QByteArray("m_1.dat"));
    EXPECT_TRUE(found[0].data.contains("<pano_link pano_id_0=\"AAAAAAAAAAAAAB\""));
}

TEST_F(SaveTour, ThePlanOfASharedPathStandsAtItsFirstPanorama)
{
    add(kA, QStringLiteral("a"));
    add(kB, QStringLiteral("b"))->plan_src = write(QStringLiteral("p.cld"), "cloud");
    ASSERT_TRUE(save());
    EXPECT_EQ(parts().back().name(), QByteArray("p.cld"));
}

TEST_F(SaveTour, NeitherTheModifiedFlagNorThePathIsTouched)
{
    add(kA, QStringLiteral("a"));
    project.modified = true;
    ASSERT_TRUE(save());
    EXPECT_TRUE(project.modified);
    EXPECT_EQ(project.file_path, QString());
}

TEST_F(SaveTour, ANameOf256BytesOrMoreIsCutAndHasNoTerminator)
{
    for (const int length : {255, 256, 257, 300}) {
        const QByteArray field = tour::nameField(QString(length, QLatin1Char('n')));
        EXPECT_EQ(field.size(), 256);
        EXPECT_EQ(field.endsWith('\0'), length == 255) << length;
        EXPECT_EQ(field.count('n'), qMin(length, 256));
    }
    EXPECT_EQ(tour::nameField(QString(100, QChar(0x5BA2))), QString(86, QChar(0x5BA2)).toUtf8().left(256));
    EXPECT_EQ(tour::nameField(QString()), QByteArray(256, '\0'));
}

TEST_F(SaveTour, AFileNameIsThePartAfterTheLastSlashAndEmptyWithoutOne)
{
    EXPECT_EQ(tour::fileNameOf(QStringLiteral("/a/b.c/d.e")), QStringLiteral("d.e"));
    EXPECT_EQ(tour::fileNameOf(QStringLiteral("d.e")), QString());
}

TEST_F(SaveTour, AMissingSourceFailsAndTheHalfWrittenFileIsGone)
{
    add(kA, QStringLiteral("a"), QByteArray(100000, 'a'));
    add(kB, QStringLiteral("b"))->file_path = file(QStringLiteral("gone.pno"));
    const SaveResult result = save();
    EXPECT_EQ(result.outcome, SaveOutcome::Failed);
    EXPECT_TRUE(result.detail.contains(QStringLiteral("gone.pno"))) << result.detail.toStdString();
    EXPECT_FALSE(QFile::exists(path()));
    EXPECT_EQ(project.panoramas.size(), 2u);
}

TEST_F(SaveTour, EachKindOfSourceThatCannotBeReadFailsTheSave)
{
    for (int kind = 0; kind < 4; ++kind) {
        TourForTest tour;
        PanoNode* node = tour.add(kA, QStringLiteral("a"));
        PanoLink* joined = tour.link(kA, kB);
        const QString missing = tour.file(QStringLiteral("missing"));
        if (kind == 0) node->file_path = tour.folder(); // a folder is no file either
        if (kind == 1) joined->match_path_0 = missing;
        if (kind == 2) node->photos.append({0, 0, 0, 0, QString(), missing, {}});
        if (kind == 3) node->plan_src = missing;
        const QString out = tour.file(QStringLiteral("tour.roa"));
        tour.write(QStringLiteral("tour.roa"), "earlier");
        EXPECT_EQ(saveTour(tour.project, 0, out).outcome, SaveOutcome::Failed) << kind;
        EXPECT_FALSE(QFile::exists(out)) << kind;
        EXPECT_EQ(contentOf(out + QLatin1Char('~')), QByteArray("earlier")) << kind;
    }
}

TEST_F(SaveTour, ASourceLongerThanTheFormatsLengthFailsTheSave)
{
    PanoNode* node = add(kA, QStringLiteral("a"));
    QFile sparse(node->file_path);
    ASSERT_TRUE(sparse.open(QIODevice::ReadWrite));
    ASSERT_TRUE(sparse.resize(qint64(0x80000000)));
    const SaveResult result = save();
    EXPECT_EQ(result.outcome, SaveOutcome::Failed);
    EXPECT_TRUE(result.detail.contains(QStringLiteral("a.pno"))) << result.detail.toStdString();
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(SaveTour, AFolderThatIsNotThereCannotBeOpened)
{
    add(kA, QStringLiteral("a"));
    const SaveResult result = saveTour(project, 0, file(QStringLiteral("no folder/tour.roa")));
    EXPECT_EQ(result.outcome, SaveOutcome::CannotOpen);
    EXPECT_FALSE(result.detail.isEmpty());
}

TEST_F(SaveTour, AFolderOfThatNameCannotBeOpenedAndStays)
{
    add(kA, QStringLiteral("a"));
    QDir().mkpath(path() + QStringLiteral("/inside"));
    EXPECT_EQ(save().outcome, SaveOutcome::CannotOpen);
    EXPECT_TRUE(QDir(path() + QStringLiteral("/inside")).exists());
}

TEST_F(SaveTour, OneOfTheToursOwnFilesIsNeverWrittenOver)
{
    PanoNode* node = add(kA, QStringLiteral("a"), "the panorama");
    node->photos.append(photo(QStringLiteral("photo.jpg"), "the photo"));
    EXPECT_EQ(saveTour(project, 0, node->file_path).outcome, SaveOutcome::CannotOpen);
    EXPECT_EQ(saveTour(project, 0,
                       file(QStringLiteral("../") + QFileInfo(folder()).dir().dirName() +
                            QStringLiteral("/photo.jpg")))
                  .outcome,
              SaveOutcome::CannotOpen);
    const QString alias = file(QStringLiteral("alias.roa"));
    ASSERT_TRUE(QFile::link(node->file_path, alias));
    EXPECT_EQ(saveTour(project, 0, alias).outcome, SaveOutcome::CannotOpen);
    EXPECT_EQ(contentOf(node->file_path), QByteArray("the panorama"));
    EXPECT_EQ(contentOf(node->photos[0].photo_path), QByteArray("the photo"));
}

TEST_F(SaveTour, AnOwnFileThatStandsWhereTheEarlierTourWouldBeSetAsideIsNotLost)
{
    PanoNode* node = add(kA, QStringLiteral("a"));
    node->photos.append(photo(QStringLiteral("tour.roa~"), "the photo"));
    write(QStringLiteral("tour.roa"), "earlier");
    EXPECT_EQ(save().outcome, SaveOutcome::CannotOpen);
    EXPECT_EQ(contentOf(kept()), QByteArray("the photo"));
    EXPECT_EQ(contentOf(path()), QByteArray("earlier"));
}

TEST_F(SaveTour, APathWithChineseSpacesAndAccentsIsWritten)
{
    add(kA, QStringLiteral("a"));
    const QString out = file(QStringLiteral(u"漫游 été.roa"));
    ASSERT_TRUE(saveTour(project, 0, out));
    std::vector<TourPart> found;
    EXPECT_TRUE(takeApart(out, &found));
}

TEST_F(SaveTour, ASymbolicLinkStaysAndItsFileIsReplaced)
{
    add(kA, QStringLiteral("a"));
    const QString real = write(QStringLiteral("elsewhere/real.roa"), "earlier");
    ASSERT_TRUE(QFile::link(real, path()));
    ASSERT_TRUE(save());
    EXPECT_TRUE(QFileInfo(path()).isSymLink());
    std::vector<TourPart> found;
    EXPECT_TRUE(takeApart(real, &found));
    EXPECT_FALSE(QFile::exists(kept()));
    EXPECT_FALSE(QFile::exists(real + QLatin1Char('~')));
}

TEST_F(SaveTour, TheEarlierFilesPermissionsAreKept)
{
    add(kA, QStringLiteral("a"));
    write(QStringLiteral("tour.roa"), "earlier");
    const QFile::Permissions before =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    ASSERT_TRUE(QFile::setPermissions(path(), before));
    ASSERT_TRUE(save());
    EXPECT_EQ(QFile::permissions(path()), before);
}

TEST_F(SaveTour, AFullDeviceFailsAndTheDeviceStays)
{
    if (!QFile::exists(QStringLiteral("/dev/full"))) GTEST_SKIP() << "this system has no /dev/full";
    add(kA, QStringLiteral("a"));
    EXPECT_EQ(saveTour(project, 0, QStringLiteral("/dev/full")).outcome, SaveOutcome::Failed);
    EXPECT_TRUE(QFile::exists(QStringLiteral("/dev/full")));
}

} // namespace
