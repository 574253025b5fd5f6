// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The window with the linking library itself: a made-up building linked, mapped, saved, opened again.

#include "app/Tourwright.h"
#include "linking/editor/PicWidget.h"
#include "linking/NexomapLinker.h"
#include "project/ProjectFolders.h"
#include "tests/app/support/DialogRobot.h"
#include "views/PntCloudWidget.h"

#include <QAbstractButton>
#include <QDir>
#include <QMenu>
#include <QMenuBar>
#include <QProcess>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace {

QString qs(const char* text)
{
    return QString::fromUtf8(text);
}

class MapOfABuilding : public testing::Test
{
protected:
    static constexpr int kPanoramas = 3;

    /// The building is made once, for all tests of this program.
    static void SetUpTestSuite()
    {
        s_building = new QTemporaryDir(QDir::tempPath() + qs("/建筑 é XXXXXX"));
        QProcess program;
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        program.start(qs(TW_PROGRAMS "/samplescene"),
                      {qs("--out"), s_building->path(), qs("--count"), QString::number(kPanoramas),
                       qs("--width"), qs("2048"), qs("--light-spacing"), qs("0.5")});
        ASSERT_TRUE(program.waitForFinished(-1));
        ASSERT_EQ(program.exitCode(), 0);
    }
    static void TearDownTestSuite()
    {
        delete s_building;
        s_building = nullptr;
    }

    MapOfABuilding()
    {
        const QString programs = qs(TW_PROGRAMS "/");
        window = std::make_unique<Tourwright>(std::make_unique<NexomapLinker>(programs));
        const ProjectFolders folders =
            makeProjectFolders(m_folder.path() + QLatin1Char('/'), qs("en_US")).folders;
        window->handOver(folders.application, folders.working, folders.output, folders.viewer);
        window->resize(1366, 740);
        window->show();
        if (!QTest::qWaitForWindowExposed(window.get())) qFatal("the window does not show");
        robot = std::make_unique<DialogRobot>(window.get());
    }

    template <typename Widget>
    Widget* find(const char* name) const
    {
        return window->findChild<Widget*>(QLatin1String(name));
    }

    void click(const char* button) const { QTest::mouseClick(find<QAbstractButton>(button), Qt::LeftButton); }

    void choose(const char* action) const
    {
        auto* bar = find<QMenuBar>("menuBar");
        auto* menu = find<QMenu>("menuFile");
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(menu->menuAction()).center());
        ASSERT_TRUE(QTest::qWaitForWindowExposed(menu));
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(find<QAction>(action)).center());
    }

    void importAndLink()
    {
        QStringList files;
        for (const QFileInfo& file : QDir(s_building->path()).entryInfoList({qs("*.pno")}))
            files << file.absoluteFilePath();
        robot->choose(files);
        click("buttonAddPano");
        ASSERT_EQ(window->project().panoramas.size(), std::size_t(kPanoramas));
        click("buttonAutoGenLink");
        click("radioDensityLow");
    }

    void saveAndEmpty(const QString& tour)
    {
        robot->choose(tour);
        choose("actionSave");
        choose("actionNew");
        ASSERT_TRUE(window->project().panoramas.empty());
        ASSERT_EQ(filesEndingOn("Tmp", ".tmp"), 0);
    }

    int filesEndingOn(const char* folder, const char* ending) const
    {
        return QDir(m_folder.filePath(qs(folder)))
            .entryList({QLatin1Char('*') + qs(ending)}, QDir::Files)
            .size();
    }

    /// Share of the cloud view's pixels that show neither the black nor the grey background.
    double shownPoints() const
    {
        auto* view = find<PntCloudWidget>("widgetPntCloud");
        const QImage frame = view->grabFramebuffer().convertToFormat(QImage::Format_RGB32);
        const QRgb background = frame.pixel(frame.width() - 2, frame.height() - 2);
        int points = 0;
        for (int y = 50; y < frame.height(); ++y) // below the icons
            for (int x = 0; x < frame.width(); ++x)
                points += frame.pixel(x, y) != background ? 1 : 0;
        return double(points) / (frame.width() * (frame.height() - 50));
    }

    QSize shownPlan() const
    {
        const QImage* image = find<PicWidget>("widgetPlan")->image();
        return image ? image->size() : QSize();
    }

    static QTemporaryDir* s_building;
    QTemporaryDir m_folder{QDir::tempPath() + qs("/漫游 été XXXXXX")};
    std::unique_ptr<Tourwright> window;
    std::unique_ptr<DialogRobot> robot;
};

QTemporaryDir* MapOfABuilding::s_building = nullptr;

TEST_F(MapOfABuilding, ACloudMapIsShownSavedAndShownAgainWhenTheTourIsOpened)
{
    importAndLink();
    ASSERT_EQ(shownPoints(), 0.0);
    click("buttonGenMap");
    ASSERT_TRUE(robot->boxes.empty());
    EXPECT_EQ(window->project().stage, MapGenerated);
    EXPECT_EQ(find<QProgressBar>("progressAuto")->value(), 100);
    const double shown = shownPoints();
    EXPECT_GT(shown, 0.01);
    EXPECT_EQ(filesEndingOn("Out", "-color.png"), 1);
    EXPECT_EQ(filesEndingOn("Out", "-gray.png"), 1);
    EXPECT_EQ(filesEndingOn("Out", ".csv"), 1);
    EXPECT_EQ(filesEndingOn("Out", ".pts"), 0);
    for (const auto& node : window->project().panoramas)
        EXPECT_TRUE(node->plan_src.endsWith(qs("-00000000.cld"))) << node->plan_src.toStdString();
    const QSize topView = shownPlan();
    EXPECT_GT(topView.width(), 50);

    const QString tour = m_folder.filePath(qs("地图 carte é.roa"));
    saveAndEmpty(tour);
    EXPECT_EQ(shownPoints(), 0.0);
    robot->choose(tour);
    choose("actionOpen");
    ASSERT_TRUE(robot->boxes.empty());
    EXPECT_EQ(window->project().stage, MapGenerated);
    EXPECT_EQ(filesEndingOn("Tmp", "-00000000.tmp"), 1);
    EXPECT_DOUBLE_EQ(shownPoints(), shown);
    EXPECT_TRUE(find<QAbstractButton>("buttonGenMap")->isEnabled());
}

TEST_F(MapOfABuilding, APlanIsShownSavedAndShownAgainAndThePointFilesGoToTheOutputFolder)
{
    importAndLink();
    click("radioMap2D");
    click("checkFullCloud");
    click("checkBinCloud");
    click("buttonGenMap");
    EXPECT_GT(shownPoints(), 0.01);
    for (const char* ending : {"-group.pts", "-concise.pts", "-group.bin", "-color.png", "-gray.png", ".csv"})
        EXPECT_EQ(filesEndingOn("Out", ending), 1) << ending;
    for (const char* ending : {"-group.pts", "-concise.pts", "-group.bin"})
        EXPECT_EQ(filesEndingOn("Tmp", ending), 0) << ending;
    const QSize plan = shownPlan();
    for (const auto& node : window->project().panoramas) {
        EXPECT_TRUE(node->plan_src.endsWith(qs("-00000000.png"))) << node->plan_src.toStdString();
        EXPECT_EQ(QImage(node->plan_src).size(), plan);
        EXPECT_TRUE(QRect(QPoint(), plan).contains(node->plan_center_x, node->plan_center_y));
    }

    const QString tour = m_folder.filePath(qs("plan.roa"));
    saveAndEmpty(tour);
    EXPECT_EQ(shownPlan(), QSize());
    robot->choose(tour);
    choose("actionOpen");
    ASSERT_TRUE(robot->boxes.empty());
    EXPECT_EQ(shownPlan(), plan);
}

} // namespace
