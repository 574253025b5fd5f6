// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Saving a tour against cp of the same files. Both read from the page cache and both end with the bytes on
// the disk: cp is followed by sync of the files it made, as saving flushes its file. Alternating rounds,
// medians.
//   bench_saving [MIB [FOLDER]]    default: 1024 MiB in all, in the system's temporary folder

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

namespace {

constexpr int kFiles = 8;
constexpr int kRounds = 5;
constexpr double kLimit = 1.3;

bool writeNoise(const QString& path, qint64 bytes)
{
    std::mt19937_64 random(static_cast<std::uint64_t>(bytes));
    std::vector<std::uint64_t> block((1 << 20) / sizeof(std::uint64_t));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    for (qint64 done = 0; done < bytes; done += 1 << 20) {
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
        std::fprintf(stderr, "bench_saving: a round failed\n");
        std::exit(1);
    }
    return static_cast<double>(timer.nsecsElapsed()) * 1e-9;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char** argv)
{
    localtext::useSystemEncoding();
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const qint64 mib = arguments.size() > 1 ? arguments[1].toLongLong() : 1024;
    const QString place = arguments.size() > 2 ? arguments[2] : QDir::tempPath();
    const QTemporaryDir folder(place + QStringLiteral("/bench_saving-XXXXXX"));
    if (mib < kFiles || !folder.isValid()) {
        std::fprintf(stderr, "usage: bench_saving [MIB [FOLDER]], MIB at least %d\n", kFiles);
        return 2;
    }

    RoamProject project;
    QStringList sources;
    for (int i = 0; i < kFiles; ++i) {
        auto node = std::make_unique<PanoNode>();
        qstrncpy(node->parameters.identity, "AAAAAAAAAAAAAA", sizeof node->parameters.identity);
        node->file_path = folder.filePath(QStringLiteral("p%1.pno").arg(i));
        if (!writeNoise(node->file_path, (mib / kFiles) << 20)) return 1;
        sources << node->file_path;
        project.panoramas.push_back(std::move(node));
    }
    const QString tour = folder.filePath(QStringLiteral("tour.roa"));
    const QString copies = folder.filePath(QStringLiteral("copies"));
    QStringList copied;
    for (const QString& source : sources)
        copied << copies + source.mid(source.lastIndexOf(QLatin1Char('/')));

    std::vector<double> saving, copying;
    QProcess::execute(QStringLiteral("sync"), {});
    for (int round = 0; round < kRounds; ++round) {
        QFile::remove(tour);
        QDir(copies).removeRecursively();
        QDir().mkpath(copies);
        const auto save = [&] {
            saving.push_back(seconds([&] { return bool(saveTour(project, 0, tour)); }));
        };
        const auto copy = [&] {
            copying.push_back(seconds([&] {
                return QProcess::execute(QStringLiteral("cp"), sources + QStringList{copies}) == 0 &&
                       QProcess::execute(QStringLiteral("sync"), copied) == 0;
            }));
        };
        // Whoever writes second meets a disk that the first has warmed up.
        if (round % 2) {
            copy();
            save();
        } else {
            save();
            copy();
        }
    }
    const double ratio = median(saving) / median(copying);
    std::printf("saving %lld MiB: %.2f s; cp and sync of the same files: %.2f s (medians of %d)\n",
                static_cast<long long>(mib), median(saving), median(copying), kRounds);
    std::printf("ratio %.2f (limit %.1f)\n", ratio, kLimit);
    return 0;
}
