// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Automatic and manual links in the window: table, views, pictures, progress.

#include "linking/editor/PicWidget.h"
#include "tests/app/support/WindowTest.h"
#include "tests/linking/support/Projects.h"
#include "tests/support/JpegTiles.h"
#include "views/HotSpotWidget.h"

#include <QProgressBar>
#include <QTableWidget>
#include <QTest>

namespace {

class LinkCommandsInTheWindow : public WindowTest
{
protected:
    /// Links the imported rooms; the library finds these pairs.
    void linkRooms(const std::vector<std::pair<int, int>>& pairs)
    {
        for (const auto& [one, other] : pairs)
            linker->matches.push_back(matchOf(identity(one), identity(other)));
        click("buttonAutoGenLink");
    }

    void addLinkOf(int one, int other)
    {
        chooseEntry("comboSelPano0", one);
        chooseEntry("comboSelPano1", other);
        click("buttonAddLink");
    }

    /// What a library does that draws a picture: it lies in the working folder, newer than all before.
    void drawPicture(const QString& name, Qt::GlobalColor colour)
    {
        QImage picture(64, 32, QImage::Format_RGB888);
        picture.fill(colour);
        const QString path = inWorkingFolder(name);
        ASSERT_TRUE(picture.save(path));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTimeUtc().addSecs(++m_pictures),
                                     QFileDevice::FileModificationTime));
    }

    QColor shownPicture() const
    {
        const QImage* image = find<PicWidget>("widgetPlan")->image();
        return image ? image->pixelColor(5, 5) : QColor();
    }

    const QImage* pairImage(int side) const
    {
        return find<HotSpotWidget>(side == 0 ? "widgetLink0" : "widgetLink1")->panoramaImage();
    }

    const PanoLink* shownLink(int side) const
    {
        return find<HotSpotWidget>(side == 0 ? "widgetLink0" : "widgetLink1")->link();
    }

    int currentLink() const { return find<QTableWidget>("tableLink")->currentRow(); }

private:
    int m_pictures = 0;
};

TEST_F(LinkCommandsInTheWindow, WithOnePanoramaAutomaticLinkingDoesNothing)
{
    importRooms(1);
    linker->calls.clear();
    window->AutoGenLink();
    EXPECT_EQ(project().stage, NotLinked);
    EXPECT_EQ(linker->calls, QStringList());
}

TEST_F(LinkCommandsInTheWindow, ThreePanoramasShow30And60And90Then100)
{
    importRooms(3);
    QList<int> values;
    const QObject untilTheEnd;
    QObject::connect(find<QProgressBar>("progressAuto"), &QProgressBar::valueChanged, &untilTheEnd,
                     [&](int value) { values << value; });
    click("buttonAutoGenLink");
    EXPECT_EQ(values, (QList<int>{30, 60, 90, 100}));
    click("buttonAutoGenLink");
    EXPECT_EQ(values, (QList<int>{30, 60, 90, 100, 0, 30, 60, 90, 100}));
}

TEST_F(LinkCommandsInTheWindow, TheProgressIsPaintedWhileTheLibraryWorks)
{
    importRooms(3);
    QList<int> processed;
    linker->onCall = [&](const QString& call) {
        if (call.startsWith(QLatin1String("addNode")) || call == QLatin1String("finishAddNode"))
            // Comes only if the window serves the event queue before the next call.
            QTimer::singleShot(0, window.get(), [&] { processed << linker->calls.size(); });
    };
    click("buttonAutoGenLink");
    ASSERT_EQ(processed.size(), 4);
    EXPECT_LT(processed[0], processed[1]);
    EXPECT_LT(processed[1], processed[2]);
    EXPECT_LT(processed[2], processed[3]);
}

TEST_F(LinkCommandsInTheWindow, TheWindowIsDisabledWhileTheLibraryWorks)
{
    importRooms(2);
    bool always = true;
    linker->onCall = [&](const QString&) { always = always && !window->isEnabled(); };
    linkRooms({{0, 1}});
    EXPECT_TRUE(always);
    linker->onCall = nullptr;
    EXPECT_TRUE(window->isEnabled());
}

TEST_F(LinkCommandsInTheWindow, TheLibraryGetsThePanoramasInListOrder)
{
    importRooms(2);
    linker->calls.clear();
    click("buttonAutoGenLink");
    EXPECT_EQ(linker->commands(),
              (QStringList{QStringLiteral("reset"),
                           QStringLiteral("addNode ") + inFolder(QStringLiteral("room 1.pno")),
                           QStringLiteral("addNode ") + inFolder(QStringLiteral("room 2.pno")),
                           QStringLiteral("finishAddNode")}));
    EXPECT_EQ(project().stage, Linked);
    EXPECT_TRUE(project().modified);
}

TEST_F(LinkCommandsInTheWindow, LinksOfTheLibraryShowYesAndBothNames)
{
    importRooms(3);
    linkRooms({{1, 0}, {1, 2}});
    EXPECT_EQ(rows("tableLink"),
              (QStringList{QStringLiteral("Yes|room 2|room 1"), QStringLiteral("Yes|room 2|room 3")}));
    EXPECT_EQ(currentLink(), 0);
}

TEST_F(LinkCommandsInTheWindow, LinksFoundByPoseShowYesToo)
{
    importRooms(2);
    linker->matches = {matchOf(identity(0), identity(1), LinkByPose)};
    click("buttonAutoGenLink");
    EXPECT_EQ(rows("tableLink"), QStringList{QStringLiteral("Yes|room 1|room 2")});
}

TEST_F(LinkCommandsInTheWindow, LinkingEnablesLinksByHandAndWithRadarTheMap)
{
    importRooms(2, true);
    linkRooms({{0, 1}});
    EXPECT_TRUE(enabled("groupAddLink"));
    EXPECT_TRUE(enabled("groupGenMap"));
    EXPECT_TRUE(enabled("buttonDelLink"));
}

TEST_F(LinkCommandsInTheWindow, WithoutRadarTheMapStaysDisabled)
{
    importRooms(2, false);
    linkRooms({{0, 1}});
    EXPECT_TRUE(enabled("groupAddLink"));
    EXPECT_FALSE(enabled("groupGenMap"));
}

TEST_F(LinkCommandsInTheWindow, LinkingAnewLetsGoOfTheShownLinkBeforeItIsDestroyed)
{
    importRooms(2);
    linkRooms({{0, 1}});
    clickTableRow("tableLink", 0);
    ASSERT_NE(shownLink(0), nullptr);
    bool shownWhileRead = false;
    linker->onCall = [&](const QString& call) {
        if (call == QLatin1String("matchCount"))
            shownWhileRead = shownWhileRead || shownLink(0) || shownLink(1);
    };
    click("buttonAutoGenLink");
    EXPECT_FALSE(shownWhileRead);
}

TEST_F(LinkCommandsInTheWindow, TheNewestMatchPictureIsShownWhileLinking)
{
    importRooms(2, true);
    linker->onCall = [&](const QString& call) {
        if (call.startsWith(QLatin1String("addNode"))) drawPicture(QStringLiteral("match.png"), Qt::red);
        if (call == QLatin1String("finishAddNode")) {
            EXPECT_EQ(shownPicture(), QColor(Qt::red));
            drawPicture(QStringLiteral("all.png"), Qt::blue);
        }
    };
    linkRooms({{0, 1}});
    EXPECT_EQ(shownPicture(), QColor(Qt::blue));
}

TEST_F(LinkCommandsInTheWindow, WithoutRadarNoMatchPictureIsShown)
{
    importRooms(2, false);
    linker->onCall = [&](const QString& call) {
        if (call == QLatin1String("finishAddNode")) drawPicture(QStringLiteral("match.png"), Qt::red);
    };
    linkRooms({{0, 1}});
    EXPECT_EQ(find<PicWidget>("widgetPlan")->image(), nullptr);
}

TEST_F(LinkCommandsInTheWindow, APictureThatDoesNotLoadLeavesTheOneBefore)
{
    importRooms(2, true);
    linker->onCall = [&](const QString& call) {
        if (call.startsWith(QLatin1String("addNode"))) drawPicture(QStringLiteral("match.png"), Qt::red);
        if (call == QLatin1String("finishAddNode")) {
            drawPicture(QStringLiteral("all.png"), Qt::blue);
            QFile::resize(inWorkingFolder(QStringLiteral("all.png")), 20);
        }
    };
    linkRooms({{0, 1}});
    EXPECT_EQ(shownPicture(), QColor(Qt::red));
}

TEST_F(LinkCommandsInTheWindow, AddingBThenAYieldsTheLinkOfAThenB)
{
    importRooms(2);
    click("buttonAutoGenLink");
    addLinkOf(1, 0);
    ASSERT_EQ(project().links.size(), 1u);
    EXPECT_STREQ(project().links[0]->name_0, identity(0));
    EXPECT_STREQ(project().links[0]->name_1, identity(1));
    EXPECT_EQ(rows("tableLink"), QStringList{QStringLiteral("No|room 1|room 2")});
}

TEST_F(LinkCommandsInTheWindow, AddingALinkAgainInEitherOrderSaysThatItExists)
{
    importRooms(2);
    click("buttonAutoGenLink");
    addLinkOf(1, 0);
    robot->press(QMessageBox::Ok);
    addLinkOf(0, 1);
    robot->press(QMessageBox::Ok);
    addLinkOf(1, 0);
    ASSERT_EQ(robot->boxes.size(), 2u);
    for (const SeenBox& box : robot->boxes) {
        EXPECT_EQ(box.kind, QMessageBox::Warning);
        EXPECT_EQ(box.title, QStringLiteral("Add Panorama Link"));
        EXPECT_EQ(box.text, QStringLiteral("Have a panoramic link with the same name!"));
        EXPECT_EQ(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    }
    EXPECT_EQ(project().links.size(), 1u);
}

TEST_F(LinkCommandsInTheWindow, ALinkFromAPanoramaToItselfIsRefused)
{
    importRooms(2);
    click("buttonAutoGenLink");
    robot->press(QMessageBox::Ok);
    addLinkOf(1, 1);
    ASSERT_EQ(robot->boxes.size(), 1u);
    EXPECT_EQ(robot->boxes[0].kind, QMessageBox::Warning);
    EXPECT_EQ(robot->boxes[0].title, QStringLiteral("Add Panorama Link"));
    EXPECT_EQ(robot->boxes[0].text, QStringLiteral("The selected panoramas cannot be the same!"));
    EXPECT_TRUE(project().links.empty());
}

TEST_F(LinkCommandsInTheWindow, ANewLinkIsTheSelectedRow)
{
    importRooms(3);
    linkRooms({{0, 1}});
    addLinkOf(1, 2);
    EXPECT_EQ(currentLink(), 1);
    EXPECT_TRUE(enabled("buttonDelLink"));
    EXPECT_TRUE(project().modified);
}

TEST_F(LinkCommandsInTheWindow, DeletingTheLastRemainingLinkLeavesAnEmptyTableAndADisabledButton)
{
    importRooms(2);
    linkRooms({{0, 1}});
    clickTableRow("tableLink", 0);
    click("buttonDelLink");
    EXPECT_EQ(rows("tableLink"), QStringList());
    EXPECT_EQ(currentLink(), -1);
    EXPECT_FALSE(enabled("buttonDelLink"));
    EXPECT_EQ(shownLink(0), nullptr);
    EXPECT_EQ(shownLink(1), nullptr);
}

TEST_F(LinkCommandsInTheWindow, DeletingWithoutRadarDoesNotAskTheLibrary)
{
    importRooms(3);
    linkRooms({{0, 1}, {1, 2}});
    linker->calls.clear();
    clickTableRow("tableLink", 1);
    click("buttonDelLink");
    EXPECT_EQ(linker->calls, QStringList());
    EXPECT_EQ(rows("tableLink"), QStringList{QStringLiteral("Yes|room 1|room 2")});
    EXPECT_EQ(currentLink(), 0);
}

TEST_F(LinkCommandsInTheWindow, DeletingWithRadarHasTheLibraryRelocate)
{
    importRooms(3, true);
    linkRooms({{0, 1}, {1, 2}});
    linker->calls.clear();
    clickTableRow("tableLink", 0);
    linker->calls.clear();
    click("buttonDelLink");
    EXPECT_EQ(linker->commands(), (QStringList{QStringLiteral("deleteMatch AAAAAAAAAAAAAA BBBBBBBBBBBBBB"),
                                               QStringLiteral("relocateAll")}));
    EXPECT_EQ(rows("tableLink"), QStringList{QStringLiteral("Yes|room 2|room 3")});
    EXPECT_TRUE(window->isEnabled());
}

TEST_F(LinkCommandsInTheWindow, DeletingWithRadarLetsGoOfEveryShownLink)
{
    importRooms(3, true);
    linkRooms({{0, 1}, {1, 2}});
    clickTableRow("tableLink", 0);
    find<QTableWidget>("tableLink")->setFocus();
    QTest::keyClick(find<QTableWidget>("tableLink"), Qt::Key_Down);
    ASSERT_EQ(currentLink(), 1);
    click("buttonDelLink");
    EXPECT_EQ(shownLink(0), nullptr);
}

TEST_F(LinkCommandsInTheWindow, DeletingWhitensBothPairImages)
{
    import({makePictureOfPlaces(QStringLiteral("room 1.pno"), identity(0)),
            makePictureOfPlaces(QStringLiteral("room 2.pno"), identity(1))});
    linkRooms({{0, 1}});
    clickTableRow("tableLink", 0);
    ASSERT_NE(pairImage(0)->pixelColor(1000, 1000), QColor(Qt::white));
    click("buttonDelLink");
    EXPECT_EQ(pairImage(0)->pixelColor(1000, 1000), QColor(Qt::white));
    EXPECT_EQ(pairImage(1)->pixelColor(1000, 1000), QColor(Qt::white));
}

TEST_F(LinkCommandsInTheWindow, DeletingWithoutARowDoesNothing)
{
    importRooms(2);
    project().modified = false;
    window->DelLink();
    EXPECT_FALSE(project().modified);
}

TEST_F(LinkCommandsInTheWindow, SelectingALinkDrawsBothPanoramasAndHandsItToBothViews)
{
    import({makePictureOfPlaces(QStringLiteral("room 1.pno"), identity(0)),
            makePictureOfPlaces(QStringLiteral("room 2.pno"), identity(1))});
    linkRooms({{0, 1}});
    clickTableRow("tableLink", 0);
    for (int side = 0; side < 2; ++side) {
        EXPECT_EQ(shownLink(side), project().links[0].get());
        // The 4096 pixels wide picture is made of level 8.
        const pnotest::Colour colour = pnotest::placeColour(8, 0, 2);
        const QColor seen = pairImage(side)->pixelColor(4096 - 128, 2 * 256 + 128);
        EXPECT_NEAR(seen.red(), colour.red, 3);
        EXPECT_NEAR(seen.green(), colour.green, 3);
        EXPECT_NEAR(seen.blue(), colour.blue, 3);
    }
}

TEST_F(LinkCommandsInTheWindow, SelectingALinkWithRadarShowsItsMatchPicture)
{
    importRooms(2, true);
    linkRooms({{0, 1}});
    linker->calls.clear();
    linker->onCall = [&](const QString& call) {
        if (call.startsWith(QLatin1String("drawMatchPng")))
            drawPicture(QStringLiteral("match.png"), Qt::green);
    };
    clickTableRow("tableLink", 0);
    EXPECT_EQ(linker->commands(), QStringList{QStringLiteral("drawMatchPng AAAAAAAAAAAAAA BBBBBBBBBBBBBB")});
    EXPECT_EQ(shownPicture(), QColor(Qt::green));
}

TEST_F(LinkCommandsInTheWindow, OnceThereIsAMapSelectingALinkDrawsNoMatchPicture)
{
    importRooms(2, true);
    linkRooms({{0, 1}});
    project().stage = MapGenerated;
    linker->calls.clear();
    clickTableRow("tableLink", 0);
    EXPECT_EQ(linker->commands(), QStringList());
}

TEST_F(LinkCommandsInTheWindow, SelectingALinkWhosePanorama1WasRemovedLeavesThePairImages)
{
    import({makePictureOfPlaces(QStringLiteral("room 1.pno"), identity(0), true),
            makePictureOfPlaces(QStringLiteral("room 2.pno"), identity(1), true)});
    linkRooms({{0, 1}});
    addLink(project(), identity(0), "ZZZZZZZZZZZZZZ");
    clickTableRow("tableLink", 0);
    const QColor before = pairImage(0)->pixelColor(1000, 1000);
    linker->calls.clear();
    window->SelLink(1, 0);
    EXPECT_EQ(pairImage(0)->pixelColor(1000, 1000), before);
    EXPECT_EQ(linker->commands(), QStringList());
    EXPECT_EQ(shownLink(0), project().links[1].get());
}

TEST_F(LinkCommandsInTheWindow, SelectingNoLinkWhitensThePairImages)
{
    import({makePictureOfPlaces(QStringLiteral("room 1.pno"), identity(0)),
            makePictureOfPlaces(QStringLiteral("room 2.pno"), identity(1))});
    linkRooms({{0, 1}});
    clickTableRow("tableLink", 0);
    window->SelLink(-1, 0);
    EXPECT_EQ(pairImage(0)->pixelColor(1000, 1000), QColor(Qt::white));
    EXPECT_EQ(pairImage(1)->pixelColor(1000, 1000), QColor(Qt::white));
    EXPECT_EQ(shownLink(0), nullptr);
}

TEST_F(LinkCommandsInTheWindow, TheSelectedRowSurvivesLinkingAnew)
{
    importRooms(3);
    linkRooms({{0, 1}, {1, 2}});
    clickTableRow("tableLink", 1);
    addLinkOf(0, 2);
    clickTableRow("tableLink", 1);
    click("buttonDelLink");
    EXPECT_EQ(currentLink(), 1);
    EXPECT_EQ(rows("tableLink"),
              (QStringList{QStringLiteral("Yes|room 1|room 2"), QStringLiteral("No|room 1|room 3")}));
}

} // namespace
