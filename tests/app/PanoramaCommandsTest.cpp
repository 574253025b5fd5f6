// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Import, removal and selection of panoramas in the window.

#include "tests/app/support/WindowTest.h"
#include "tests/linking/support/Projects.h"
#include "tests/support/JpegTiles.h"
#include "views/HotSpotWidget.h"

#include <QComboBox>
#include <QDir>
#include <QListWidget>
#include <QTest>

namespace {

class PanoramaCommands : public WindowTest
{
protected:
    QStringList names() const
    {
        const auto* list = find<QListWidget>("listPano");
        QStringList names;
        for (int row = 0; row < list->count(); ++row)
            names << list->item(row)->text();
        return names;
    }

    QStringList entries(const char* combo) const
    {
        const auto* box = find<QComboBox>(combo);
        QStringList entries;
        for (int row = 0; row < box->count(); ++row)
            entries << box->itemText(row);
        return entries;
    }

    int currentRow() const { return find<QListWidget>("listPano")->currentRow(); }

    void expectMismatchBox(const char* text) const
    {
        ASSERT_EQ(robot->boxes.size(), 1u);
        const SeenBox& box = robot->boxes.front();
        EXPECT_EQ(box.kind, QMessageBox::Information);
        EXPECT_EQ(box.title, QStringLiteral("Add Panorama File"));
        EXPECT_EQ(box.text, QLatin1String(text));
        EXPECT_EQ(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        EXPECT_TRUE(box.modalToWindow);
    }
};

constexpr const char* kWithoutRadarDropped =
    "All panoramas must either all contain radar data or none of them. Panoramas without radar data are "
    "automatically deleted!";
constexpr const char* kWithRadarDropped =
    "All panoramas must either all contain radar data or none of them. Panoramas with radar data are "
    "automatically deleted!";

TEST_F(PanoramaCommands, TheDialogOffersSeveralPnoFiles)
{
    import({makePano(QStringLiteral("room.pno"), identity(0))});
    ASSERT_EQ(robot->fileDialogs.size(), 1u);
    const SeenFileDialog& dialog = robot->fileDialogs.front();
    EXPECT_EQ(dialog.title, QStringLiteral("Select the pno file (multiple selection is supported)"));
    EXPECT_EQ(dialog.filters, QStringList{QStringLiteral("pno File(*.pno)")});
    EXPECT_EQ(dialog.fileMode, QFileDialog::ExistingFiles);
    EXPECT_EQ(dialog.acceptMode, QFileDialog::AcceptOpen);
    EXPECT_EQ(dialog.folder, folder);
}

TEST_F(PanoramaCommands, TheNextImportStartsWhereTheLastOneEnded)
{
    QDir().mkpath(inFolder(QStringLiteral(u"房间")));
    import({makePano(QStringLiteral(u"房间/a.pno"), identity(0))});
    robot->cancel();
    click("buttonAddPano");
    EXPECT_EQ(robot->fileDialogs.back().folder, inFolder(QStringLiteral(u"房间/")));
}

TEST_F(PanoramaCommands, ImportedFilesStandInTheListWithNameAndThumbnailAndInTheThreeBoxes)
{
    import({makePano(QStringLiteral(u"客厅 salon é.pno"), identity(0)),
            makePano(QStringLiteral("kitchen.pno"), identity(1))});
    const QStringList expected = {QStringLiteral(u"客厅 salon é"), QStringLiteral("kitchen")};
    EXPECT_EQ(names(), expected);
    for (const char* combo : {"comboSelEntryPano", "comboSelPano0", "comboSelPano1"})
        EXPECT_EQ(entries(combo), expected) << combo;
    EXPECT_EQ(currentRow(), 0);
    EXPECT_TRUE(project().modified);

    const QImage thumbnail = find<QListWidget>("listPano")->item(0)->icon().pixmap(QSize(256, 96)).toImage();
    EXPECT_EQ(thumbnail.width() * 96, thumbnail.height() * 256);
    const pnotest::Colour colour = pnotest::placeColour(0, 0, 0);
    const QColor seen = thumbnail.pixelColor(thumbnail.rect().center());
    EXPECT_NEAR(seen.red(), colour.red, 3);
    EXPECT_NEAR(seen.green(), colour.green, 3);
    EXPECT_NEAR(seen.blue(), colour.blue, 3);
}

TEST_F(PanoramaCommands, ImportingTheSameFileTwiceAddsItOnceAndShowsNothing)
{
    const QString file = makePano(QStringLiteral("room.pno"), identity(0));
    import({file});
    import({file});
    EXPECT_EQ(names(), QStringList{QStringLiteral("room")});
    EXPECT_TRUE(robot->boxes.empty());
}

TEST_F(PanoramaCommands, UnreadableFilesAreSkippedWithoutAMessage)
{
    import({writeFile(inFolder(QStringLiteral("bad.pno")), "no panorama"),
            makePano(QStringLiteral("good.pno"), identity(0))});
    EXPECT_EQ(names(), QStringList{QStringLiteral("good")});
    EXPECT_TRUE(robot->boxes.empty());
}

TEST_F(PanoramaCommands, RadarThenNoRadarIntoAnEmptyProjectKeepsTheFirstAndSaysSoOnce)
{
    robot->choose({makePano(QStringLiteral("a.pno"), identity(0), true),
                   makePano(QStringLiteral("b.pno"), identity(1), false)});
    robot->press(QMessageBox::Ok);
    click("buttonAddPano");
    EXPECT_EQ(names(), QStringList{QStringLiteral("a")});
    EXPECT_TRUE(project().lidar);
    expectMismatchBox(kWithoutRadarDropped);
}

TEST_F(PanoramaCommands, TwoRadarFilesIntoAProjectWithoutAreDroppedAndSaidOnce)
{
    importRooms(1);
    robot->choose({makePano(QStringLiteral("b.pno"), identity(1), true),
                   makePano(QStringLiteral("c.pno"), identity(2), true)});
    robot->press(QMessageBox::Ok);
    click("buttonAddPano");
    EXPECT_EQ(names(), QStringList{QStringLiteral("room 1")});
    expectMismatchBox(kWithRadarDropped);
}

TEST_F(PanoramaCommands, CancellingTheDialogLeavesTheModifiedFlag)
{
    robot->cancel();
    click("buttonAddPano");
    EXPECT_FALSE(project().modified);
}

TEST_F(PanoramaCommands, AnImportThatAddsNothingStillSetsTheModifiedFlag)
{
    import({writeFile(inFolder(QStringLiteral("bad.pno")), "no panorama")});
    EXPECT_TRUE(project().modified);
    EXPECT_EQ(names(), QStringList());
}

TEST_F(PanoramaCommands, ALaterImportKeepsTheSelectedRowAndTheChosenEntry)
{
    importRooms(2);
    clickListRow(1);
    chooseEntry("comboSelEntryPano", 1);
    import({makePano(QStringLiteral("late.pno"), identity(2))});
    EXPECT_EQ(currentRow(), 1);
    EXPECT_EQ(find<QComboBox>("comboSelEntryPano")->currentText(), QStringLiteral("room 2"));
}

TEST_F(PanoramaCommands, DeletingAPanoramaRemovesItsLinksAndLeavesTheOthers)
{
    importRooms(3);
    addLink(project(), identity(0), identity(1));
    addLink(project(), identity(1), identity(2));
    clickListRow(0);
    click("buttonDelPano");
    EXPECT_EQ(names(), (QStringList{QStringLiteral("room 2"), QStringLiteral("room 3")}));
    EXPECT_EQ(rows("tableLink"), QStringList{QStringLiteral("No|room 2|room 3")});
    EXPECT_TRUE(robot->boxes.empty());
    EXPECT_TRUE(project().modified);
}

TEST_F(PanoramaCommands, DeletingAPanoramaOfTheShownLinkClearsBothLinkViews)
{
    importRooms(3);
    addLink(project(), identity(0), identity(1));
    addLink(project(), identity(1), identity(2));
    window->SelLink(0, 0);
    clickListRow(0);
    click("buttonDelPano");
    EXPECT_EQ(find<HotSpotWidget>("widgetLink0")->link(), nullptr);
    EXPECT_EQ(find<HotSpotWidget>("widgetLink1")->link(), nullptr);
}

TEST_F(PanoramaCommands, DeletingAPanoramaOfAnotherLinkLeavesTheShownOne)
{
    importRooms(3);
    addLink(project(), identity(0), identity(1));
    PanoLink* shown = addLink(project(), identity(1), identity(2));
    window->SelLink(1, 0);
    clickListRow(0);
    click("buttonDelPano");
    EXPECT_EQ(find<HotSpotWidget>("widgetLink0")->link(), shown);
}

TEST_F(PanoramaCommands, DeletingTheLastRowSelectsTheRowBefore)
{
    importRooms(3);
    clickListRow(2);
    click("buttonDelPano");
    EXPECT_EQ(currentRow(), 1);
    EXPECT_EQ(find<HotSpotWidget>("widgetPhoto")->panorama(), project().panoramas[1].get());
}

TEST_F(PanoramaCommands, DeletingTheOnlyPanoramaLeavesNoRowAndAddingPossible)
{
    importRooms(1);
    project().stage = Linked;
    window->DelPano();
    EXPECT_EQ(currentRow(), -1);
    EXPECT_EQ(project().stage, NotLinked);
    EXPECT_TRUE(enabled("buttonAddPano"));
    EXPECT_FALSE(enabled("buttonDelPano"));
    EXPECT_EQ(find<HotSpotWidget>("widgetPhoto")->panorama(), nullptr);
}

TEST_F(PanoramaCommands, DeletingWithoutARowDoesNothing)
{
    window->DelPano();
    EXPECT_FALSE(project().modified);
}

TEST_F(PanoramaCommands, SelectingARowDrawsThePanoramaAndShowsItsHotspots)
{
    import({makePictureOfPlaces(QStringLiteral("a.pno"), identity(0)),
            makePictureOfPlaces(QStringLiteral("b.pno"), identity(1))});
    PhotoHotspot photo;
    photo.photo_width = 40;
    photo.photo_height = 30;
    photo.caption = QStringLiteral(u"照片");
    InfoHotspot info;
    info.content = QStringLiteral(u"五个字的话");
    info.caption = QStringLiteral("text");
    project().panoramas[1]->photos << photo;
    project().panoramas[1]->infos << info;
    clickListRow(1);
    const auto* view = find<HotSpotWidget>("widgetPhoto");
    EXPECT_EQ(view->panorama(), project().panoramas[1].get());
    EXPECT_EQ(rows("tablePhoto"), QStringList{QStringLiteral(u"40x30|照片")});
    EXPECT_EQ(rows("tableInfo"), QStringList{QStringLiteral("5|text")});

    // Column 0 of the top level is the rightmost.
    const pnotest::Colour colour = pnotest::placeColour(10, 0, 3);
    const QColor seen = view->panoramaImage()->pixelColor(8192 - 128, 3 * 256 + 128);
    EXPECT_NEAR(seen.red(), colour.red, 3);
    EXPECT_NEAR(seen.green(), colour.green, 3);
    EXPECT_NEAR(seen.blue(), colour.blue, 3);

    clickListRow(0);
    EXPECT_EQ(rows("tablePhoto"), QStringList());
    EXPECT_EQ(rows("tableInfo"), QStringList());
}

TEST_F(PanoramaCommands, SelectingNoRowWhitensThePictureAndEmptiesTheView)
{
    import({makePictureOfPlaces(QStringLiteral("a.pno"), identity(0))});
    const auto* view = find<HotSpotWidget>("widgetPhoto");
    ASSERT_NE(view->panoramaImage()->pixelColor(4000, 2000), QColor(Qt::white));
    find<QListWidget>("listPano")->setCurrentRow(-1);
    EXPECT_EQ(view->panorama(), nullptr);
    EXPECT_EQ(view->panoramaImage()->pixelColor(4000, 2000), QColor(Qt::white));
    EXPECT_FALSE(enabled("buttonDelPano"));
}

TEST_F(PanoramaCommands, AVanishedFileShowsWhiteAndNotThePanoramaBefore)
{
    import({makePictureOfPlaces(QStringLiteral("a.pno"), identity(0)),
            makePictureOfPlaces(QStringLiteral("b.pno"), identity(1))});
    QFile::remove(inFolder(QStringLiteral("b.pno")));
    clickListRow(1);
    EXPECT_EQ(find<HotSpotWidget>("widgetPhoto")->panoramaImage()->pixelColor(4000, 2000), QColor(Qt::white));
}

TEST_F(PanoramaCommands, WithoutPanoramasOnlyAddingIsEnabled)
{
    EXPECT_TRUE(enabled("buttonAddPano"));
    EXPECT_TRUE(enabled("groupAutoLink"));
    for (const char* name : {"buttonDelPano", "groupSetEntryPano", "groupAddPhoto", "groupAddInfo",
                             "buttonAutoGenLink", "groupAddLink", "groupGenMap", "buttonDelLink"})
        EXPECT_FALSE(enabled(name)) << name;
}

TEST_F(PanoramaCommands, OnePanoramaEnablesItsOwnControlsButNoLinking)
{
    importRooms(1);
    for (const char* name : {"buttonDelPano", "groupSetEntryPano", "groupAddPhoto", "groupAddInfo"})
        EXPECT_TRUE(enabled(name)) << name;
    EXPECT_FALSE(enabled("buttonAutoGenLink"));
}

TEST_F(PanoramaCommands, TwoPanoramasEnableAutomaticLinkingOnly)
{
    importRooms(2, true);
    EXPECT_TRUE(enabled("buttonAutoGenLink"));
    EXPECT_FALSE(enabled("groupAddLink"));
    EXPECT_FALSE(enabled("groupGenMap"));
}

TEST_F(PanoramaCommands, LinkingFreezesThePanoramasUntilTheProjectIsEmptied)
{
    importRooms(2);
    click("buttonAutoGenLink");
    EXPECT_FALSE(enabled("buttonAddPano"));
    EXPECT_FALSE(enabled("buttonDelPano"));
    robot->press(QMessageBox::No);
    choose("menuFile", "actionNew");
    EXPECT_TRUE(enabled("buttonAddPano"));
}

} // namespace
