// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the album service costs: uploads at once of 20 MB panoramas over loopback against writing and flushing
// the same bytes without a service, and tiles served against a bare file server of the same HTTP library.

#include "tests/albumd/Client.h"
#include "tests/support/AlbumService.h"
#include "tests/support/JpegTiles.h"
#include "tests/support/PnoParts.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace albumtest;

namespace {

constexpr int kUploads = 8; ///< at once
constexpr int kRounds = 3;
constexpr std::size_t kBytes = 20'000'000;
constexpr int kReaders = 4;
constexpr int kRequests = 1500; ///< of each reader

double seconds(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void atOnce(int count, const std::function<void(int)>& work)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i)
        threads.emplace_back(work, i);
    for (std::thread& thread : threads)
        thread.join();
}

bool writeAndFlush(const std::string& path, const pnotest::Bytes& bytes)
{
    const int file = open(path.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0600);
    if (file < 0) return false;
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t step = write(file, bytes.data() + done, bytes.size() - done);
        if (step <= 0) break;
        done += static_cast<std::size_t>(step);
    }
    const bool good = done == bytes.size() && fsync(file) == 0;
    return close(file) == 0 && good;
}

/// Requests of several readers that keep their connections.
/// @return per second; 0 when one was not answered
double requestsPerSecond(int port, const std::string& path)
{
    std::atomic<int> good{0};
    const double taken = seconds([&] {
        atOnce(kReaders, [&](int) {
            httplib::Client client("127.0.0.1", port);
            client.set_keep_alive(true);
            client.set_tcp_nodelay(true);
            for (int i = 0; i < kRequests; ++i) {
                const auto answer = client.Get(path.c_str());
                if (answer && answer->status == 200) ++good;
            }
        });
    });
    return good == kReaders * kRequests ? good / taken : 0.0;
}

/// Each round both ways, the best of each: what else runs on the machine meets both.
bool raceUploads(AlbumService& service, const QString& folder)
{
    Client client(service.port());
    if (!client.login()) return false;
    std::vector<pnotest::Bytes> files;
    for (int i = 0; i < kUploads; ++i)
        files.push_back(smallPanorama(idNumber(i), kBytes));
    double uploading = 1e30, copying = 1e30;
    std::atomic<int> failed{0};
    for (int round = 0; round < kRounds; ++round) {
        uploading = std::min(uploading, seconds([&] {
                                 atOnce(kUploads, [&](int i) {
                                     Client each(service.port());
                                     each.token = client.token;
                                     const auto& file = files[static_cast<std::size_t>(i)];
                                     if (each.upload(idNumber(i), file).body != "OK") ++failed;
                                 });
                             }));
        copying = std::min(copying, seconds([&] {
                               atOnce(kUploads, [&](int i) {
                                   const QString path = folder + QStringLiteral("/copy%1").arg(i);
                                   const auto& file = files[static_cast<std::size_t>(i)];
                                   if (!writeAndFlush(path.toStdString(), file)) ++failed;
                               });
                           }));
    }
    const double megabytes = kUploads * double(kBytes) / 1e6;
    std::printf("%d uploads of 20 MB at once: %.0f MB/s acknowledged; written and flushed alone: %.0f MB/s, "
                "ratio %.2f\n",
                kUploads, megabytes / uploading, megabytes / copying, uploading / copying);
    return failed == 0;
}

bool raceTiles(AlbumService& service, const QString& folder)
{
    Client client(service.port());
    const std::string id = idNumber(kUploads);
    pnotest::PnoOptions options;
    options.identity = id;
    options.level = 10;
    options.tiles = pnotest::colouredTiles();
    if (!client.login() || client.upload(id, pnotest::panorama(options)).body != "OK") return false;
    const std::string album = client.createAlbum({id});
    const std::string tile = "/album/" + album + "/tile/" + id + "/0/0/0";
    const Answer answer = client.get(tile);
    if (answer.status != 200) return false;
    std::ofstream(folder.toStdString() + "/tile.jpg", std::ios::binary) << answer.body;

    httplib::Server bare;
    bare.set_tcp_nodelay(true); // without it every answer waits for the client's acknowledgement
    bare.set_keep_alive_max_count(kRequests);
    if (!bare.set_mount_point("/", folder.toStdString())) return false;
    const int port = bare.bind_to_any_port("127.0.0.1");
    std::thread serving([&] { bare.listen_after_bind(); });
    double ours = 0, theirs = 0;
    for (int round = 0; round < kRounds; ++round) {
        ours = std::max(ours, requestsPerSecond(service.port(), tile));
        theirs = std::max(theirs, requestsPerSecond(port, "/tile.jpg"));
    }
    bare.stop();
    serving.join();
    if (ours == 0 || theirs == 0) return false;
    std::printf("tiles of %zu bytes to %d readers: %.0f requests/s; a bare file server: %.0f requests/s, "
                "ratio of times %.2f\n",
                answer.body.size(), kReaders, ours, theirs, theirs / ours);
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    AlbumService service(QStringLiteral(ALBUMD_PROGRAM));
    const QTemporaryDir folder;
    if (service.baseUrl().isEmpty() || !raceUploads(service, folder.path()) ||
        !raceTiles(service, folder.path())) {
        std::fprintf(stderr, "bench_album: the service did not answer as it should\n");
        return 1;
    }
    return 0;
}
