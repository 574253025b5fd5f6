// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The tour in memory, the folders, the working folder.

#include "project/LocalText.h"
#include "project/ProjectFolders.h"
#include "project/RoamProject.h"
#include "project/WorkingFolder.h"
#include "tests/project/Tours.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace {

constexpr const char* kA = "AAAAAAAAAAAAAB";

TEST(Project, AfterAResetEverythingIsAtItsDefaultButTheEntryIndexTheFoldersAndTheMapOptions)
{
    TourForTest tour;
    RoamProject& project = tour.project;
    tour.add(kA, QStringLiteral("a"));
    tour.link(kA, "BBBBBBBBBBBBBB");
    project.folders.working = QStringLiteral("/w/");
    project.file_path = QStringLiteral("/t.roa");
    project.modified = project.has_plan_image = true;
    project.entry_index = 7;
    project.stage = MapGenerated;
    project.map_options.density = MapOptions::Low;
    project.editor_state[2] = 5;
    project.upload_counters[3] = 6;
    project.cloud.token = QStringLiteral("t");
    project.cloud.photo_files << QStringLiteral("f");
    clearProject(project);
    EXPECT_TRUE(project.panoramas.empty());
    EXPECT_TRUE(project.links.empty());
    EXPECT_EQ(project.stage, NotLinked);
    for (const quint64 word : project.editor_state)
        EXPECT_EQ(word, 0u);
    for (const quint32 counter : project.upload_counters)
        EXPECT_EQ(counter, 0u);
    EXPECT_FALSE(project.modified);
    EXPECT_FALSE(project.has_plan_image);
    EXPECT_EQ(project.file_path, QString());
    EXPECT_EQ(project.cloud.token, QString());
    EXPECT_TRUE(project.cloud.photo_files.isEmpty());
    EXPECT_EQ(project.entry_index, 7);
    EXPECT_EQ(project.folders.working, QStringLiteral("/w/"));
    EXPECT_EQ(project.map_options.density, MapOptions::Low);
}

TEST(Project, APanoramaIsFoundByItsIdentityAndTheLastOneWins)
{
    TourForTest tour;
    tour.add(kA, QStringLiteral("first"));
    PanoNode* second = tour.add(kA, QStringLiteral("second"));
    EXPECT_EQ(findPanorama(tour.project, panoIdFromName(kA)), second);
    EXPECT_EQ(findPanorama(tour.project, 12345), nullptr);
}

TEST(Project, LettersOfEitherCaseAreTheSameIdentityNumberAndDigitsCountAsZero)
{
    EXPECT_EQ(panoIdFromName("AAAAAAAAAAAAAB"), 1u);
    EXPECT_EQ(panoIdFromName("aaaaaaaaaaaaab"), 1u);
    EXPECT_EQ(panoIdFromName("00000000000000"), 0u);
}

TEST(Project, MapOptionsStartAsIndoorCloudOfHighDensityWithoutOutputs)
{
    const MapOptions options;
    EXPECT_EQ(options.mode, MapOptions::Cloud3D);
    EXPECT_EQ(options.scene, MapOptions::Indoor);
    EXPECT_EQ(options.density, MapOptions::High);
    EXPECT_FALSE(options.fullCloud || options.binaryCloud);
}

TEST(Folders, AnApplicationFolderThatEndsInASlashGetsNoSecondOne)
{
    QTemporaryDir root;
    const QString slashed = root.path() + QLatin1Char('/');
    EXPECT_EQ(makeProjectFolders(slashed, QStringLiteral("en_US")).folders.application, slashed);
    EXPECT_EQ(makeProjectFolders(root.path(), QStringLiteral("en_US")).folders.application, slashed);
    EXPECT_EQ(asFolder(QStringLiteral("/")), QStringLiteral("/"));
}

TEST(Folders, AFirstRunMakesTheThreeFoldersAndALaterOneKeepsTheirContent)
{
    QTemporaryDir root;
    const QString base = root.filePath(QStringLiteral(u"程序 été/bin"));
    const ProjectFolders folders = makeProjectFolders(base, QStringLiteral("en_US")).folders;
    EXPECT_EQ(folders.working, base + QStringLiteral("/Tmp/"));
    EXPECT_EQ(folders.output, base + QStringLiteral("/Out/"));
    EXPECT_EQ(previewFolder(folders), base + QStringLiteral("/Tmp/Preview/"));
    for (const QString& folder : {folders.working, folders.output, previewFolder(folders)})
        EXPECT_TRUE(QDir(folder).exists()) << folder.toStdString();
    QFile kept(folders.output + QStringLiteral("map.png"));
    ASSERT_TRUE(kept.open(QIODevice::WriteOnly));
    makeProjectFolders(base, QStringLiteral("en_US"));
    EXPECT_TRUE(kept.exists());
}

TEST(Folders, OnlyTheLocaleZhCnSelectsTheChineseTranslationAndViewer)
{
    QTemporaryDir root;
    const QString base = root.path() + QLatin1Char('/');
    const ProjectPlaces chinese = makeProjectFolders(base, QStringLiteral("zh_CN"));
    EXPECT_TRUE(chinese.chinese);
    EXPECT_EQ(chinese.translation_file, base + QStringLiteral("tourwright_zh.qm"));
    EXPECT_EQ(chinese.folders.viewer, base + QStringLiteral(u"望远阁.exe"));
    for (const char* name : {"en_US", "zh_TW", "zh_HK", "zh", "de_DE", "C", "zh_cn"}) {
        const ProjectPlaces other = makeProjectFolders(base, QString::fromLatin1(name));
        EXPECT_FALSE(other.chinese);
        EXPECT_EQ(other.translation_file, base + QStringLiteral("tourwright_en.qm"));
        EXPECT_EQ(other.folders.viewer, base + QStringLiteral("Lumiscope.exe"));
    }
}

TEST(Folders, AFolderThatCannotBeMadeIsNotReported)
{
    QTemporaryDir root;
    QFile inTheWay(root.filePath(QStringLiteral("Tmp")));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    const ProjectFolders folders = makeProjectFolders(root.path(), QStringLiteral("en_US")).folders;
    EXPECT_EQ(folders.working, root.path() + QStringLiteral("/Tmp/"));
    EXPECT_TRUE(QDir(folders.output).exists());
}

TEST(WorkingFolder, AResetDeletesTheScratchFilesByTheirExactEnding)
{
    TourForTest tour;
    const QStringList gone{QStringLiteral("a.jpg"),    QStringLiteral("a.pno"), QStringLiteral("a_0.dat"),
                           QStringLiteral("a.png"),    QStringLiteral("a.cld"), QStringLiteral("a.pts"),
                           QStringLiteral("a.tmp"),    QStringLiteral("a.bin"), QStringLiteral(".jpg"),
                           QStringLiteral(u"客厅.pno")};
    const QStringList kept{QStringLiteral("a.txt"),         QStringLiteral("a.jpeg"),
                           QStringLiteral("a.JPG"),         QStringLiteral("a.roa"),
                           QStringLiteral("ajpg"),          QStringLiteral("a.jpg.bak"),
                           QStringLiteral("sub.png/x.png"), QStringLiteral("Preview/a.png")};
    for (const QString& name : gone + kept)
        tour.write(name, "x");
    tour.write(QStringLiteral("Preview/tmp.roa"), "x");
    clearWorkingFolder(tour.folder());
    for (const QString& name : gone)
        EXPECT_FALSE(QFile::exists(tour.file(name))) << name.toStdString();
    for (const QString& name : kept)
        EXPECT_TRUE(QFile::exists(tour.file(name))) << name.toStdString();
    EXPECT_FALSE(QFile::exists(tour.file(QStringLiteral("Preview/tmp.roa"))));
}

TEST(WorkingFolder, AMissingFolderIsNoTrouble)
{
    clearWorkingFolder(QStringLiteral("/nowhere/Tmp/"));
    EXPECT_EQ(newestFile(QStringLiteral("/nowhere/Tmp/"), QStringLiteral("*.png")), QString());
}

TEST(WorkingFolder, TheNewestFileIsFoundByModificationTimeAmongPlainFilesOfThePattern)
{
    TourForTest tour;
    const QDateTime now = QDateTime::currentDateTime();
    const auto writeAt = [&](const char* name, int seconds) {
        QFile file(tour.write(QString::fromLatin1(name), "x"));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(now.addSecs(seconds), QFileDevice::FileModificationTime));
    };
    writeAt("old.png", -20);
    writeAt("new.png", -10);
    writeAt("newer.tmp", -5);
    tour.write(QStringLiteral("folder.png/x.txt"), "x");
    EXPECT_EQ(newestFile(tour.folder(), QStringLiteral("*.png")), tour.file(QStringLiteral("new.png")));
    EXPECT_EQ(newestFile(tour.folder(), QStringLiteral("*.tmp")), tour.file(QStringLiteral("newer.tmp")));
    EXPECT_EQ(newestFile(tour.folder(), QStringLiteral("*.cld")), QString());
}

TEST(LocalText, ChineseSpacesAndAccentsSurviveTheSystemsEncoding)
{
    const QString text = QStringLiteral(u"全景 été 1");
    EXPECT_EQ(localtext::fromLocal(localtext::toLocal(text)), text);
    EXPECT_EQ(localtext::toLocal(text), text.toUtf8()); // main() made UTF-8 the encoding whatever LANG says
}

} // namespace
