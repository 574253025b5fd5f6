// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The program itself: exit statuses and words.

#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

using testing::HasSubstr;

struct Outcome
{
    int status = -1;
    std::string output, errors;
};

Outcome run(const QStringList& arguments)
{
    QProcess process;
    process.start(QStringLiteral(BATCH_PROGRAM), arguments);
    if (!process.waitForFinished(60000)) return {};
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

TEST(Program, HelpTellsEveryCommandAndEndsWithZero)
{
    for (const QStringList& arguments : {QStringList{QStringLiteral("--help")},
                                         QStringList{QStringLiteral("link"), QStringLiteral("--help")}}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 0);
        for (const char* word :
             {"link FILE.pno", "--work", "--out", "--report", "--entry", "--pairs", "compare"})
            EXPECT_THAT(outcome.output, HasSubstr(word));
        EXPECT_EQ(outcome.errors, "");
    }
}

TEST(Program, WrongUsageEndsWithTwoAndOneLine)
{
    for (const QStringList& arguments :
         {QStringList{}, QStringList{QStringLiteral("dance")}, QStringList{QStringLiteral("link")},
          QStringList{QStringLiteral("compare"), QStringLiteral("one.json")}}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 2) << outcome.errors;
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
        EXPECT_EQ(outcome.output, "");
    }
}

TEST(Program, AFileThatCannotBeUsedEndsWithOne)
{
    const QTemporaryDir folder;
    const Outcome outcome =
        run({QStringLiteral("link"), QStringLiteral("/nowhere/a.pno"), QStringLiteral("--work"),
             folder.path(), QStringLiteral("--out"), folder.filePath(QStringLiteral("t.roa"))});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("tourwright-batch: "));
}

} // namespace
