// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// New, save, save as, quit, closing and the reset.

#include "tests/app/support/WindowTest.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QListWidget>
#include <QProgressBar>
#include <QTest>

#include "linking/editor/PicWidget.h"
#include "views/HotSpotWidget.h"

namespace {

class ProjectCommands : public WindowTest
{
protected:
    static constexpr auto kYesNoCancel = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;

    void expectQuestion(const char* title) const
    {
        ASSERT_EQ(robot->boxes.size(), 1u);
        const SeenBox& box = robot->boxes.front();
        EXPECT_EQ(box.kind, QMessageBox::Information);
        EXPECT_EQ(box.title, QLatin1String(title));
        EXPECT_EQ(box.text, QStringLiteral("Whether to save the current roaming file?"));
        EXPECT_EQ(box.buttons, QMessageBox::StandardButtons(kYesNoCancel));
        EXPECT_EQ(box.preset, QMessageBox::Yes);
        EXPECT_TRUE(box.modalToWindow);
    }

    static QByteArray firstBytes(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.read(2) : QByteArray();
    }
};

const QByteArray kMagic("\xC1\x73");

TEST_F(ProjectCommands, NewOnAProjectWithoutChangesAsksNothingAndStillClearsTheWorkingFolder)
{
    writeFile(inWorkingFolder(QStringLiteral("left over.dat")));
    choose("menuFile", "actionNew");
    EXPECT_TRUE(robot->boxes.empty());
    EXPECT_FALSE(QFileInfo::exists(inWorkingFolder(QStringLiteral("left over.dat"))));
}

TEST_F(ProjectCommands, NewWithChangesAndCancelKeepsEverything)
{
    importRooms(2);
    robot->press(QMessageBox::Cancel);
    choose("menuFile", "actionNew");
    expectQuestion("Create Panorama Roaming");
    EXPECT_EQ(project().panoramas.size(), 2u);
    EXPECT_TRUE(project().modified);
    EXPECT_EQ(linker->commands(), QStringList());
}

TEST_F(ProjectCommands, NewWithChangesAndNoDropsThem)
{
    importRooms(2);
    robot->press(QMessageBox::No);
    choose("menuFile", "actionNew");
    EXPECT_TRUE(project().panoramas.empty());
    EXPECT_FALSE(project().modified);
    EXPECT_EQ(find<QListWidget>("listPano")->count(), 0);
}

TEST_F(ProjectCommands, NewWithChangesAndYesSavesFirst)
{
    importRooms(1);
    const QString path = inFolder(QStringLiteral("tour.roa"));
    robot->press(QMessageBox::Yes);
    robot->choose(path);
    choose("menuFile", "actionNew");
    EXPECT_EQ(firstBytes(path), kMagic);
    EXPECT_TRUE(project().panoramas.empty());
    EXPECT_TRUE(project().file_path.isEmpty());
}

TEST_F(ProjectCommands, NewWithYesAndACancelledSaveDialogDropsTheChanges)
{
    importRooms(1);
    robot->press(QMessageBox::Yes);
    robot->cancel();
    choose("menuFile", "actionNew");
    EXPECT_TRUE(project().panoramas.empty());
    EXPECT_FALSE(project().modified);
}

TEST_F(ProjectCommands, FirstSaveAsksForANameInTheApplicationFolder)
{
    importRooms(1);
    const QString path = inFolder(QStringLiteral(u"我的 tour é.roa"));
    robot->choose(path);
    choose("menuFile", "actionSave");
    const SeenFileDialog dialog = robot->fileDialogs.back();
    EXPECT_EQ(dialog.title, QStringLiteral("Save File"));
    EXPECT_EQ(dialog.folder, folder);
    EXPECT_EQ(dialog.filters, QStringList{QStringLiteral("roa File(*.roa)")});
    EXPECT_EQ(dialog.acceptMode, QFileDialog::AcceptSave);
    EXPECT_EQ(project().file_path, path);
    EXPECT_FALSE(project().modified);
    EXPECT_EQ(firstBytes(path), kMagic);
}

TEST_F(ProjectCommands, FirstSaveCancelledLeavesTheProjectUnnamedAndModified)
{
    importRooms(1);
    robot->cancel();
    choose("menuFile", "actionSave");
    EXPECT_TRUE(project().file_path.isEmpty());
    EXPECT_TRUE(project().modified);
}

TEST_F(ProjectCommands, SaveWithAFilePathSavesWithoutAnyDialog)
{
    importRooms(1);
    const QString path = writeFile(inFolder(QStringLiteral("tour.roa")), "an earlier tour");
    project().file_path = path;
    const std::size_t dialogs = robot->fileDialogs.size();
    choose("menuFile", "actionSave");
    EXPECT_EQ(robot->fileDialogs.size(), dialogs);
    EXPECT_TRUE(robot->boxes.empty());
    EXPECT_EQ(firstBytes(path), kMagic);
    EXPECT_FALSE(project().modified);
}

TEST_F(ProjectCommands, SaveToANameTypedWithoutEndingAddsIt)
{
    importRooms(1);
    robot->choose(inFolder(QStringLiteral("tour")));
    choose("menuFile", "actionSave");
    EXPECT_EQ(project().file_path, inFolder(QStringLiteral("tour.roa")));
    EXPECT_TRUE(QFileInfo::exists(inFolder(QStringLiteral("tour.roa"))));
}

TEST_F(ProjectCommands, SaveToANameWhoseCompletedFormExistsAsksBeforeOverwriting)
{
    importRooms(1);
    const QString path = writeFile(inFolder(QStringLiteral("tour.roa")), "an earlier tour");
    robot->choose(inFolder(QStringLiteral("tour")));
    robot->press(QMessageBox::No);
    choose("menuFile", "actionSave");
    EXPECT_EQ(firstBytes(path), "an");
    EXPECT_TRUE(project().file_path.isEmpty());
    EXPECT_TRUE(project().modified);
}

TEST_F(ProjectCommands, SaveThatCannotOpenTheFileSaysSoAndClearsTheModifiedFlag)
{
    importRooms(1);
    const QString path = inFolder(QStringLiteral("no such folder/tour.roa"));
    project().file_path = path;
    robot->press(QMessageBox::Ok);
    choose("menuFile", "actionSave");
    ASSERT_EQ(robot->boxes.size(), 1u);
    const SeenBox& box = robot->boxes.front();
    EXPECT_EQ(box.kind, QMessageBox::Warning);
    EXPECT_EQ(box.title, QStringLiteral("Save File"));
    EXPECT_EQ(box.text, QStringLiteral("File ") + path + QStringLiteral(" save failed!"));
    EXPECT_EQ(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    EXPECT_FALSE(project().modified);
}

TEST_F(ProjectCommands, SaveThatLacksAPanoramaFileSaysOpenFailedAndClearsTheModifiedFlag)
{
    importRooms(1);
    const QString path = inFolder(QStringLiteral("tour.roa"));
    QFile::remove(inFolder(QStringLiteral("room 1.pno")));
    project().file_path = path;
    robot->press(QMessageBox::Ok);
    choose("menuFile", "actionSave");
    ASSERT_EQ(robot->boxes.size(), 1u);
    const SeenBox& box = robot->boxes.front();
    EXPECT_EQ(box.kind, QMessageBox::Warning);
    EXPECT_EQ(box.title, QStringLiteral("Open File"));
    EXPECT_EQ(box.text, QStringLiteral("File ") + path + QStringLiteral(" open failed!"));
    EXPECT_FALSE(QFileInfo::exists(path));
    EXPECT_FALSE(project().modified);
}

TEST_F(ProjectCommands, SaveAsOntoAnExistingFileAndNoLeavesThePathAndWritesNothing)
{
    importRooms(1);
    const QString other = writeFile(inFolder(QStringLiteral("other.roa")), "an earlier tour");
    project().file_path = inFolder(QStringLiteral("tour.roa"));
    robot->choose(other);
    robot->press(QMessageBox::No);
    choose("menuFile", "actionSaveAs");

    ASSERT_EQ(robot->boxes.size(), 1u);
    const SeenBox& box = robot->boxes.front();
    EXPECT_EQ(box.kind, QMessageBox::Information);
    EXPECT_EQ(box.title, QStringLiteral("Save As"));
    EXPECT_EQ(box.text, QStringLiteral("The file already exists. Is it overwritten?"));
    EXPECT_EQ(box.buttons, QMessageBox::StandardButtons(QMessageBox::Yes | QMessageBox::No));
    EXPECT_EQ(box.preset, QMessageBox::No);
    EXPECT_EQ(project().file_path, inFolder(QStringLiteral("tour.roa")));
    EXPECT_EQ(firstBytes(other), "an");
    EXPECT_TRUE(project().modified);
}

TEST_F(ProjectCommands, SaveAsOntoAnExistingFileAndYesOverwritesIt)
{
    importRooms(1);
    const QString other = writeFile(inFolder(QStringLiteral("other.roa")), "an earlier tour");
    robot->choose(other);
    robot->press(QMessageBox::Yes);
    choose("menuFile", "actionSaveAs");
    EXPECT_EQ(robot->fileDialogs.back().title, QStringLiteral("Save As"));
    EXPECT_EQ(robot->fileDialogs.back().folder, folder);
    EXPECT_EQ(project().file_path, other);
    EXPECT_EQ(firstBytes(other), kMagic);
    EXPECT_FALSE(project().modified);
}

TEST_F(ProjectCommands, SaveAsToANewFileAsksNothing)
{
    importRooms(1);
    robot->choose(inFolder(QStringLiteral("new.roa")));
    choose("menuFile", "actionSaveAs");
    EXPECT_TRUE(robot->boxes.empty());
    EXPECT_EQ(project().file_path, inFolder(QStringLiteral("new.roa")));
    EXPECT_EQ(firstBytes(project().file_path), kMagic);
}

TEST_F(ProjectCommands, SaveAsCancelledChangesNothing)
{
    importRooms(1);
    robot->cancel();
    choose("menuFile", "actionSaveAs");
    EXPECT_TRUE(project().file_path.isEmpty());
    EXPECT_TRUE(project().modified);
}

TEST_F(ProjectCommands, SavingTakesTheEntryPanoramaFromItsBox)
{
    importRooms(3);
    chooseEntry("comboSelEntryPano", 2);
    robot->choose(inFolder(QStringLiteral("tour.roa")));
    choose("menuFile", "actionSave");
    EXPECT_EQ(project().entry_index, 2);
}

TEST_F(ProjectCommands, ClosingAnUnchangedProjectAsksNothing)
{
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(robot->boxes.empty());
}

TEST_F(ProjectCommands, ClosingAModifiedProjectAndCancelKeepsTheProgramRunning)
{
    project().modified = true;
    robot->press(QMessageBox::Cancel);
    EXPECT_FALSE(window->close());
    expectQuestion("Exit");
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(project().modified);
}

TEST_F(ProjectCommands, ClosingAModifiedProjectAndNoDropsTheChanges)
{
    importRooms(1);
    robot->press(QMessageBox::No);
    EXPECT_TRUE(window->close());
    EXPECT_FALSE(window->isVisible());
}

TEST_F(ProjectCommands, ClosingAModifiedProjectAndYesSaves)
{
    importRooms(1);
    robot->press(QMessageBox::Yes);
    robot->choose(inFolder(QStringLiteral("tour.roa")));
    EXPECT_TRUE(window->close());
    EXPECT_EQ(firstBytes(inFolder(QStringLiteral("tour.roa"))), kMagic);
}

TEST_F(ProjectCommands, ClosingWhileALongCommandRunsIsIgnored)
{
    window->setEnabled(false);
    EXPECT_FALSE(window->close());
    window->setEnabled(true);
}

TEST_F(ProjectCommands, QuitEndsTheEventLoopWithCodeZero)
{
    QTimer::singleShot(0, window.get(), [this] { choose("menuFile", "actionQuit"); });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(ProjectCommands, QuitAnsweredWithCancelDoesNotEndTheEventLoop)
{
    constexpr int kStillRunning = 7;
    project().modified = true;
    robot->press(QMessageBox::Cancel);
    QTimer::singleShot(0, window.get(), [this] {
        choose("menuFile", "actionQuit");
        // Were the loop told to end, this code would come too late.
        QTimer::singleShot(0, window.get(), [] { QApplication::exit(kStillRunning); });
    });
    EXPECT_EQ(QApplication::exec(), kStillRunning);
    EXPECT_TRUE(window->isVisible());
    project().modified = false;
}

TEST_F(ProjectCommands, TextAndJpegFilesSurviveTheResetInTheWorkingFolder)
{
    const QStringList stay = {QStringLiteral("a.txt"), QStringLiteral("a.jpeg"), QStringLiteral("a.JPG"),
                              QStringLiteral("a.roa")};
    const QStringList go = {
        QStringLiteral("a.jpg"), QStringLiteral("a.tmp"), QStringLiteral("a.pno"),
        QStringLiteral("a.dat"), QStringLiteral("a.png"), QStringLiteral("a.cld"),
        QStringLiteral("a.pts"), QStringLiteral("a.bin"), QStringLiteral("Preview/tmp.roa")};
    for (const QString& name : stay + go)
        writeFile(inWorkingFolder(name));
    QDir().mkpath(inWorkingFolder(QStringLiteral("folder.png")));
    choose("menuFile", "actionNew");
    for (const QString& name : stay)
        EXPECT_TRUE(QFileInfo::exists(inWorkingFolder(name))) << name.toStdString();
    for (const QString& name : go)
        EXPECT_FALSE(QFileInfo::exists(inWorkingFolder(name))) << name.toStdString();
    EXPECT_TRUE(QFileInfo(inWorkingFolder(QStringLiteral("folder.png"))).isDir());
}

TEST_F(ProjectCommands, ResetEmptiesTheProjectTheViewsAndTheLibrary)
{
    importRooms(3);
    linker->matches = {matchOf(identity(0), identity(1))};
    click("buttonAutoGenLink");
    clickTableRow("tableLink", 0);
    QImage picture(4, 4, QImage::Format_RGB888);
    find<PicWidget>("widgetPlan")->setImage(&picture, false);
    find<PicWidget>("widgetPic")->setImage(&picture, false);
    project().entry_index = 1;
    project().map_options.density = MapOptions::Low;
    project().editor_state[1] = 5;
    project().upload_counters[2] = 6;
    project().has_plan_image = true;
    project().cloud.token = QStringLiteral("token");
    project().modified = false;
    linker->calls.clear();

    choose("menuFile", "actionNew");
    EXPECT_TRUE(project().panoramas.empty());
    EXPECT_TRUE(project().links.empty());
    EXPECT_EQ(project().stage, NotLinked);
    EXPECT_EQ(project().editor_state[1], 0u);
    EXPECT_EQ(project().upload_counters[2], 0u);
    EXPECT_FALSE(project().has_plan_image);
    EXPECT_TRUE(project().cloud.token.isEmpty());
    EXPECT_EQ(project().entry_index, 1);
    EXPECT_EQ(project().map_options.density, MapOptions::Low);
    EXPECT_EQ(linker->commands(), QStringList{QStringLiteral("reset")});
    EXPECT_EQ(find<QProgressBar>("progressAuto")->value(), 0);
    EXPECT_EQ(rows("tableLink"), QStringList());
    EXPECT_EQ(find<HotSpotWidget>("widgetPhoto")->panorama(), nullptr);
    for (const char* view : {"widgetLink0", "widgetLink1"}) {
        EXPECT_EQ(find<HotSpotWidget>(view)->link(), nullptr);
        EXPECT_EQ(find<HotSpotWidget>(view)->panoramaImage()->pixelColor(2000, 1000), QColor(Qt::white));
    }
    for (const char* view : {"widgetPlan", "widgetPic"})
        EXPECT_EQ(find<PicWidget>(view)->image(), nullptr);
}

TEST_F(ProjectCommands, TheDestructorDeletesTheScratchFilesThenReleasesTheLibrary)
{
    const QString scratch = writeFile(inWorkingFolder(QStringLiteral("a.dat")));
    bool scratchGoneWhenReleased = false;
    QStringList calls;
    linker->onCall = [&](const QString& call) {
        calls << call;
        if (call == QLatin1String("clean")) scratchGoneWhenReleased = !QFileInfo::exists(scratch);
    };
    robot.reset();
    window.reset();
    EXPECT_EQ(calls, (QStringList{QStringLiteral("reset"), QStringLiteral("clean")}));
    EXPECT_TRUE(scratchGoneWhenReleased);
}

TEST_F(ProjectCommands, AWindowWithoutHandOverDeletesNothingInTheCurrentFolder)
{
    const QString before = QDir::currentPath();
    QDir::setCurrent(folder);
    const QString file = writeFile(inFolder(QStringLiteral("mine.png")));
    Tourwright(std::make_unique<RecordingLinker>()).NewRoam();
    QDir::setCurrent(before);
    EXPECT_TRUE(QFileInfo::exists(file));
}

} // namespace
