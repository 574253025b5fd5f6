// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Many uploads at once, and the service killed among them: what it acknowledged is there, nothing half is.

#include "linking/pno/PnoFile.h"
#include "tests/albumd/Client.h"

#include <QDir>
#include <QDirIterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

using namespace albumtest;
using testing::IsSubsetOf;

namespace {

constexpr int kUploads = 50;
constexpr int kAcknowledged = 8; ///< then the service is killed
constexpr std::size_t kBytes = 20'000'000;

/// A panorama of 20 MB that is never whole in memory: its beginning, then a segment of zeros that readers
/// skip.
class LargePanorama
{
public:
    explicit LargePanorama(const std::string& id)
        : m_start(smallPanorama(id, 1))
    {
        m_start.pop_back();
        const std::size_t filler = kBytes - m_start.size();
        for (std::size_t i = 0; i < 4; ++i)
            m_start[m_start.size() - 4 + i] = static_cast<std::uint8_t>(filler >> (8 * i));
    }

    bool send(std::size_t offset, std::size_t length, httplib::DataSink& sink) const
    {
        static const std::string zeros(256 * 1024, '\0');
        if (offset >= m_start.size()) return sink.write(zeros.data(), std::min(length, zeros.size()));
        return sink.write(reinterpret_cast<const char*>(m_start.data()) + offset,
                          std::min(length, m_start.size() - offset));
    }

private:
    pnotest::Bytes m_start;
};

/// True when the service acknowledged it.
bool uploadLarge(int port, const std::string& token, const std::string& id)
{
    const LargePanorama panorama(id);
    httplib::Client client("127.0.0.1", port);
    client.set_url_encode(false);
    client.set_read_timeout(120);
    client.set_write_timeout(120);
    const auto result = client.Post(
        address("/upload", {{"token", token}, {"panoid", id}}), kBytes,
        [&](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
            return panorama.send(offset, length, sink);
        },
        "application/octet-stream");
    return result && result->status == 200 && result->body == "OK";
}

std::vector<std::string> filesBelow(const QString& folder)
{
    std::vector<std::string> all;
    QDirIterator walk(folder, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext())
        all.push_back(walk.next().toStdString());
    return all;
}

TEST(Load, WhatWasAcknowledgedBeforeAKillIsThereAndNothingHalfIsListed)
{
    AlbumService service(QStringLiteral(ALBUMD_PROGRAM));
    Client client(service.port());
    ASSERT_TRUE(client.login());
    std::mutex lock;
    std::condition_variable enough;
    std::set<std::string> acknowledged;
    int ended = 0;
    std::vector<std::thread> uploads;
    for (int i = 0; i < kUploads; ++i)
        uploads.emplace_back([&, i, port = service.port()] {
            const bool good = uploadLarge(port, client.token, idNumber(i));
            const std::lock_guard<std::mutex> guard(lock);
            if (good) acknowledged.insert(idNumber(i));
            ++ended;
            enough.notify_one();
        });
    {
        std::unique_lock<std::mutex> guard(lock);
        enough.wait(guard, [&] { return acknowledged.size() >= kAcknowledged || ended == kUploads; });
        EXPECT_LT(ended, kUploads) << "killed in the middle";
    }
    service.kill();
    for (std::thread& upload : uploads)
        upload.join();
    ASSERT_GE(acknowledged.size(), std::size_t(kAcknowledged));

    ASSERT_TRUE(service.start());
    Client again(service.port());
    ASSERT_TRUE(again.login());
    const std::vector<std::string> listed = again.listed();
    EXPECT_THAT(std::vector<std::string>(acknowledged.begin(), acknowledged.end()), IsSubsetOf(listed));
    const std::vector<std::string> files = filesBelow(service.dataFolder() + QStringLiteral("/files"));
    EXPECT_EQ(files.size(), listed.size()) << "what is not listed takes no room";
    for (const std::string& file : files) {
        const auto reader = std::make_unique<PnoFile>();
        EXPECT_EQ(reader->Open(file.c_str()), 0) << file;
        EXPECT_EQ(QFileInfo(QString::fromStdString(file)).size(), qint64(kBytes)) << file;
    }
    EXPECT_TRUE(filesBelow(service.dataFolder() + QStringLiteral("/incoming")).empty());

    for (int i = 0; i < kUploads; ++i) {
        if (std::count(listed.begin(), listed.end(), idNumber(i))) continue;
        EXPECT_TRUE(uploadLarge(service.port(), again.token, idNumber(i))) << "it goes on after the kill";
        break;
    }
}

} // namespace
