// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Making the navigation map in the window.

#include "linking/editor/PicWidget.h"
#include "tests/app/support/MadeUpCloud.h"
#include "tests/app/support/WindowTest.h"
#include "views/HotSpotWidget.h"
#include "views/PntCloudWidget.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>

namespace {

QString qs(const char* text)
{
    return QString::fromUtf8(text);
}

class MapCommandsInTheWindow : public WindowTest
{
protected:
    /// Imports panoramas with lidar and links them in a row; all of them are in one group.
    void linkRooms(int count)
    {
        importRooms(count, true);
        for (int room = 0; room < count; ++room)
            linker->nodesB.push_back(poseOf(identity(room)));
        for (int room = 0; room + 1 < count; ++room)
            linker->matches.push_back(matchOf(identity(room), identity(room + 1)));
        linker->groups = {count};
        click("buttonAutoGenLink");
        project().modified = false;
        linker->calls.clear();
    }

    static PanoNodeParasB poseOf(const char* name)
    {
        PanoNodeParasB pose;
        qstrncpy(pose.name, name, sizeof pose.name);
        return pose;
    }

    QString merge() const { return linker->calls.filter(qs("mergePointCloud")).join(qs("; ")); }

    QString inOutputFolder(const QString& name) const { return inFolder(qs("Out/")) + name; }
    QStringList outputs() const { return QDir(inFolder(qs("Out"))).entryList(QDir::Files, QDir::Name); }

    /// A picture in the working folder, newer than all before.
    void drawPicture(const QString& name, Qt::GlobalColor colour)
    {
        QImage picture(64, 32, QImage::Format_RGB888);
        picture.fill(colour);
        ASSERT_TRUE(picture.save(inWorkingFolder(name)));
        QFile file(inWorkingFolder(name));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTimeUtc().addSecs(++m_pictures),
                                     QFileDevice::FileModificationTime));
    }

    QColor shownPicture() const
    {
        const QImage* image = find<PicWidget>("widgetPlan")->image();
        return image ? image->pixelColor(5, 5) : QColor();
    }

    /// Corner and middle of the point-cloud view.
    std::pair<QColor, QColor> shownCloud() const
    {
        auto* view = find<PntCloudWidget>("widgetPntCloud");
        const QImage frame = view->grabFramebuffer();
        return {frame.pixelColor(frame.width() - 3, frame.height() - 3),
                frame.pixelColor(frame.width() / 2, frame.height() / 2)};
    }

    /// What a library does that merges.
    void mergeLeaves(const std::function<void()>& files)
    {
        linker->onCall = [files](const QString& call) {
            if (call.startsWith(qs("mergePointCloud"))) files();
        };
    }

private:
    int m_pictures = 0;
};

TEST_F(MapCommandsInTheWindow, TwoPanoramasInTwoGroupsAskAndNoLeavesStageFilesAndWindowUntouched)
{
    linkRooms(2);
    linker->groups = {1, 1};
    writeFile(inWorkingFolder(qs("a-group.pts")));
    const QStringList table = rows("tableLink");
    clickTableRow("tableLink", 0);
    const PanoLink* shown = find<HotSpotWidget>("widgetLink0")->link();
    ASSERT_NE(shown, nullptr);
    linker->calls.clear();
    robot->press(QMessageBox::No);
    click("buttonGenMap");

    ASSERT_EQ(robot->boxes.size(), 1u);
    const SeenBox& box = robot->boxes.front();
    EXPECT_EQ(box.kind, QMessageBox::Information);
    EXPECT_EQ(box.title, qs("Create Map"));
    EXPECT_EQ(box.text, qs("Some panoramas are not connected, do you want to continue anyway?"));
    EXPECT_EQ(box.buttons, QMessageBox::StandardButtons(QMessageBox::Yes | QMessageBox::No));
    EXPECT_EQ(box.preset, QMessageBox::No);
    EXPECT_TRUE(box.modalToWindow);

    EXPECT_EQ(linker->commands(), QStringList());
    EXPECT_EQ(project().stage, Linked);
    EXPECT_FALSE(project().modified);
    EXPECT_TRUE(QFile::exists(inWorkingFolder(qs("a-group.pts"))));
    EXPECT_EQ(outputs(), QStringList());
    EXPECT_EQ(rows("tableLink"), table);
    EXPECT_EQ(find<HotSpotWidget>("widgetLink0")->link(), shown);
    EXPECT_TRUE(window->isEnabled());
}

TEST_F(MapCommandsInTheWindow, TwoGroupsAndYesMakeTheMap)
{
    linkRooms(2);
    linker->groups = {1, 1};
    robot->press(QMessageBox::Yes);
    click("buttonGenMap");
    EXPECT_EQ(robot->boxes.size(), 1u);
    EXPECT_EQ(project().stage, MapGenerated);
    EXPECT_EQ(merge(), qs("mergePointCloud 1 0 1 2 1"));
}

TEST_F(MapCommandsInTheWindow, AFirstGroupThatLacksAPanoramaAsks)
{
    linkRooms(3);
    linker->groups = {2};
    robot->press(QMessageBox::No);
    click("buttonGenMap");
    EXPECT_EQ(robot->boxes.size(), 1u);
    EXPECT_EQ(project().stage, Linked);
}

TEST_F(MapCommandsInTheWindow, AllPanoramasInOneGroupAskNothing)
{
    linkRooms(3);
    click("buttonGenMap");
    EXPECT_TRUE(robot->boxes.empty());
    EXPECT_EQ(project().stage, MapGenerated);
    EXPECT_TRUE(project().modified);
    EXPECT_EQ(linker->commands(), (QStringList{qs("autoCreateMatch"), qs("mergePointCloud 1 0 1 2 1")}));
}

TEST_F(MapCommandsInTheWindow, DensityLowMidAndHighAreZeroOneAndTwo)
{
    linkRooms(2);
    for (const auto& [radio, number] : {std::pair("radioDensityLow", "0"), std::pair("radioDensityMid", "1"),
                                        std::pair("radioDensityHigh", "2")}) {
        click(radio);
        linker->calls.clear();
        click("buttonGenMap");
        EXPECT_EQ(merge(), qs("mergePointCloud 1 0 1 ") + qs(number) + qs(" 1"));
    }
}

TEST_F(MapCommandsInTheWindow, BothCloudBoxesCheckedAreThreeAndNeitherZero)
{
    linkRooms(2);
    const auto argument = [&] {
        linker->calls.clear();
        click("buttonGenMap");
        return merge().section(QLatin1Char(' '), 2, 2);
    };
    EXPECT_EQ(argument(), qs("0"));
    click("checkFullCloud");
    EXPECT_EQ(argument(), qs("1"));
    click("checkBinCloud");
    EXPECT_EQ(argument(), qs("3"));
    click("checkFullCloud");
    EXPECT_EQ(argument(), qs("2"));
}

TEST_F(MapCommandsInTheWindow, OutdoorAndPlanAreZero)
{
    linkRooms(2);
    click("radioOutdoor");
    click("radioMap2D");
    click("buttonGenMap");
    EXPECT_EQ(merge(), qs("mergePointCloud 0 0 1 2 0"));
    EXPECT_EQ(project().map_options.mode, MapOptions::Plan2D);
    EXPECT_EQ(project().map_options.scene, MapOptions::Outdoor);
}

TEST_F(MapCommandsInTheWindow, TheTopViewIsCopiedAndTheFullCloudMovedToTheOutputFolder)
{
    linkRooms(2);
    linker->nodesB.clear();
    mergeLeaves([&] {
        drawPicture(qs("a-color.png"), Qt::red);
        writeFile(inWorkingFolder(qs("a-group.pts")));
    });
    click("buttonGenMap");
    EXPECT_EQ(outputs(), (QStringList{qs("a-color.png"), qs("a-group.pts")}));
    EXPECT_TRUE(QFile::exists(inWorkingFolder(qs("a-color.png"))));
    EXPECT_FALSE(QFile::exists(inWorkingFolder(qs("a-group.pts"))));
}

TEST_F(MapCommandsInTheWindow, AnEarlierFileOfTheSameNameInTheOutputFolderStays)
{
    linkRooms(2);
    writeFile(inOutputFolder(qs("房间 é-group.pts")), "earlier");
    mergeLeaves([&] { writeFile(inWorkingFolder(qs("房间 é-group.pts")), "new"); });
    click("buttonGenMap");
    QFile kept(inOutputFolder(qs("房间 é-group.pts")));
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), "earlier");
    EXPECT_TRUE(QFile::exists(inWorkingFolder(qs("房间 é-group.pts"))));
}

TEST_F(MapCommandsInTheWindow, ThePoseTableIsNamedByTheFirstTheLastAndTheCount)
{
    linkRooms(3);
    linker->nodesB = {poseOf("P1"), poseOf("P2"), poseOf(identity(2))};
    linker->nodesB[2].position_x = 1.5;
    linker->nodesB[2].rotation[0] = 1;
    click("buttonGenMap");
    ASSERT_EQ(outputs(), QStringList{qs("P1_CCCCCCCCCCCCCC_3.csv")});
    QFile table(inOutputFolder(outputs()[0]));
    ASSERT_TRUE(table.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = table.readAll().split('\n');
    ASSERT_EQ(lines.size(), 5); // the last is empty
    EXPECT_TRUE(lines[1].startsWith("1,P1,,"));
    EXPECT_TRUE(lines[3].startsWith("3,CCCCCCCCCCCCCC,room 3,1.5000,0.0000,0.0000,1.000000,"));
}

TEST_F(MapCommandsInTheWindow, WithoutLidarTheCommandIsDisabledAndLoadsNoCloud)
{
    importRooms(2);
    linker->groups = {2};
    click("buttonAutoGenLink");
    EXPECT_FALSE(enabled("buttonGenMap"));
    linker->calls.clear();
    click("buttonGenMap");
    EXPECT_EQ(linker->calls, QStringList());

    mergeLeaves([&] {
        writeFile(inWorkingFolder(qs("a.tmp")), redSquareCloud(200));
        drawPicture(qs("a.png"), Qt::red);
    });
    const auto before = shownCloud();
    window->GenMap();
    EXPECT_EQ(shownCloud(), before);
    EXPECT_FALSE(shownPicture().isValid());
    EXPECT_EQ(project().stage, MapGenerated);
}

TEST_F(MapCommandsInTheWindow, TheNewestPlanAndTheNewestCloudAreShown)
{
    linkRooms(2);
    EXPECT_NE(shownCloud().first, QColor(Qt::black));
    mergeLeaves([&] {
        writeFile(inWorkingFolder(qs("a-00000000.tmp")), redSquareCloud(200));
        drawPicture(qs("a-gray.png"), Qt::gray);
        drawPicture(qs("a-00000000.png"), Qt::green);
    });
    click("buttonGenMap");
    EXPECT_EQ(shownPicture(), QColor(Qt::green));
    EXPECT_EQ(shownCloud(), std::make_pair(QColor(Qt::black), QColor(Qt::red)));
}

TEST_F(MapCommandsInTheWindow, ThePictureOfACompletedLinkIsShownBeforeTheMerge)
{
    linkRooms(2);
    QColor duringMerge;
    linker->onCall = [&](const QString& call) {
        if (call == qs("autoCreateMatch")) drawPicture(qs("match.png"), Qt::yellow);
        if (call.startsWith(qs("mergePointCloud"))) duringMerge = shownPicture();
    };
    click("buttonGenMap");
    EXPECT_EQ(duringMerge, QColor(Qt::yellow));
}

TEST_F(MapCommandsInTheWindow, ABrokenPictureAndABrokenCloudLeaveTheViewsAsTheyAre)
{
    linkRooms(2);
    const auto before = shownCloud();
    mergeLeaves([&] {
        writeFile(inWorkingFolder(qs("a-00000000.tmp")), redSquareCloud(20).left(500));
        writeFile(inWorkingFolder(qs("a.png")), "no picture");
    });
    click("buttonGenMap");
    EXPECT_FALSE(shownPicture().isValid());
    EXPECT_EQ(shownCloud(), before);
    EXPECT_EQ(project().stage, MapGenerated);
}

TEST_F(MapCommandsInTheWindow, CompletedLinksStandInTheTableBeforeTheMerge)
{
    linkRooms(3);
    QStringList duringMerge;
    linker->onCall = [&](const QString& call) {
        if (call == qs("autoCreateMatch")) linker->matches.push_back(matchOf(identity(0), identity(2), 2));
        if (call.startsWith(qs("mergePointCloud"))) duringMerge = rows("tableLink");
    };
    click("buttonGenMap");
    EXPECT_EQ(duringMerge,
              (QStringList{qs("Yes|room 1|room 2"), qs("Yes|room 2|room 3"), qs("Yes|room 1|room 3")}));
    EXPECT_EQ(rows("tableLink"), duringMerge);
}

TEST_F(MapCommandsInTheWindow, PosesAndPlansOfTheMapAreReadBack)
{
    linkRooms(2);
    linker->nodesB.clear();
    linker->nodes = {nodeAt(identity(0), 3, 4, 5)};
    linker->nodes[0].plan_center_x = 30;
    linker->nodes[0].plan_center_y = 40;
    qstrncpy(linker->nodes[0].plan_name, "a-00000000.cld", sizeof linker->nodes[0].plan_name);
    mergeLeaves([&] { writeFile(inWorkingFolder(qs("a-00000000.cld"))); });
    click("buttonGenMap");
    EXPECT_EQ(project().panoramas[0]->position_y, 4);
    EXPECT_EQ(project().panoramas[0]->plan_center_x, 30);
    EXPECT_EQ(project().panoramas[0]->plan_src, inWorkingFolder(qs("a-00000000.cld")));
    EXPECT_TRUE(project().panoramas[1]->plan_src.isEmpty());
}

TEST_F(MapCommandsInTheWindow, TheLinkViewsAreWhiteAndShowNoLinkWhileTheLibraryWorks)
{
    linkRooms(2);
    clickTableRow("tableLink", 0);
    ASSERT_NE(find<HotSpotWidget>("widgetLink0")->link(), nullptr);
    linker->onCall = [&](const QString& call) {
        if (call != qs("autoCreateMatch")) return;
        for (const char* name : {"widgetLink0", "widgetLink1"}) {
            const auto* view = find<HotSpotWidget>(name);
            EXPECT_EQ(view->link(), nullptr);
            EXPECT_EQ(view->panoramaImage()->pixelColor(2000, 1000), QColor(Qt::white));
        }
    };
    click("buttonGenMap");
    clickTableRow("tableLink", 0);
    EXPECT_EQ(find<HotSpotWidget>("widgetLink0")->link(), project().links[0].get());
}

TEST_F(MapCommandsInTheWindow, TheWindowIsDisabledForTheWholeRunAndEnabledAtTheEnd)
{
    linkRooms(2);
    bool always = true;
    linker->onCall = [&](const QString& call) {
        const bool question = call.startsWith(qs("groupCount")) || call.startsWith(qs("nodeCountInGroup"));
        always = always && window->isEnabled() == question;
    };
    click("buttonGenMap");
    EXPECT_TRUE(always);
    EXPECT_TRUE(window->isEnabled());
}

TEST_F(MapCommandsInTheWindow, AWindowThatMakesAMapCannotBeClosed)
{
    linkRooms(2);
    mergeLeaves([&] { EXPECT_FALSE(window->close()); });
    click("buttonGenMap");
    EXPECT_TRUE(window->isVisible());
}

TEST_F(MapCommandsInTheWindow, ProgressBarAndStatusBarSayWhichStepRuns)
{
    linkRooms(2);
    auto* bar = find<QProgressBar>("progressAuto");
    QStringList said;
    linker->onCall = [&](const QString& call) {
        if (call == qs("autoCreateMatch") || call.startsWith(qs("mergePointCloud")))
            said << QString::number(bar->value()) + QLatin1Char(' ') + window->statusBar()->currentMessage();
    };
    click("buttonGenMap");
    EXPECT_EQ(said, (QStringList{qs("0 Completing the links"),
                                 qs("10 Merging the point clouds, which may take minutes")}));
    EXPECT_EQ(bar->value(), 100);
    EXPECT_EQ(window->statusBar()->currentMessage(), QString());
}

TEST_F(MapCommandsInTheWindow, TheStepIsPaintedBeforeEachLongCallOfTheLibrary)
{
    linkRooms(2);
    // Counts what reaches the status bar's paint event: a text that only waits to be painted shows nothing.
    struct Painted : QObject
    {
        QStatusBar* bar = nullptr;
        QStringList texts;
        bool eventFilter(QObject*, QEvent* event) override
        {
            if (event->type() == QEvent::Paint) texts << bar->currentMessage();
            return false;
        }
    } painted;
    painted.bar = window->statusBar();
    painted.bar->installEventFilter(&painted);
    QList<bool> inTime;
    linker->onCall = [&](const QString& call) {
        if (call == qs("autoCreateMatch") || call.startsWith(qs("mergePointCloud")))
            inTime << painted.texts.contains(painted.bar->currentMessage());
    };
    click("buttonGenMap");
    EXPECT_EQ(inTime, (QList<bool>{true, true}));
    painted.bar->removeEventFilter(&painted);
}

TEST_F(MapCommandsInTheWindow, EventsAreServedBetweenTheLongCalls)
{
    linkRooms(2);
    QStringList served;
    linker->onCall = [&](const QString& call) {
        if (call == qs("autoCreateMatch") || call.startsWith(qs("mergePointCloud")))
            QTimer::singleShot(0, window.get(), [&served, calls = linker->calls.size(), this] {
                served << QString::number(linker->calls.size() - calls);
            });
    };
    click("buttonGenMap");
    // Comes before the run is over only if the window serves its queue after the library's call.
    EXPECT_EQ(served.size(), 2);
}

TEST_F(MapCommandsInTheWindow, AFailingLibraryLeavesTheWindowEnabledAndTheStageSet)
{
    linkRooms(2);
    linker->status = -3;
    click("buttonGenMap");
    EXPECT_TRUE(window->isEnabled());
    EXPECT_EQ(project().stage, MapGenerated);
    EXPECT_TRUE(robot->boxes.empty());
}

TEST_F(MapCommandsInTheWindow, TheMapCanBeMadeAgain)
{
    linkRooms(2);
    click("buttonGenMap");
    EXPECT_TRUE(enabled("buttonGenMap"));
    EXPECT_TRUE(enabled("groupAddLink"));
    linker->calls.clear();
    click("buttonGenMap");
    EXPECT_EQ(linker->commands().size(), 2);
}

TEST_F(MapCommandsInTheWindow, LinkingAgainAndANewTourEmptyTheCloudView)
{
    linkRooms(2);
    mergeLeaves([&] { writeFile(inWorkingFolder(qs("a-00000000.tmp")), redSquareCloud(200)); });
    click("buttonGenMap");
    ASSERT_EQ(shownCloud().first, QColor(Qt::black));
    click("buttonAutoGenLink");
    EXPECT_NE(shownCloud().first, QColor(Qt::black));

    click("buttonGenMap");
    ASSERT_EQ(shownCloud().first, QColor(Qt::black));
    robot->press(QMessageBox::No);
    choose("menuFile", "actionNew");
    EXPECT_NE(shownCloud().first, QColor(Qt::black));
    EXPECT_FALSE(QFile::exists(inWorkingFolder(qs("a-00000000.tmp"))));
}

TEST_F(MapCommandsInTheWindow, AnOpenedTourWithACloudShowsIt)
{
    linkRooms(2);
    linker->nodesB.clear();
    linker->nodes = {nodeAt(identity(0), 3, 4, 5)};
    linker->nodes[0].plan_center_x = linker->nodes[0].plan_center_y = 7;
    qstrncpy(linker->nodes[0].plan_name, "a-00000000.cld", sizeof linker->nodes[0].plan_name);
    mergeLeaves([&] { writeFile(inWorkingFolder(qs("a-00000000.cld")), "compressed"); });
    click("buttonGenMap");
    const QString tour = inFolder(qs("地图 carte.roa"));
    robot->choose(tour);
    choose("menuFile", "actionSave");
    choose("menuFile", "actionNew");
    ASSERT_NE(shownCloud().first, QColor(Qt::black));

    const QString cloud = inWorkingFolder(qs("a-00000000.cld"));
    linker->onCall = [&](const QString& call) {
        if (call == qs("decompressCloud ") + cloud)
            writeFile(inWorkingFolder(qs("a-00000000.tmp")), redSquareCloud(200));
    };
    robot->choose(tour);
    choose("menuFile", "actionOpen");
    EXPECT_TRUE(robot->boxes.empty());
    EXPECT_EQ(shownCloud(), std::make_pair(QColor(Qt::black), QColor(Qt::red)));
    EXPECT_EQ(project().stage, MapGenerated);
}

TEST_F(MapCommandsInTheWindow, ARewrittenCloudIsCompressedAnewAndTheTourIsModified)
{
    linkRooms(2);
    mergeLeaves([&] { writeFile(inWorkingFolder(qs("a-00000000.tmp")), redSquareCloud(200)); });
    click("buttonGenMap");
    shownCloud();
    project().modified = false;
    linker->calls.clear();

    auto* view = find<PntCloudWidget>("widgetPntCloud");
    QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(28, 28)); // the box icon
    QTest::mousePress(view, Qt::LeftButton, {}, view->rect().center() - QPoint(20, 10));
    QTest::mouseMove(view, view->rect().center() + QPoint(20, 10));
    QTest::mouseRelease(view, Qt::LeftButton, {}, view->rect().center() + QPoint(20, 10));
    robot->press(QMessageBox::Yes);
    QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(70, 28)); // the delete icon
    ASSERT_EQ(robot->boxes.size(), 1u);
    EXPECT_EQ(robot->boxes[0].title, qs("Delete Points in Point Cloud"));
    EXPECT_EQ(robot->boxes[0].text,
              qs("The selected points in the point cloud will be deleted. Do you want to continue?"));
    EXPECT_EQ(robot->boxes[0].preset, QMessageBox::No);
    EXPECT_EQ(linker->commands(), QStringList{qs("compressCloud ") + inWorkingFolder(qs("a-00000000.tmp"))});
    EXPECT_TRUE(project().modified);
    EXPECT_LT(QFileInfo(inWorkingFolder(qs("a-00000000.tmp"))).size(), redSquareCloud(200).size());
    EXPECT_EQ(shownCloud(), std::make_pair(QColor(Qt::black), QColor(Qt::black)));
}

} // namespace
