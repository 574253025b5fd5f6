// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Opening a tour against cp of the same files: both read from the page cache, neither waits for the disk.
// Alternating rounds, medians; and the memory that opening took.
//   bench_opening [MIB [FOLDER]]    default: 2048 MiB in all, in the system's temporary folder

#include "linking/NexomapLinker.h"
#include "linking/OpenTour.h"
#include "project/LocalText.h"
#include "project/SaveTour.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <random>
#include <vector>
#ifndef Q_OS_WIN
#include <sys/resource.h>
#endif

namespace {

constexpr int kFiles = 8;
constexpr int kRounds = 5;
constexpr double kLimit = 1.3;

/// Noise, so that no file system makes it smaller; no panorama, which the reader finds out at its first
/// bytes.
bool writeNoise(const QString& path, qint64 mib)
{
    std::mt19937_64 random(static_cast<std::uint64_t>(mib));
    std::vector<std::uint64_t> block((1 << 20) / sizeof(std::uint64_t));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    for (qint64 done = 0; done < mib; ++done) {
        std::generate(block.begin(), block.end(), std::ref(random));
        if (file.write(reinterpret_cast<const char*>(block.data()), 1 << 20) != 1 << 20) return false;
    }
    return true;
}

double seconds(const std::function<bool()>& work)
{
    QElapsedTimer timer;
    timer.start();
    if (!work()) {
        std::fprintf(stderr, "bench_opening: a round failed\n");
        std::exit(1);
    }
    return static_cast<double>(timer.nsecsElapsed()) * 1e-9;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double peakMib()
{
#ifdef Q_OS_WIN
    return 0.0;
#else
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
#endif
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
    if (mib < kFiles || !folder.isValid()) {
        std::fprintf(stderr, "usage: bench_opening [MIB [FOLDER]], MIB at least %d\n", kFiles);
        return 2;
    }

    RoamProject project;
    QStringList sources;
    for (int i = 0; i < kFiles; ++i) {
        auto node = std::make_unique<PanoNode>();
        qstrncpy(node->parameters.identity, "AAAAAAAAAAAAAA", sizeof node->parameters.identity);
        node->file_path = folder.filePath(QStringLiteral("p%1.pno").arg(i));
        if (!writeNoise(node->file_path, mib / kFiles)) return 1;
        sources << node->file_path;
        project.panoramas.push_back(std::move(node));
    }
    const QString tour = folder.filePath(QStringLiteral("tour.roa"));
    if (!saveTour(project, 0, tour)) return 1;

    NexomapLinker linker(folder.path()); // there is no library: it is not what is measured
    const QString unpacked = folder.filePath(QStringLiteral("unpacked/"));
    const QString copies = folder.filePath(QStringLiteral("copies/"));
    const auto empty = [](const QString& path) {
        QDir(path).removeRecursively();
        QDir().mkpath(path);
    };
    const double before = peakMib();
    std::vector<double> opening, copying;
    for (int round = 0; round < kRounds; ++round) {
        empty(unpacked);
        empty(copies);
        const auto open = [&] {
            clearProject(project);
            project.folders.working = unpacked;
            opening.push_back(seconds([&] { return bool(openTour(project, linker, tour)); }));
        };
        const auto copy = [&] {
            copying.push_back(seconds(
                [&] { return QProcess::execute(QStringLiteral("cp"), sources + QStringList{copies}) == 0; }));
        };
        if (round % 2) {
            copy();
            open();
        } else {
            open();
            copy();
        }
    }
    std::printf("opening %lld MiB: %.2f s; cp of the same files: %.2f s (medians of %d)\n",
                static_cast<long long>(mib), median(opening), median(copying), kRounds);
    std::printf("ratio %.2f (limit %.1f); opening took %.1f MiB of memory at most\n",
                median(opening) / median(copying), kLimit, peakMib() - before);
    return 0;
}
