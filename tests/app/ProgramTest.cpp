// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The program as a process of its own, in a folder of its own: start-up, language, folders, exit code.

#include "linking/NexomapLinker.h"
#include "tests/app/support/ScreenKeys.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

constexpr unsigned long kReturn = 0xFF0D;
constexpr unsigned long kQ = 0x71;
constexpr int kPatience_ms = 30000;
constexpr int kBetweenKeys_ms = 250;

const QString kEnglishTitle = QStringLiteral("Orvanta Tour Authoring Tool");
const QString kSourceTitle = QStringLiteral(u"Orvanta 漫游创作工具");

class Program : public testing::Test
{
protected:
    Program()
        : temporary(QDir::tempPath() + QStringLiteral(u"/程序 été XXXXXX"))
        , folder(temporary.path() + QLatin1Char('/'))
    {
        for (const char* name : {"Tourwright", "tourwright_zh.qm", "tourwright_en.qm"})
            QFile::copy(QStringLiteral(TW_PROGRAMS "/") + QLatin1String(name), folder + QLatin1String(name));
        const QString library = NexomapLinker::libraryFileName();
        QFile::copy(QStringLiteral(TW_STAND_IN_FOLDER "/") + library, folder + library);
    }

    ~Program() override
    {
        for (QProcess* process : {&program, &second})
            if (process->state() != QProcess::NotRunning) {
                process->kill();
                process->waitForFinished();
            }
    }

    void start(QProcess& process, const char* locale, const QStringList& arguments = {}) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"LC_ALL", "LANG", "LC_MESSAGES", "LANGUAGE"})
            environment.remove(QLatin1String(name));
        environment.insert(QStringLiteral("LC_ALL"), QLatin1String(locale));
        process.setProcessEnvironment(environment);
        process.start(folder + QStringLiteral("Tourwright"), arguments);
        ASSERT_TRUE(process.waitForStarted());
    }

    void start(const char* locale = "C.UTF-8") { start(program, locale); }

    bool shows(const QProcess& process, const QString& title) const
    {
        return QTest::qWaitFor([&] { return screen.titles(process.processId()).contains(title); },
                               kPatience_ms);
    }

    /// Presses until it helps: another test may take the keyboard away in between.
    template <typename Condition>
    bool pressUntil(const QProcess& process, const QString& title, unsigned long key, bool control,
                    Condition done)
    {
        for (int waited = 0; waited < kPatience_ms; waited += kBetweenKeys_ms) {
            if (done()) return true;
            screen.press(process.processId(), title, key, control);
            if (QTest::qWaitFor(done, kBetweenKeys_ms)) return true;
        }
        return false;
    }

    static bool ended(const QProcess& process) { return process.state() == QProcess::NotRunning; }

    /// @return the exit code; -1 when the program does not end
    int quit(const QString& title = kEnglishTitle)
    {
        EXPECT_TRUE(shows(program, title));
        return pressUntil(program, title, kQ, true, [this] { return ended(program); }) &&
                       program.exitStatus() == QProcess::NormalExit
                   ? program.exitCode()
                   : -1;
    }

    void write(const QString& name) const
    {
        QDir().mkpath(QFileInfo(folder + name).path());
        QFile file(folder + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("content");
    }

    bool exists(const char* name) const { return QFileInfo::exists(folder + QLatin1String(name)); }

    QTemporaryDir temporary;
    QString folder;
    ScreenKeys screen;
    QProcess program;
    QProcess second;
};

TEST_F(Program, EndsWithCodeZeroAfterQuit)
{
    start();
    EXPECT_EQ(quit(), 0);
}

TEST_F(Program, EndsWithCodeZeroWhenItsWindowIsClosed)
{
    start();
    ASSERT_TRUE(shows(program, kEnglishTitle));
    screen.close(program.processId(), kEnglishTitle);
    EXPECT_TRUE(QTest::qWaitFor([this] { return ended(program); }, kPatience_ms));
    EXPECT_EQ(program.exitCode(), 0);
}

TEST_F(Program, MakesItsThreeFoldersOnAFirstRun)
{
    start();
    ASSERT_TRUE(shows(program, kEnglishTitle));
    for (const char* name : {"Tmp", "Tmp/Preview", "Out"})
        EXPECT_TRUE(exists(name)) << name;
    EXPECT_EQ(quit(), 0);
}

TEST_F(Program, KeepsItsFoldersOnALaterRunAndClearsTheScratchFiles)
{
    for (const char* name :
         {"Tmp/left.dat", "Tmp/notes.txt", "Tmp/Preview/tmp.roa", "Tmp/Preview/mine.roa", "Out/map.png"})
        write(QLatin1String(name));
    start();
    ASSERT_TRUE(shows(program, kEnglishTitle));
    EXPECT_FALSE(exists("Tmp/left.dat"));
    EXPECT_FALSE(exists("Tmp/Preview/tmp.roa"));
    EXPECT_TRUE(exists("Tmp/notes.txt"));
    EXPECT_TRUE(exists("Tmp/Preview/mine.roa"));
    EXPECT_TRUE(exists("Out/map.png"));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Program, DeletesItsScratchFilesWhenItEnds)
{
    start();
    ASSERT_TRUE(shows(program, kEnglishTitle));
    write(QStringLiteral("Tmp/match_0.dat"));
    EXPECT_EQ(quit(), 0);
    EXPECT_FALSE(exists("Tmp/match_0.dat"));
}

TEST_F(Program, IsEnglishInEveryLocaleButMainlandChinas)
{
    for (const char* locale : {"zh_TW.UTF-8", "de_DE.UTF-8"}) {
        start(locale);
        EXPECT_EQ(quit(kEnglishTitle), 0) << locale;
    }
}

TEST_F(Program, IsChineseInMainlandChinasLocale)
{
    // The source texts are Chinese too: only the translation file tells that it was loaded.
    QFile::remove(folder + QStringLiteral("tourwright_zh.qm"));
    QFile::copy(folder + QStringLiteral("tourwright_en.qm"), folder + QStringLiteral("tourwright_zh.qm"));
    start("zh_CN.UTF-8");
    EXPECT_EQ(quit(kEnglishTitle), 0);
}

TEST_F(Program, ShowsItsSourceTextsWithoutATranslationFile)
{
    QFile::remove(folder + QStringLiteral("tourwright_en.qm"));
    start();
    EXPECT_EQ(quit(kSourceTitle), 0);
}

TEST_F(Program, ShowsItsSourceTextsWithABrokenTranslationFile)
{
    QFile::remove(folder + QStringLiteral("tourwright_en.qm"));
    write(QStringLiteral("tourwright_en.qm"));
    start();
    EXPECT_EQ(quit(kSourceTitle), 0);
}

TEST_F(Program, InterpretsNoArgument)
{
    start(program, "C.UTF-8", {QStringLiteral("--help"), QStringLiteral("tour.roa")});
    EXPECT_EQ(quit(), 0);
}

TEST_F(Program, TellsAMissingLinkingLibraryOnceAndRunsOn)
{
    const QString box = QStringLiteral("Panorama Linking");
    QFile::remove(folder + NexomapLinker::libraryFileName());
    start();
    ASSERT_TRUE(shows(program, box));
    ASSERT_TRUE(pressUntil(program, box, kReturn, false,
                           [&] { return !screen.titles(program.processId()).contains(box); }));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Program, ASecondInstanceSaysThatTheFolderIsInUseAndEnds)
{
    const QString box = QStringLiteral("Start");
    start();
    ASSERT_TRUE(shows(program, kEnglishTitle));
    write(QStringLiteral("Tmp/match_0.dat"));
    start(second, "C.UTF-8");
    ASSERT_TRUE(shows(second, box));
    EXPECT_FALSE(screen.titles(second.processId()).contains(kEnglishTitle));
    EXPECT_TRUE(pressUntil(second, box, kReturn, false, [this] { return ended(second); }));
    EXPECT_EQ(second.exitCode(), 1);
    EXPECT_TRUE(exists("Tmp/match_0.dat"));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Program, StartsAgainAfterItWasKilled)
{
    start();
    ASSERT_TRUE(shows(program, kEnglishTitle));
    program.kill();
    ASSERT_TRUE(program.waitForFinished());
    start();
    EXPECT_EQ(quit(), 0);
}

} // namespace
