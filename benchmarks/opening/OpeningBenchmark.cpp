// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Opening a tour against cp of the same files: both read from the page cache, neither waits for the disk.
// Alternating rounds, medians; and the memory that opening took.
//   bench_opening [MIB [FOLDER]]    default: 2048 MiB in all, in the system's temporary folder

#include "benchmarks/support/FileRace.h"
#include "linking/NexomapLinker.h"
#include "linking/OpenTour.h"
#include "project/LocalText.h"
#include "project/SaveTour.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr double kLimit = 1.3;

void empty(const QString& path)
{
    QDir(path).removeRecursively();
    QDir().mkpath(path);
}

} // namespace

int main(int argc, char** argv)
{
    localtext::useSystemEncoding();
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const qint64 mib = arguments.size() > 1 ? arguments[1].toLongLong() : 2048;
    const QString place = arguments.size() > 2 ? arguments[2] : QDir::tempPath();
    const QTemporaryDir folder(place + QStringLiteral("/bench_opening-XXXXXX"));
    if (mib < 8 || !folder.isValid()) {
        std::fprintf(stderr, "usage: bench_opening [MIB [FOLDER]], MIB at least 8\n");
        return 2;
    }

    RoamProject project;
    const QStringList sources = filerace::noiseTour(project, folder.path(), mib);
    const QString tour = folder.filePath(QStringLiteral("tour.roa"));
    if (sources.isEmpty() || !saveTour(project, 0, tour)) return 1;

    NexomapLinker linker(folder.path()); // there is no library: it is not what is measured
    const QString unpacked = folder.filePath(QStringLiteral("unpacked/"));
    const QString copies = folder.filePath(QStringLiteral("copies/"));
    const double before = filerace::peakMemory_mib();
    const auto prepare = [&] {
        empty(unpacked);
        empty(copies);
        clearProject(project);
        project.folders.working = unpacked;
        // What the last round wrote shall not go to the disk during this one.
        QProcess::execute(QStringLiteral("sync"), {});
    };
    const auto open = [&] { return bool(openTour(project, linker, tour)); };
    const auto copy = [&] {
        return QProcess::execute(QStringLiteral("cp"), sources + QStringList{copies}) == 0;
    };
    const filerace::Medians times = filerace::race(prepare, open, copy);
    std::printf("opening %lld MiB: %.2f s; cp of the same files: %.2f s (medians of %d)\n",
                static_cast<long long>(mib), times.ours_s, times.peer_s, times.rounds);
    std::printf("ratio %.2f (limit %.1f); opening took %.1f MiB of memory at most\n",
                times.ours_s / times.peer_s, kLimit, filerace::peakMemory_mib() - before);
    return 0;
}
