// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The hotspot page: tables, fields, preview and panorama view, driven by mouse and keys.

#include "linking/editor/PicWidget.h"
#include "tests/app/support/HotspotPage.h"

#include <QPlainTextEdit>

using sphere::kHalfPi;

namespace {

class HotspotCommands : public HotspotPage
{};

TEST_F(HotspotCommands, AHotspotAddedInANewViewStandsStraightAheadOnTheHorizon)
{
    click("buttonAddPhoto");
    showTab(InfoTab);
    click("buttonAddInfo");
    ASSERT_EQ(node().photos.size(), 1);
    EXPECT_EQ(node().photos[0].sphere_x, 0.0);
    EXPECT_EQ(node().photos[0].sphere_y, kHalfPi);
    ASSERT_EQ(node().infos.size(), 1);
    EXPECT_EQ(node().infos[0].sphere_x, 0.0);
    EXPECT_EQ(node().infos[0].sphere_y, kHalfPi);
}

TEST_F(HotspotCommands, AHotspotAddedInATurnedViewStandsAtItsCentre)
{
    const QPoint middle = view()->rect().center();
    drag(middle, middle + QPoint(120, -60));
    const sphere::SpherePoint seen = view()->viewingDirection();
    ASSERT_GT(std::abs(seen.azimuth), 0.05);
    ASSERT_GT(std::abs(seen.polar - kHalfPi), 0.05);
    click("buttonAddPhoto");
    EXPECT_EQ(node().photos[0].sphere_x, seen.azimuth);
    EXPECT_EQ(node().photos[0].sphere_y, seen.polar);
    paint();
    // An icon of 28 pixels whose corner is cut to whole pixels.
    const QPoint off = node().photos[0].marker.center() - middle;
    EXPECT_LE(off.manhattanLength(), 2);
}

TEST_F(HotspotCommands, ANewPhotoIsEmptyAndSelectedInTableAndView)
{
    click("buttonAddPhoto");
    click("buttonAddPhoto");
    EXPECT_EQ(rows("tablePhoto"), (QStringList{QStringLiteral("0x0|"), QStringLiteral("0x0|")}));
    EXPECT_EQ(currentRow("tablePhoto"), 1);
    EXPECT_EQ(find<QTableWidget>("tablePhoto")->currentColumn(), 0);
    EXPECT_EQ(view()->selectedPhoto(), 1);
    EXPECT_EQ(view()->selectedInfo(), -1);
    EXPECT_TRUE(node().photos[1].photo_path.isEmpty());
    EXPECT_TRUE(project().modified);
}

TEST_F(HotspotCommands, ANewTextIsEmptyAndSelectedInTableAndView)
{
    click("buttonAddPhoto");
    showTab(InfoTab);
    click("buttonAddInfo");
    EXPECT_EQ(rows("tableInfo"), QStringList{QStringLiteral("0|")});
    EXPECT_EQ(currentRow("tableInfo"), 0);
    EXPECT_EQ(view()->selectedInfo(), 0);
    EXPECT_EQ(view()->selectedPhoto(), -1);
    EXPECT_TRUE(project().modified);
}

TEST_F(HotspotCommands, DeletingTheLastRemainingHotspotLeavesAnEmptyTableAndNoSelection)
{
    click("buttonAddPhoto");
    typeInto("linePhotoCaption", QStringLiteral("door"));
    project().modified = false;
    click("buttonDelPhoto");
    EXPECT_TRUE(node().photos.isEmpty());
    EXPECT_EQ(find<QTableWidget>("tablePhoto")->rowCount(), 0);
    EXPECT_EQ(currentRow("tablePhoto"), -1);
    EXPECT_EQ(text("linePhotoCaption"), QString());
    EXPECT_EQ(view()->selectedPhoto(), -1);
    EXPECT_TRUE(project().modified);

    showTab(InfoTab);
    click("buttonAddInfo");
    typeInto("lineInfoCaption", QStringLiteral("door"));
    typeContent(QStringLiteral("words"));
    project().modified = false;
    click("buttonDelInfo");
    EXPECT_TRUE(node().infos.isEmpty());
    EXPECT_EQ(find<QTableWidget>("tableInfo")->rowCount(), 0);
    EXPECT_EQ(text("lineInfoCaption"), QString());
    EXPECT_EQ(content(), QString());
    EXPECT_EQ(view()->selectedInfo(), -1);
    EXPECT_TRUE(project().modified);
}

TEST_F(HotspotCommands, DeletingARowKeepsTheOrderOfTheOthers)
{
    for (const char* caption : {"a", "b", "c"}) {
        click("buttonAddPhoto");
        typeInto("linePhotoCaption", QLatin1String(caption));
    }
    clickTableRow("tablePhoto", 1);
    click("buttonDelPhoto");
    EXPECT_EQ(rows("tablePhoto"), (QStringList{QStringLiteral("0x0|a"), QStringLiteral("0x0|c")}));
    EXPECT_EQ(view()->selectedPhoto(), currentRow("tablePhoto"));
    paint();
}

TEST_F(HotspotCommands, WithoutAPanoramaEveryCommandDoesNothing)
{
    deletePanoramas();
    for (const auto command : {&Tourwright::AddPhoto, &Tourwright::DelPhoto, &Tourwright::AddInfo,
                               &Tourwright::DelInfo, &Tourwright::EditPhotoSrc, &Tourwright::EditInfoContent})
        (window.get()->*command)();
    window->EditPhotoCaption(QStringLiteral("x"));
    window->EditInfoCaption(QStringLiteral("x"));
    for (const int row : {-1, 0, 7}) {
        window->SelPhoto(row, 0, -1, -1);
        window->SelInfo(row, 0, -1, -1);
    }
    EXPECT_FALSE(project().modified);
    EXPECT_EQ(rows("tablePhoto") + rows("tableInfo"), QStringList());
    EXPECT_TRUE(robot->fileDialogs.size() == 1) << "the import's only";
}

TEST_F(HotspotCommands, WithoutACurrentRowTheRowCommandsDoNothing)
{
    PhotoHotspot photo;
    photo.caption = QStringLiteral("photo");
    node().photos << photo;
    InfoHotspot info;
    info.caption = QStringLiteral("text");
    node().infos << info;
    showAgain();
    ASSERT_EQ(currentRow("tablePhoto"), -1);
    click("buttonDelPhoto");
    click("buttonSelPhoto");
    typeInto("linePhotoCaption", QStringLiteral("x"));
    showTab(InfoTab);
    click("buttonDelInfo");
    typeInto("lineInfoCaption", QStringLiteral("x"));
    typeContent(QStringLiteral("x"));
    EXPECT_FALSE(project().modified);
    EXPECT_EQ(rows("tablePhoto"), QStringList{QStringLiteral("0x0|photo")});
    EXPECT_EQ(rows("tableInfo"), QStringList{QStringLiteral("0|text")});
    EXPECT_EQ(node().photos[0].caption, QStringLiteral("photo"));
    EXPECT_EQ(node().infos[0].caption, QStringLiteral("text"));
    EXPECT_EQ(robot->fileDialogs.size(), 1u) << "the import's only";
}

TEST_F(HotspotCommands, TypingACaptionStoresItAndRefreshesItsRow)
{
    click("buttonAddPhoto");
    click("buttonAddPhoto");
    clickTableRow("tablePhoto", 0);
    project().modified = false;
    typeInto("linePhotoCaption", QStringLiteral(u"门 & <b> \"é\""));
    EXPECT_EQ(node().photos[0].caption, QStringLiteral(u"门 & <b> \"é\""));
    EXPECT_EQ(rows("tablePhoto"),
              (QStringList{QStringLiteral(u"0x0|门 & <b> \"é\""), QStringLiteral("0x0|")}));
    EXPECT_EQ(currentRow("tablePhoto"), 0);
    EXPECT_TRUE(project().modified);

    showTab(InfoTab);
    click("buttonAddInfo");
    project().modified = false;
    typeInto("lineInfoCaption", QStringLiteral(u"文字"));
    EXPECT_EQ(node().infos[0].caption, QStringLiteral(u"文字"));
    EXPECT_EQ(rows("tableInfo"), QStringList{QStringLiteral(u"0|文字")});
    EXPECT_TRUE(project().modified);
}

TEST_F(HotspotCommands, TypingAContentMovesTheLengthColumnAlong)
{
    showTab(InfoTab);
    click("buttonAddInfo");
    click("buttonAddInfo");
    project().modified = false;
    typeContent(QStringLiteral(u"a<b & 中\nc"));
    EXPECT_EQ(node().infos[1].content, QStringLiteral(u"a<b & 中\nc"));
    EXPECT_EQ(rows("tableInfo"), (QStringList{QStringLiteral("0|"), QStringLiteral("9|")}));
    EXPECT_EQ(currentRow("tableInfo"), 1);
    EXPECT_TRUE(project().modified);
}

TEST_F(HotspotCommands, EditingTheContentToTheSameTextDoesNotSetTheModifiedFlag)
{
    showTab(InfoTab);
    click("buttonAddInfo");
    typeContent(QStringLiteral("same"));
    project().modified = false;
    auto* editor = find<QPlainTextEdit>("plainInfo");
    editor->setPlainText(QStringLiteral("same"));
    window->EditInfoContent();
    EXPECT_FALSE(project().modified);
    QTest::keyClick(editor, Qt::Key_A);
    EXPECT_TRUE(project().modified);
}

TEST_F(HotspotCommands, ShowingAContentThatTheEditorWouldRewriteLeavesItAsItIs)
{
    InfoHotspot odd;
    odd.content = QStringLiteral(u"one\r\ntwo\u00a0three\u2028four");
    node().infos << odd << InfoHotspot();
    showAgain();
    showTab(InfoTab);
    clickTableRow("tableInfo", 0);
    clickTableRow("tableInfo", 1);
    clickTableRow("tableInfo", 0);
    EXPECT_EQ(node().infos[0].content, odd.content);
    EXPECT_TRUE(node().infos[1].content.isEmpty());
    EXPECT_FALSE(project().modified);
}

TEST_F(HotspotCommands, SelectingATextRowFillsItsFields)
{
    showTab(InfoTab);
    for (const char* word : {"first", "second"}) {
        click("buttonAddInfo");
        typeInto("lineInfoCaption", QLatin1String(word));
        typeContent(QString(QLatin1String(word)).toUpper());
    }
    project().modified = false;
    clickTableRow("tableInfo", 0);
    EXPECT_EQ(text("lineInfoCaption"), QStringLiteral("first"));
    EXPECT_EQ(content(), QStringLiteral("FIRST"));
    EXPECT_EQ(view()->selectedInfo(), 0);
    QTest::keyClick(find<QTableWidget>("tableInfo"), Qt::Key_Down);
    EXPECT_EQ(content(), QStringLiteral("SECOND"));
    EXPECT_EQ(view()->selectedInfo(), 1);
    EXPECT_FALSE(project().modified);

    find<QTableWidget>("tableInfo")->setCurrentItem(nullptr);
    EXPECT_EQ(text("lineInfoCaption"), QString());
    EXPECT_EQ(content(), QString());
    EXPECT_EQ(view()->selectedInfo(), -1);
    EXPECT_EQ(node().infos[1].content, QStringLiteral("SECOND"));
    EXPECT_FALSE(project().modified);
}

TEST_F(HotspotCommands, CellsCannotBeEditedInPlace)
{
    click("buttonAddPhoto");
    auto* table = find<QTableWidget>("tablePhoto");
    const QPoint cell = table->visualItemRect(table->item(0, 1)).center();
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, cell);
    QTest::keyClick(table, Qt::Key_F2);
    EXPECT_EQ(table->findChild<QLineEdit*>(), nullptr);
    EXPECT_FALSE(table->item(0, 0)->flags() & Qt::ItemIsEditable);
}

TEST_F(HotspotCommands, PressingAnIconSwitchesToItsSubTabAndRow)
{
    putHotspots();
    ASSERT_EQ(currentTab(), int(PhotoTab));
    press(node().infos[1].marker.center());
    EXPECT_EQ(currentTab(), int(InfoTab));
    EXPECT_EQ(currentRow("tableInfo"), 1);
    EXPECT_EQ(view()->selectedInfo(), 1);
    EXPECT_EQ(view()->selectedPhoto(), -1);
    EXPECT_EQ(text("lineInfoCaption"), QStringLiteral("text 1"));

    press(node().photos[1].marker.center());
    EXPECT_EQ(currentTab(), int(PhotoTab));
    EXPECT_EQ(currentRow("tablePhoto"), 1);
    EXPECT_EQ(view()->selectedPhoto(), 1);
    EXPECT_EQ(view()->selectedInfo(), -1);
    EXPECT_EQ(text("linePhotoCaption"), QStringLiteral("photo 1"));
    EXPECT_FALSE(project().modified);
}

TEST_F(HotspotCommands, PressingTheIconOfARowThatIsCurrentStillSwitchesTheSubTab)
{
    putHotspots();
    press(node().photos[0].marker.center());
    press(node().infos[0].marker.center());
    press(node().photos[0].marker.center());
    EXPECT_EQ(currentTab(), int(PhotoTab));
    EXPECT_EQ(view()->selectedPhoto(), 0);
    EXPECT_EQ(view()->selectedInfo(), -1);
}

TEST_F(HotspotCommands, DraggingAnIconMovesItsHotspotOnly)
{
    putHotspots();
    const double before = node().photos[0].sphere_x;
    const QPoint at = node().photos[1].marker.center();
    drag(at, at + QPoint(40, 30));
    const QPoint now = node().photos[1].marker.center();
    EXPECT_LE((now - at - QPoint(40, 30)).manhattanLength(), 2);
    EXPECT_EQ(node().photos[0].sphere_x, before);
    EXPECT_EQ(currentRow("tablePhoto"), 1);
    EXPECT_TRUE(project().modified);
}

TEST_F(HotspotCommands, AtMostOneHotspotIsSelectedInTheView)
{
    putHotspots();
    clickTableRow("tablePhoto", 1);
    EXPECT_EQ(view()->selectedPhoto(), 1);
    showTab(InfoTab);
    clickTableRow("tableInfo", 0);
    EXPECT_EQ(view()->selectedPhoto(), -1);
    EXPECT_EQ(view()->selectedInfo(), 0);
    // The photo's row is current still; a click on it selects it again.
    showTab(PhotoTab);
    ASSERT_EQ(currentRow("tablePhoto"), 1);
    clickTableRow("tablePhoto", 1);
    EXPECT_EQ(view()->selectedPhoto(), 1);
    EXPECT_EQ(view()->selectedInfo(), -1);
}

TEST_F(HotspotCommands, AnotherPanoramaShowsItsHotspotsAndSelectsNone)
{
    putHotspots();
    clickTableRow("tablePhoto", 0);
    clickListRow(1);
    EXPECT_EQ(rows("tablePhoto") + rows("tableInfo"), QStringList());
    EXPECT_EQ(text("linePhotoCaption"), QString());
    EXPECT_EQ(view()->selectedPhoto(), -1);
    clickListRow(0);
    EXPECT_EQ(rows("tablePhoto").size(), 2);
    EXPECT_EQ(rows("tableInfo").size(), 2);
    EXPECT_EQ(currentRow("tablePhoto"), -1);
    EXPECT_FALSE(project().modified);
}

TEST_F(HotspotCommands, ANewProjectEmptiesThePage)
{
    putHotspots();
    clickTableRow("tablePhoto", 0);
    press(node().infos[1].marker.center());
    choose("menuFile", "actionNew");
    EXPECT_EQ(rows("tablePhoto") + rows("tableInfo"), QStringList());
    EXPECT_EQ(text("linePhotoCaption") + text("lineInfoCaption") + content(), QString());
    EXPECT_EQ(view()->panorama(), nullptr);
    EXPECT_EQ(view()->selectedInfo(), -1);
    EXPECT_EQ(find<PicWidget>("widgetPic")->image(), nullptr);
    EXPECT_FALSE(project().modified);
}

} // namespace
