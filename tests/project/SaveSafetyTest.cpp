// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Saving in a process of its own that is killed, runs out of disk, or is watched for its memory.

#include "project/SaveTour.h"
#include "tests/project/TourParts.h"
#include "tests/project/Tours.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <random>

#include <csignal>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr const char* kA = "AAAAAAAAAAAAAB";

/// Runs `work` in a child; its return value is the exit status.
struct Child
{
    explicit Child(const std::function<int()>& work)
        : pid(fork())
    {
        if (pid == 0) _exit(work());
    }
    int wait()
    {
        int status = 0;
        wait4(pid, &status, 0, &usage);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    pid_t pid;
    rusage usage{};
};

/// A file system of one mebibyte in memory, gone on destruction.
class SmallDisk
{
public:
    explicit SmallDisk(const QString& folder)
        : m_folder(QFile::encodeName(folder))
    {
        QDir().mkpath(folder);
        mounted = mount("tmpfs", m_folder.constData(), "tmpfs", 0, "size=1m") == 0;
    }
    ~SmallDisk()
    {
        if (mounted) umount2(m_folder.constData(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    bool mounted = false;

private:
    QByteArray m_folder;
};

bool panoramaIs(const QString& path, const QByteArray& data)
{
    std::vector<TourPart> parts;
    return takeApart(path, &parts) && parts.size() == 2 && parts[1].data == data;
}

class SaveSafety : public TourForTest, public testing::Test
{
protected:
    QString path() const { return file(QStringLiteral("tour.roa")); }
    QString kept() const { return path() + QLatin1Char('~'); }
};

TEST_F(SaveSafety, KilledAtAnyMomentTheOldTourOrTheNewOneIsWhole)
{
    const QByteArray oldData(3 << 20, 'o');
    const QByteArray newData(5 << 20, 'n');
    add(kA, QStringLiteral("a"), oldData);
    const QString oldFile = project.panoramas[0]->file_path;
    const QString newFile = write(QStringLiteral("new.pno"), newData);

    ASSERT_TRUE(saveTour(project, 0, path()));
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(saveTour(project, 0, path()));
    const auto duration =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);

    std::mt19937 random(7);
    int killed = 0;
    for (int round = 0; round < 20; ++round) {
        QFile::remove(kept());
        project.panoramas[0]->file_path = oldFile;
        ASSERT_TRUE(saveTour(project, 0, path()));
        project.panoramas[0]->file_path = newFile;

        Child child([&] { return saveTour(project, 0, path()) ? 0 : 1; });
        usleep(static_cast<useconds_t>(random() % static_cast<unsigned>(duration.count() * 2 + 1)));
        kill(child.pid, SIGKILL);
        if (child.wait() == -1) ++killed;

        const bool newStands = panoramaIs(path(), newData);
        const bool oldStands = panoramaIs(path(), oldData) || panoramaIs(kept(), oldData);
        ASSERT_TRUE(newStands || oldStands) << "round " << round;

        // A failing save on top of what the killed one left loses nothing either.
        project.panoramas[0]->file_path = file(QStringLiteral("gone.pno"));
        EXPECT_EQ(saveTour(project, 0, path()).outcome, SaveOutcome::Failed);
        EXPECT_TRUE(panoramaIs(kept(), newStands ? newData : oldData)) << "round " << round;
    }
    EXPECT_GT(killed, 0);
}

TEST_F(SaveSafety, AFileSizeLimitAtEveryStepFailsTheSaveAndKeepsTheEarlierTour)
{
    // The last record is empty, so that the largest limit cuts its head and no data.
    PanoNode* node = add(kA, QStringLiteral("a"), QByteArray(1 << 20, 'p'));
    node->photos.append({0, 0, 0, 0, QString(), write(QStringLiteral("empty.jpg"), QByteArray()), {}});
    ASSERT_TRUE(saveTour(project, 0, path()));
    const QByteArray earlier = contentOf(path());
    for (const rlim_t limit : {rlim_t(0), rlim_t(1), rlim_t(2), rlim_t(100), rlim_t(265), rlim_t(2000),
                               rlim_t(65536), rlim_t(1 << 20), static_cast<rlim_t>(earlier.size() - 1)}) {
        write(QStringLiteral("tour.roa"), earlier);
        QFile::remove(kept());
        Child child([&] {
            signal(SIGXFSZ, SIG_IGN);
            const rlimit limits{limit, limit};
            setrlimit(RLIMIT_FSIZE, &limits);
            const SaveResult result = saveTour(project, 0, path());
            return result.outcome == SaveOutcome::Failed && !result.detail.isEmpty() ? 0 : 1;
        });
        EXPECT_EQ(child.wait(), 0) << limit;
        EXPECT_FALSE(QFile::exists(path())) << limit;
        EXPECT_EQ(contentOf(kept()), earlier) << limit;
    }
}

TEST_F(SaveSafety, KilledBetweenTwoRecordsTheRemainsDoNotPassForATour)
{
    add(kA, QStringLiteral("a"), QByteArray(5000, 'a'));
    add("BBBBBBBBBBBBBB", QStringLiteral("b"), QByteArray(5000, 'b'));
    ASSERT_TRUE(saveTour(project, 0, path()));
    const QByteArray earlier = contentOf(path());
    const rlim_t record = 262 + 5000;
    const rlim_t end = static_cast<rlim_t>(earlier.size());
    for (const rlim_t boundary : {end - 2 * record, end - record}) {
        write(QStringLiteral("tour.roa"), earlier);
        QFile::remove(kept());
        Child child([&] {
            const rlimit limits{boundary, boundary};
            const rlimit noCore{0, 0};
            setrlimit(RLIMIT_CORE, &noCore);
            setrlimit(RLIMIT_FSIZE, &limits);
            signal(SIGXFSZ, SIG_DFL); // the first byte behind the boundary ends the process
            return saveTour(project, 0, path()) ? 0 : 1;
        });
        ASSERT_EQ(child.wait(), -1);
        ASSERT_EQ(static_cast<rlim_t>(QFileInfo(path()).size()), boundary);
        std::vector<TourPart> parts;
        EXPECT_FALSE(takeApart(path(), &parts));
        EXPECT_EQ(contentOf(kept()), earlier);
    }
}

TEST_F(SaveSafety, AFullDiskFailsTheSaveAndKeepsTheEarlierTour)
{
    const QString disk = file(QStringLiteral("disk"));
    const SmallDisk mounted(disk);
    if (!mounted.mounted) GTEST_SKIP() << "no right to mount a small disk";
    const QString out = disk + QStringLiteral("/tour.roa");
    PanoNode* node = add(kA, QStringLiteral("a"), QByteArray(100 << 10, 'o'));
    EXPECT_TRUE(saveTour(project, 0, out));
    const QByteArray earlier = contentOf(out);

    int failed = 0;
    for (int kib = 64; kib <= 2048; kib += 64) {
        node->file_path = write(QStringLiteral("new.pno"), QByteArray(kib << 10, 'n'));
        const SaveResult result = saveTour(project, 0, out);
        if (result) {
            EXPECT_TRUE(panoramaIs(out, QByteArray(kib << 10, 'n')));
            EXPECT_FALSE(QFile::exists(out + QLatin1Char('~')));
        } else {
            ++failed;
            EXPECT_EQ(result.outcome, SaveOutcome::Failed);
            EXPECT_FALSE(result.detail.isEmpty());
            EXPECT_FALSE(QFile::exists(out));
            EXPECT_EQ(contentOf(out + QLatin1Char('~')), earlier);
        }
        QFile::remove(out + QLatin1Char('~'));
        QFile restored(out);
        ASSERT_TRUE(restored.open(QIODevice::WriteOnly));
        ASSERT_EQ(restored.write(earlier), earlier.size());
    }
    EXPECT_GT(failed, 10);
}

TEST_F(SaveSafety, AWriteProtectedTourCannotBeOpenedAndStays)
{
    add(kA, QStringLiteral("a"));
    write(QStringLiteral("tour.roa"), "earlier");
    chmod(QFile::encodeName(folder()).constData(), 0777);
    chmod(QFile::encodeName(path()).constData(), 0444);
    Child child([&] {
        if (geteuid() == 0 && setuid(65534) != 0) return 2;
        return saveTour(project, 0, path()).outcome == SaveOutcome::CannotOpen ? 0 : 1;
    });
    EXPECT_EQ(child.wait(), 0);
    EXPECT_EQ(contentOf(path()), QByteArray("earlier"));
    EXPECT_FALSE(QFile::exists(kept()));
}

TEST_F(SaveSafety, ASourceThatMayNotBeReadFailsTheSave)
{
    add(kA, QStringLiteral("a"));
    chmod(QFile::encodeName(folder()).constData(), 0777);
    chmod(QFile::encodeName(project.panoramas[0]->file_path).constData(), 0000);
    Child child([&] {
        if (geteuid() == 0 && setuid(65534) != 0) return 2;
        return saveTour(project, 0, path()).outcome == SaveOutcome::Failed ? 0 : 1;
    });
    EXPECT_EQ(child.wait(), 0);
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(SaveSafety, MemoryDoesNotGrowWithTheTour)
{
    for (int i = 0; i < 4; ++i) {
        const QByteArray identity = QByteArray("AAAAAAAAAAAAA") + static_cast<char>('A' + i);
        add(identity.constData(), QStringLiteral("p%1").arg(i));
    }
    const auto peakKib = [&](qint64 bytesEach) {
        for (const auto& node : project.panoramas) {
            QFile sparse(node->file_path);
            if (!sparse.open(QIODevice::ReadWrite) || !sparse.resize(bytesEach)) return -1L;
        }
        Child child([&] { return saveTour(project, 0, path()) ? 0 : 1; });
        return child.wait() == 0 ? child.usage.ru_maxrss : -1L;
    };
    const long small = peakKib(1);
    const long large = peakKib(qint64(256) << 20); // 1 GiB in all
    ASSERT_GT(small, 0);
    ASSERT_GT(large, 0);
    EXPECT_EQ(QFileInfo(path()).size() >> 30, 1);
    EXPECT_LT(large - small, 16 << 10) << "kibibytes";
    RecordProperty("peak_kib", static_cast<int>(large));
}

} // namespace
