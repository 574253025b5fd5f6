// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Saving a tour against cp of the same files. Both read from the page cache and both end with the bytes on
// the disk: cp is followed by sync of the files it made, as saving flushes its file. Alternating rounds,
// medians.
//   bench_saving [MIB [FOLDER]]    default: 1024 MiB in all, in the system's temporary folder

#include "benchmarks/support/FileRace.h"
#include "project/LocalText.h"
#include "project/SaveTour.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr double kLimit = 1.3;

} // namespace

int main(int argc, char** argv)
{
    localtext::useSystemEncoding();
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const qint64 mib = arguments.size() > 1 ? arguments[1].toLongLong() : 1024;
    const QString place = arguments.size() > 2 ? arguments[2] : QDir::tempPath();
    const QTemporaryDir folder(place + QStringLiteral("/bench_saving-XXXXXX"));
    if (mib < 8 || !folder.isValid()) {
        std::fprintf(stderr, "usage: bench_saving [MIB [FOLDER]], MIB at least 8\n");
        return 2;
    }

    RoamProject project;
    const QStringList sources = filerace::noiseTour(project, folder.path(), mib);
    if (sources.isEmpty()) return 1;
    const QString tour = folder.filePath(QStringLiteral("tour.roa"));
    const QString copies = folder.filePath(QStringLiteral("copies"));
    QStringList copied;
    for (const QString& source : sources)
        copied << copies + source.mid(source.lastIndexOf(QLatin1Char('/')));

    const auto prepare = [&] {
        QFile::remove(tour);
        QDir(copies).removeRecursively();
        QDir().mkpath(copies);
        QProcess::execute(QStringLiteral("sync"), {});
    };
    const auto save = [&] { return bool(saveTour(project, 0, tour)); };
    const auto copy = [&] {
        return QProcess::execute(QStringLiteral("cp"), sources + QStringList{copies}) == 0 &&
               QProcess::execute(QStringLiteral("sync"), copied) == 0;
    };
    const filerace::Medians times = filerace::race(prepare, save, copy);
    std::printf("saving %lld MiB: %.2f s; cp and sync of the same files: %.2f s (medians of %d)\n",
                static_cast<long long>(mib), times.ours_s, times.peer_s, times.rounds);
    std::printf("ratio %.2f (limit %.1f)\n", times.ours_s / times.peer_s, kLimit);
    return 0;
}
