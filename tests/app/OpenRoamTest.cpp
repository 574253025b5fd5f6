// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Opening a saved tour in the window.

#include "tests/app/support/WindowTest.h"

#include "linking/editor/PicWidget.h"

#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>

namespace {

class OpenRoam : public WindowTest
{
protected:
    QString tourPath() const { return inFolder(QStringLiteral(u"我的 tour é.roa")); }

    /// Saves a tour of three linked panoramas, the last one its entry, and makes a new project.
    void saveATour()
    {
        importRooms(3);
        linker->matches = {matchOf(identity(0), identity(1)), matchOf(identity(1), identity(2), 2)};
        click("buttonAutoGenLink");
        chooseEntry("comboSelEntryPano", 2);
        project().panoramas[0]->plan_src = inWorkingFolder(QStringLiteral("plan.png"));
        QImage plan(40, 30, QImage::Format_RGB32);
        plan.fill(Qt::red);
        plan.save(project().panoramas[0]->plan_src);
        robot->choose(tourPath());
        choose("menuFile", "actionSave");
        choose("menuFile", "actionNew");
        ASSERT_TRUE(project().panoramas.empty());
        linker->calls.clear();
        linker->matches.clear();
    }

    void open()
    {
        robot->choose(tourPath());
        choose("menuFile", "actionOpen");
    }

    void expectBox(QMessageBox::Icon kind, const QString& text) const
    {
        ASSERT_EQ(robot->boxes.size(), 1u);
        const SeenBox& box = robot->boxes.front();
        EXPECT_EQ(box.kind, kind);
        EXPECT_EQ(box.title, QStringLiteral("Open File"));
        EXPECT_EQ(box.text, text);
        EXPECT_EQ(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        EXPECT_TRUE(box.modalToWindow);
    }
};

TEST_F(OpenRoam, TheDialogStartsInTheApplicationFolder)
{
    robot->cancel();
    choose("menuFile", "actionOpen");
    const SeenFileDialog& dialog = robot->fileDialogs.back();
    EXPECT_EQ(dialog.title, QStringLiteral("Open File"));
    EXPECT_EQ(dialog.folder, folder);
    EXPECT_EQ(dialog.filters, QStringList{QStringLiteral("roa File(*.roa)")});
    EXPECT_EQ(dialog.acceptMode, QFileDialog::AcceptOpen);
    EXPECT_EQ(dialog.fileMode, QFileDialog::ExistingFile);
    EXPECT_TRUE(robot->boxes.empty());
}

TEST_F(OpenRoam, WithChangesAndCancelKeepsEverything)
{
    importRooms(2);
    const std::size_t dialogs = robot->fileDialogs.size();
    robot->press(QMessageBox::Cancel);
    choose("menuFile", "actionOpen");
    ASSERT_EQ(robot->boxes.size(), 1u);
    const SeenBox& box = robot->boxes.front();
    EXPECT_EQ(box.kind, QMessageBox::Information);
    EXPECT_EQ(box.title, QStringLiteral("Open Panorama Roaming"));
    EXPECT_EQ(box.text, QStringLiteral("Whether to save the current roaming file?"));
    EXPECT_EQ(box.buttons,
              QMessageBox::StandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel));
    EXPECT_EQ(box.preset, QMessageBox::Yes);
    EXPECT_EQ(robot->fileDialogs.size(), dialogs);
    EXPECT_EQ(project().panoramas.size(), 2u);
    EXPECT_TRUE(project().modified);
    EXPECT_EQ(linker->commands(), QStringList());
}

TEST_F(OpenRoam, WithChangesAndNoDropsThemAlsoWhenTheDialogIsCancelled)
{
    importRooms(2);
    robot->press(QMessageBox::No);
    robot->cancel();
    choose("menuFile", "actionOpen");
    EXPECT_TRUE(project().panoramas.empty());
    EXPECT_FALSE(project().modified);
    EXPECT_TRUE(project().file_path.isEmpty());
    EXPECT_EQ(find<QListWidget>("listPano")->count(), 0);
    EXPECT_EQ(linker->commands(), QStringList{QStringLiteral("reset")});
}

TEST_F(OpenRoam, WithChangesAndYesSavesFirst)
{
    importRooms(1);
    robot->press(QMessageBox::Yes);
    robot->choose(tourPath());
    robot->choose(tourPath());
    choose("menuFile", "actionOpen");
    EXPECT_EQ(project().panoramas.size(), 1u);
    EXPECT_EQ(project().file_path, tourPath());
    EXPECT_FALSE(project().modified);
}

TEST_F(OpenRoam, AnOpenedTourStandsInListTablesAndSelectors)
{
    saveATour();
    open();
    EXPECT_TRUE(robot->boxes.empty());
    const auto* list = find<QListWidget>("listPano");
    ASSERT_EQ(list->count(), 3);
    EXPECT_EQ(list->item(1)->text(), QStringLiteral("room 2"));
    EXPECT_FALSE(list->item(1)->icon().isNull());
    EXPECT_EQ(rows("tableLink").size(), 2);
    EXPECT_EQ(find<QComboBox>("comboSelEntryPano")->currentIndex(), 2);
    EXPECT_EQ(find<QComboBox>("comboSelPano0")->count(), 3);
    EXPECT_EQ(project().file_path, tourPath());
    EXPECT_FALSE(project().modified);
    EXPECT_EQ(project().stage, Linked);
    EXPECT_TRUE(project().panoramas[0]->file_path.startsWith(inWorkingFolder(QString())));
}

TEST_F(OpenRoam, TheLibraryIsResetAndGetsNodesThenMatches)
{
    saveATour();
    open();
    QStringList operations;
    for (const QString& call : linker->commands())
        operations << call.section(QLatin1Char(' '), 0, 0);
    EXPECT_EQ(operations, (QStringList{QStringLiteral("reset"), QStringLiteral("loadNode"),
                                       QStringLiteral("loadNode"), QStringLiteral("loadNode"),
                                       QStringLiteral("loadMatch"), QStringLiteral("loadMatch")}));
}

TEST_F(OpenRoam, CommandsFollowTheOpenedTour)
{
    saveATour();
    EXPECT_TRUE(enabled("buttonAddPano"));
    open();
    EXPECT_FALSE(enabled("buttonAddPano"));
    EXPECT_FALSE(enabled("buttonDelPano"));
    EXPECT_TRUE(enabled("buttonAutoGenLink"));
    EXPECT_TRUE(enabled("groupAddLink"));
    EXPECT_TRUE(enabled("groupSetEntryPano"));
    EXPECT_FALSE(enabled("groupGenMap"));
}

TEST_F(OpenRoam, ThePlanOfTheTourIsShown)
{
    saveATour();
    open();
    const QImage* plan = find<PicWidget>("widgetPlan")->image();
    ASSERT_NE(plan, nullptr);
    EXPECT_EQ(plan->size(), QSize(40, 30));
    choose("menuFile", "actionNew");
    EXPECT_EQ(find<PicWidget>("widgetPlan")->image(), nullptr);
}

TEST_F(OpenRoam, AFileWithoutAByteIsSaidToBeEmptyAndLeavesAnEmptyProject)
{
    writeFile(tourPath(), "");
    robot->choose(tourPath());
    robot->press(QMessageBox::Ok);
    choose("menuFile", "actionOpen");
    expectBox(QMessageBox::Information, QStringLiteral("File ") + tourPath() + QStringLiteral(" is empty!"));
    EXPECT_TRUE(project().panoramas.empty());
    EXPECT_EQ(project().file_path, tourPath());
}

TEST_F(OpenRoam, AFileThatIsNoTourIsSaidToHaveFailed)
{
    writeFile(tourPath(), "PK and more");
    robot->choose(tourPath());
    robot->press(QMessageBox::Ok);
    choose("menuFile", "actionOpen");
    expectBox(QMessageBox::Warning, QStringLiteral("File ") + tourPath() + QStringLiteral(" open failed!"));
    EXPECT_TRUE(project().panoramas.empty());
}

TEST_F(OpenRoam, ATourCutShortLeavesItsPanoramasInTheListWithoutLibraryState)
{
    saveATour();
    QFile file(tourPath());
    ASSERT_TRUE(file.resize(file.size() - 1));
    robot->choose(tourPath());
    robot->press(QMessageBox::Ok);
    choose("menuFile", "actionOpen");
    expectBox(QMessageBox::Warning, QStringLiteral("File ") + tourPath() + QStringLiteral(" open failed!"));
    EXPECT_EQ(find<QListWidget>("listPano")->count(), 3);
    EXPECT_EQ(project().stage, NotLinked);
    EXPECT_EQ(linker->commands(), QStringList{QStringLiteral("reset")});
}

TEST_F(OpenRoam, AFileToUnpackThatCannotBeMadeIsNamed)
{
    saveATour();
    QDir().mkpath(inWorkingFolder(QStringLiteral("room 2.pno")));
    robot->choose(tourPath());
    robot->press(QMessageBox::Ok);
    choose("menuFile", "actionOpen");
    expectBox(QMessageBox::Warning, QStringLiteral("File ") + inWorkingFolder(QStringLiteral("room 2.pno")) +
                                        QStringLiteral(" open failed!"));
}

TEST_F(OpenRoam, TheStatusBarNamesAFieldThatCouldNotBeReadBackAndSavingWorks)
{
    importRooms(1);
    auto* warning = find<QLabel>("labelUnreadable");
    EXPECT_TRUE(warning->text().isEmpty());
    InfoHotspot info;
    info.caption = QStringLiteral("the \"big\" room");
    project().panoramas[0]->infos.append(info);
    robot->choose(tourPath());
    choose("menuFile", "actionSave");
    EXPECT_TRUE(robot->boxes.empty());
    EXPECT_TRUE(QFileInfo::exists(tourPath()));
    EXPECT_TRUE(warning->text().contains(QLatin1String("caption of the text")))
        << warning->text().toStdString();
    EXPECT_TRUE(warning->text().contains(info.caption));
    EXPECT_TRUE(warning->isVisible());

    robot->choose(tourPath());
    robot->press(QMessageBox::Ok);
    choose("menuFile", "actionOpen");
    expectBox(QMessageBox::Warning, QStringLiteral("File ") + tourPath() + QStringLiteral(" open failed!"));
    EXPECT_TRUE(project().panoramas.empty());
    EXPECT_TRUE(warning->text().isEmpty());
}

} // namespace
