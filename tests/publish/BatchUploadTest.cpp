// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// tourwright-batch upload: what it prints and how it ends, also where a service lets it down.

#include "project/SaveTour.h"
#include "tests/publish/support/ScriptedService.h"
#include "tests/publish/support/Tours.h"
#include "tests/support/PnoParts.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;
using testing::Not;

struct Outcome
{
    int status = -1;
    std::string output, errors;
};

class BatchUpload : public testing::Test
{
protected:
    BatchUpload()
    {
        RoamProject project;
        fillTour(project, 2, 1);
        for (const auto& node : project.panoramas) {
            pnotest::PnoOptions options;
            options.identity = node->name().toStdString();
            const pnotest::Bytes bytes = pnotest::panorama(options);
            node->file_path = folder.filePath(QString::fromLatin1(node->name()) + QStringLiteral(".pno"));
            QFile file(node->file_path);
            if (!file.open(QIODevice::WriteOnly)) qFatal("cannot write a panorama");
            file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
        }
        tour = folder.filePath(QStringLiteral("漫游 tour.roa"));
        if (!saveTour(project, 1, tour)) qFatal("cannot save the tour");
        project.links.clear();
        unlinked = folder.filePath(QStringLiteral("unlinked.roa"));
        if (!saveTour(project, 0, unlinked)) qFatal("cannot save the tour");
    }

    QStringList arguments(const QString& file) const
    {
        return {QStringLiteral("upload"),    file,
                QStringLiteral("--work"),    folder.filePath(QStringLiteral("work")),
                QStringLiteral("--url"),     service.url(),
                QStringLiteral("--account"), QStringLiteral("a@b.com"),
                QStringLiteral("--album"),   QStringLiteral("相册"),
                QStringLiteral("--timeout"), QStringLiteral("2")};
    }

    Outcome run(const QStringList& words, const char* password = "secret1")
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TOURWRIGHT_PASSWORD"), QLatin1String(password));
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(BATCH_PROGRAM), words);
        if (!process.waitForFinished(60000)) return {};
        const Outcome outcome{process.exitCode(), process.readAllStandardOutput().toStdString(),
                              process.readAllStandardError().toStdString()};
        EXPECT_THAT(outcome.output + outcome.errors, Not(HasSubstr(password)));
        EXPECT_THAT(outcome.output + outcome.errors, Not(HasSubstr("TOKEN")));
        return outcome;
    }

    Outcome upload() { return run(arguments(tour)); }

    void expectFailed(const Outcome& outcome, const std::string& words)
    {
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.output, "");
        EXPECT_THAT(outcome.errors, HasSubstr(words));
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
    }

    void grantAll()
    {
        service.reply("login", grantedLogin());
        service.reply("get_pano_list", QStringLiteral("AAAAAAAAAAAAAA BBBBBBBBBBBBBB"));
        service.reply("create_roaming_album", grantedAlbum());
    }

    QTemporaryDir folder;
    QString tour, unlinked;
    ScriptedService service;
};

TEST_F(BatchUpload, AWholeTourEndsWithZeroAndTheAlbumsIdentifier)
{
    service.reply("get_pano_list", QString());
    service.reply("get_pano_list", QStringLiteral("AAAAAAAAAAAAAA"));
    service.reply("get_pano_list", QString());
    grantAll();
    service.start();
    const Outcome outcome = upload();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "album ALBUM-01234567\n");
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(service.words().join(QLatin1Char(' ')),
              QStringLiteral("login get_pano_list upload get_pano_list get_pano_list upload get_pano_list "
                             "create_roaming_album set_albumpano_location set_albumpano_location "
                             "set_albumpano_linktags set_albumpano_linktags add_panolink"));
    const std::vector<SeenRequest> seen = service.requests();
    ASSERT_EQ(seen.size(), 13u);
    EXPECT_TRUE(seen[7].target().contains("entrypanoid=BBBBBBBBBBBBBB"));
}

TEST_F(BatchUpload, ATourWithoutLinksIsAnAlbumToo)
{
    grantAll();
    service.start();
    const Outcome outcome = run(arguments(unlinked));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.output, "album ALBUM-01234567\n");
}

TEST_F(BatchUpload, AnAnswerThatStallsTheWindowEndsItWithOne)
{
    service.reply("upload", QStringLiteral("ER 2"));
    service.reply("get_pano_list", QString());
    grantAll();
    service.start();
    expectFailed(upload(), "the service's answer to \"upload\" is none that is known");
}

TEST_F(BatchUpload, APanoramaThatIsNeverListedEndsItWithOne)
{
    service.reply("get_pano_list", QString());
    service.reply("login", grantedLogin());
    service.start();
    expectFailed(upload(), "AAAAAAAAAAAAAA");
}

TEST_F(BatchUpload, ASilentServiceEndsItWithOne)
{
    service.misbehave("login", "silence");
    service.start();
    expectFailed(upload(), "error accessing " + service.url().toStdString());
}

TEST_F(BatchUpload, ReasonsAreToldWithoutSecrets)
{
    service.reply("login", grantedLogin());
    service.reply("get_pano_list", QString(), 500);
    service.start();
    expectFailed(upload(), "get_pano_list - server replied: As Told");
}

TEST_F(BatchUpload, AWrongPasswordTellsTheTriesLeft)
{
    service.reply("login", QStringLiteral("ER 2"));
    service.start();
    expectFailed(upload(), "incorrect password; 2 tries are left today");
}

TEST_F(BatchUpload, TooLittleStorage)
{
    service.reply("upload", QStringLiteral("ER 1"));
    service.reply("get_pano_list", QString());
    grantAll();
    service.start();
    expectFailed(upload(), "insufficient cloud storage");
}

TEST_F(BatchUpload, ARefusedConnection)
{
    service.start();
    service.stop();
    expectFailed(upload(), "Connection refused");
}

TEST_F(BatchUpload, EntriesAreCheckedBeforeAnythingIsSent)
{
    service.start();
    QStringList words = arguments(tour);
    words[7] = QStringLiteral("a+b@c.com");
    expectFailed(run(words), "e-mail");
    words = arguments(tour);
    words[9] = QStringLiteral("My Album");
    expectFailed(run(words), "album name");
    expectFailed(run(arguments(tour), "short1"), "the password needs seven characters");
    EXPECT_TRUE(service.requests().empty());
}

TEST_F(BatchUpload, ATourThatCannotBeReadIsRefused)
{
    service.start();
    expectFailed(run(arguments(QStringLiteral("/nowhere/tour.roa"))), "/nowhere/tour.roa");
    QFile empty(folder.filePath(QStringLiteral("empty.roa")));
    ASSERT_TRUE(empty.open(QIODevice::WriteOnly));
    expectFailed(run(arguments(empty.fileName())), "no panorama");
    EXPECT_TRUE(service.requests().empty());
}

TEST_F(BatchUpload, WrongUsageEndsWithTwo)
{
    service.start();
    QStringList words = arguments(tour);
    words[5] = QStringLiteral("nowhere");
    EXPECT_EQ(run(words).status, 2);
    words = arguments(tour);
    words[11] = QStringLiteral("soon");
    EXPECT_EQ(run(words).status, 2);
    EXPECT_EQ(run({QStringLiteral("upload"), tour}).status, 2);
    EXPECT_EQ(run({QStringLiteral("upload")}).status, 2);
}

} // namespace
