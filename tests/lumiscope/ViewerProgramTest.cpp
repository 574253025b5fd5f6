// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The viewer as a process of its own, as Preview starts it.

#include "project/ProjectFolders.h"
#include "tests/app/support/ScreenKeys.h"
#include "tests/app/support/WindowTest.h"
#include "tests/lumiscope/support/WorldTour.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <csignal>

namespace {

constexpr int kPatience_ms = 60000;
const QString kEnglishName = QStringLiteral("Lumiscope.exe");
const QString kChineseName = QStringLiteral(u"望远阁.exe");

QString program(const QString& name)
{
    return QStringLiteral(TW_PROGRAMS "/") + name;
}

class ViewerProgram : public testing::Test
{
protected:
    ViewerProgram() { made.addStation("AAAAAAAAAAAAAB", QStringLiteral("hall"), 0, 0, 0); }
    ~ViewerProgram() override
    {
        if (viewer.state() == QProcess::NotRunning) return;
        viewer.kill();
        viewer.waitForFinished();
    }

    void start(const QStringList& arguments, const char* locale = "C.UTF-8",
               const QString& name = kEnglishName)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* variable : {"LC_ALL", "LANG", "LC_MESSAGES", "LANGUAGE"})
            environment.remove(QLatin1String(variable));
        environment.insert(QStringLiteral("LC_ALL"), QLatin1String(locale));
        environment.insert(QStringLiteral("TMPDIR"), temporary.path());
        viewer.setProcessEnvironment(environment);
        viewer.start(program(name), arguments);
        ASSERT_TRUE(viewer.waitForStarted());
    }

    bool shows(const QString& title)
    {
        return QTest::qWaitFor([&] { return screen.titles(viewer.processId()).contains(title); },
                               kPatience_ms);
    }

    void close(const QString& title)
    {
        screen.close(viewer.processId(), title);
        EXPECT_TRUE(QTest::qWaitFor([&] { return viewer.state() == QProcess::NotRunning; }, kPatience_ms));
        EXPECT_EQ(viewer.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(viewer.exitCode(), 0);
    }

    QStringList scratchFolders() const
    {
        return QDir(temporary.path()).entryList({QStringLiteral("lumiscope-*")}, QDir::Dirs);
    }

    WorldTour made;
    QTemporaryDir temporary;
    ScreenKeys screen;
    QProcess viewer;
};

TEST_F(ViewerProgram, ShowsTheTourThatItsOneArgumentNamesAndLeavesNothing)
{
    const QString title = QStringLiteral(u"一次 tour - Lumiscope");
    start({made.save()});
    ASSERT_TRUE(shows(title));
    EXPECT_EQ(scratchFolders().size(), 1);
    close(title);
    EXPECT_TRUE(scratchFolders().isEmpty());
}

TEST_F(ViewerProgram, WhatAKilledViewerLeavesTheNextOneRemoves)
{
    const QString tour = made.save(), title = QStringLiteral(u"一次 tour - Lumiscope");
    start({tour});
    ASSERT_TRUE(shows(title));
    viewer.kill();
    ASSERT_TRUE(viewer.waitForFinished());
    const QStringList left = scratchFolders();
    ASSERT_EQ(left.size(), 1);
    start({tour});
    ASSERT_TRUE(shows(title));
    EXPECT_FALSE(scratchFolders().contains(left.front()));
    close(title);
    EXPECT_TRUE(scratchFolders().isEmpty());
}

TEST_F(ViewerProgram, IsChineseInMainlandChinasLocaleUnderItsChineseName)
{
    const QString title = QStringLiteral(u"一次 tour - 望远阁");
    start({made.save()}, "zh_CN.UTF-8", kChineseName);
    ASSERT_TRUE(shows(title));
    close(title);
}

TEST_F(ViewerProgram, IsEnglishInEveryOtherLocale)
{
    const QString title = QStringLiteral(u"一次 tour - Lumiscope");
    start({made.save()}, "zh_TW.UTF-8");
    ASSERT_TRUE(shows(title));
    close(title);
}

TEST_F(ViewerProgram, WithoutATourItsWindowSaysHowToStartIt)
{
    start({});
    ASSERT_TRUE(shows(QStringLiteral("Lumiscope")));
    close(QStringLiteral("Lumiscope"));
}

TEST_F(ViewerProgram, HelpAndWrongUsage)
{
    start({QStringLiteral("--help")});
    ASSERT_TRUE(viewer.waitForFinished(kPatience_ms));
    EXPECT_EQ(viewer.exitCode(), 0);
    EXPECT_TRUE(viewer.readAllStandardOutput().contains("Lumiscope.exe TOUR.roa"));
    start({QStringLiteral("a.roa"), QStringLiteral("b.roa")});
    ASSERT_TRUE(viewer.waitForFinished(kPatience_ms));
    EXPECT_EQ(viewer.exitCode(), 2);
    EXPECT_TRUE(viewer.readAllStandardError().contains("usage"));
}

TEST(ViewerTwin, TheViewerIsFoundUnderTheNameOfEachLocale)
{
    const QTemporaryDir folder;
    for (const char* locale : {"zh_CN", "en_US", "zh_TW", "de_DE"}) {
        const QString path = makeProjectFolders(folder.path(), QLatin1String(locale)).folders.viewer;
        EXPECT_TRUE(QFileInfo(program(QFileInfo(path).fileName())).isExecutable()) << path.toStdString();
    }
    QFile english(program(kEnglishName)), chinese(program(kChineseName));
    ASSERT_TRUE(english.open(QIODevice::ReadOnly) && chinese.open(QIODevice::ReadOnly));
    EXPECT_TRUE(english.readAll() == chinese.readAll());
}

/// The main window's Preview on the viewer itself.
class ViewerPreview : public WindowTest
{
protected:
    ViewerPreview()
    {
        // Notes its process, then becomes the viewer.
        const QString starter = writeFile(project().folders.viewer,
                                          "#!/bin/sh\n"
                                          "echo $$ > \"$(dirname \"$0\")/pid.part\"\n"
                                          "mv \"$(dirname \"$0\")/pid.part\" \"$(dirname \"$0\")/pid\"\n"
                                          "exec " TW_PROGRAMS "/Lumiscope.exe \"$@\"\n");
        QFile::setPermissions(starter, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    qint64 viewersProcess()
    {
        QFile file(inFolder(QStringLiteral("pid")));
        EXPECT_TRUE(QTest::qWaitFor([&] { return file.exists(); }, kPatience_ms));
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toLongLong() : 0;
    }
};

TEST_F(ViewerPreview, OpensTheTourOfTheMainWindow)
{
    importRooms(2);
    choose("menuPreview", "actionPreview");
    const qint64 process = viewersProcess();
    ASSERT_GT(process, 0);
    const ScreenKeys screen;
    const QString title = QStringLiteral("tmp - Lumiscope");
    EXPECT_TRUE(QTest::qWaitFor([&] { return screen.titles(process).contains(title); }, kPatience_ms));
    screen.close(process, title);
    EXPECT_TRUE(QTest::qWaitFor([&] { return ::kill(static_cast<pid_t>(process), 0) != 0; }, kPatience_ms));
}

} // namespace
