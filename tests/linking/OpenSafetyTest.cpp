// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What a tour still is after a save was killed, and what opening does on a full disk.

#include "project/SaveTour.h"
#include "tests/linking/support/TourFolders.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <random>

#include <csignal>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class OpenSafety : public TourFolders, public testing::Test
{
protected:
    QString file(const char* name) const { return top() + QLatin1String(name); }

    /// A panorama of this many bytes, most of them noise that no reader looks at.
    static QByteArray longPanorama(const char* identity, int bytes)
    {
        QByteArray panorama = panoramaBytes(identity);
        const int filler = std::max(bytes - panorama.size() - 6, 0);
        return panorama + numberBytes(0x7777, 2) + numberBytes(static_cast<quint32>(filler), 4) +
               QByteArray(filler, 'x');
    }

    void addPanorama(RoamProject& to, const char* identity, const QString& path) const
    {
        auto node = std::make_unique<PanoNode>();
        qstrncpy(node->parameters.identity, identity, sizeof node->parameters.identity);
        node->base_name = QStringLiteral("p");
        node->file_path = path;
        to.panoramas.push_back(std::move(node));
    }

    /// The identity of the one panorama of this tour; "none" when it does not open whole.
    QByteArray opened(const QString& path)
    {
        clearProject(project);
        const OpenResult result = openTour(project, linker, path);
        const bool whole = result && project.panoramas.size() == 1 && !node(0).thumbnail.isNull();
        return whole ? node(0).name() : QByteArray("none");
    }
};

TEST_F(OpenSafety, AfterAKillAtAnyOfTwoHundredInstantsTheOldTourOrTheNewOneOpensWhole)
{
    constexpr int kRounds = 200;
    const QByteArray oldId("AAAAAAAAAAAAAB"), newId("BBBBBBBBBBBBBB");
    writeBytes(file("old.pno"), longPanorama(oldId, 1 << 20));
    writeBytes(file("new.pno"), longPanorama(newId, 1 << 20));
    RoamProject oldTour, newTour;
    addPanorama(oldTour, oldId, file("old.pno"));
    addPanorama(newTour, newId, file("new.pno"));
    const QString path = file("tour.roa");
    const QString kept = path + QLatin1Char('~');

    ASSERT_TRUE(saveTour(oldTour, 0, path));
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(saveTour(oldTour, 0, path));
    const auto duration =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    const QByteArray earlier = bytesOf(path);

    std::mt19937 random(20261121);
    int killed = 0, oldOnes = 0;
    for (int round = 0; round < kRounds; ++round) {
        QFile::remove(kept);
        writeBytes(path, earlier);
        const pid_t child = fork();
        if (child == 0) _exit(saveTour(newTour, 0, path) ? 0 : 1);
        usleep(static_cast<useconds_t>(random() % static_cast<unsigned>(duration.count() * 3 / 2 + 1)));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        if (WIFSIGNALED(status)) ++killed;

        const QByteArray now = opened(path);
        if (now == newId) continue;
        ++oldOnes;
        EXPECT_TRUE(now == oldId || opened(kept) == oldId) << "round " << round;
    }
    EXPECT_GT(killed, 0);
    EXPECT_GT(oldOnes, 0);
}

TEST_F(OpenSafety, AWorkingFolderThatIsFullFailsTheOpeningByTheFileThatDidNotFit)
{
    if (mount("tmpfs", QFile::encodeName(working()).constData(), "tmpfs", 0, "size=1m") != 0)
        GTEST_SKIP() << "no right to mount a small disk";
    const QByteArray xml = xmlOf("<panorama pano_id='AAAAAAAAAAAAAB'/>");
    int failed = 0;
    for (int kib = 64; kib <= 2048; kib += 64) {
        clearProject(project);
        linker.calls.clear();
        const OpenResult result =
            open({{0xFFE0, "x", xml}, {0xFFE1, "p.pno", longPanorama("AAAAAAAAAAAAAB", kib << 10)}});
        if (!result) {
            ++failed;
            EXPECT_EQ(result.path, inWorking(QStringLiteral("p.pno")));
            EXPECT_FALSE(result.detail.isEmpty());
            EXPECT_FALSE(QFile::exists(result.path));
            EXPECT_EQ(project.panoramas.size(), 1u);
            EXPECT_TRUE(linker.calls.isEmpty());
        }
        QFile::remove(inWorking(QStringLiteral("p.pno")));
    }
    umount2(QFile::encodeName(working()).constData(), MNT_DETACH);
    EXPECT_GT(failed, 10);
    EXPECT_LT(failed, 25);
}

TEST_F(OpenSafety, MemoryDoesNotGrowWithTheTour)
{
    const auto peakKib = [&](int mib) {
        writeBytes(file("p.pno"), "x");
        EXPECT_TRUE(QFile::resize(file("p.pno"), qint64(mib) << 20));
        RoamProject saved;
        for (const char* identity : {"AAAAAAAAAAAAAA", "AAAAAAAAAAAAAB"})
            addPanorama(saved, identity, file("p.pno"));
        EXPECT_TRUE(saveTour(saved, 0, file("tour.roa")));
        const pid_t child = fork();
        if (child == 0) _exit(openTour(project, linker, file("tour.roa")) ? 0 : 1);
        int status = 0;
        rusage usage{};
        wait4(child, &status, 0, &usage);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        EXPECT_EQ(QFileInfo(inWorking(QStringLiteral("p.pno"))).size() >> 20, mib);
        return usage.ru_maxrss;
    };
    const long small = peakKib(1);
    const long large = peakKib(200);
    EXPECT_LT(large - small, 16 << 10) << "kibibytes";
}

} // namespace
