// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "benchmarks/support/FileRace.h"

#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <random>
#include <vector>
#ifndef Q_OS_WIN
#include <sys/resource.h>
#endif

namespace {

constexpr int kFiles = 8;
constexpr int kRounds = 5;

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
    return file.flush();
}

double seconds(const std::function<bool()>& work)
{
    QElapsedTimer timer;
    timer.start();
    if (!work()) {
        std::fprintf(stderr, "a round failed\n");
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

QStringList filerace::noiseTour(RoamProject& project, const QString& folder, qint64 mib)
{
    QStringList files;
    for (int i = 0; i < kFiles; ++i) {
        auto node = std::make_unique<PanoNode>();
        qstrncpy(node->parameters.identity, "AAAAAAAAAAAAAA", sizeof node->parameters.identity);
        node->file_path = folder + QStringLiteral("/p%1.pno").arg(i);
        if (!writeNoise(node->file_path, std::max<qint64>(1, mib / kFiles))) return {};
        files << node->file_path;
        project.panoramas.push_back(std::move(node));
    }
    return files;
}

filerace::Medians filerace::race(const std::function<void()>& prepare, const std::function<bool()>& ours,
                                 const std::function<bool()>& peer)
{
    std::vector<double> our_times, peer_times;
    for (int round = 0; round < kRounds; ++round) {
        prepare();
        if (round % 2) peer_times.push_back(seconds(peer));
        our_times.push_back(seconds(ours));
        if (round % 2 == 0) peer_times.push_back(seconds(peer));
    }
    return {median(our_times), median(peer_times), kRounds};
}

double filerace::peakMemory_mib()
{
#ifdef Q_OS_WIN
    return 0.0;
#else
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
#endif
}
