// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Clients that only hold a thread: the service, in this process with little patience, gets rid of them.

#include "companions/albumd/Service.h"
#include "tests/support/TestFiles.h"

#include <QTcpSocket>

#include <gtest/gtest.h>

#include <thread>

namespace {

constexpr int kWait_ms = 30'000;

class ShortPatience : public testing::Test
{
protected:
    ShortPatience()
    {
        std::string error;
        EXPECT_TRUE(service.open(&error)) << error;
        EXPECT_TRUE(service.accounts().add("one@example.com", "walk1home", 1 << 20, &error)) << error;
        token = service.accounts().login("one@example.com", "walk1home").token;
        port = service.server().bind("127.0.0.1", 0);
        serving = std::thread([this] { service.server().listen_after_bind(); });
        socket.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(port));
        EXPECT_TRUE(socket.waitForConnected(kWait_ms));
    }

    ~ShortPatience() override
    {
        service.server().stopSoon(1000);
        serving.join();
    }

    albumd::ServiceOptions options() const
    {
        albumd::ServiceOptions all;
        all.folder = folder.path(".");
        all.patience.head_ms = 300;
        all.patience.silence_ms = 200;
        all.patience.grace_ms = 300;
        all.patience.slowest_bytes_per_s = 1'000'000;
        all.patience.keepAlive_ms = 200;
        return all;
    }

    /// Ends when the service has ended the connection.
    bool endedByService()
    {
        while (socket.state() == QAbstractSocket::ConnectedState)
            if (!socket.waitForReadyRead(kWait_ms) && socket.error() == QAbstractSocket::SocketTimeoutError)
                return false;
        return true;
    }

    /// Sends one byte of these again and again, each a moment after the one before.
    bool tricklesUntilEnded(const QByteArray& bytes)
    {
        for (int i = 0; i < 1000 && socket.state() == QAbstractSocket::ConnectedState; ++i) {
            socket.write(bytes.mid(i % bytes.size(), 1));
            socket.waitForReadyRead(20);
        }
        return socket.state() != QAbstractSocket::ConnectedState;
    }

    pnotest::TemporaryFolder folder;
    albumd::Service service{options()};
    std::string token;
    int port = 0;
    std::thread serving;
    QTcpSocket socket;
};

TEST_F(ShortPatience, AConnectionWithoutARequestIsEnded)
{
    EXPECT_TRUE(endedByService());
}

TEST_F(ShortPatience, AHeadThatTricklesIsCutOff)
{
    EXPECT_TRUE(tricklesUntilEnded("GET / HTTP/1.1 and so on"));
}

TEST_F(ShortPatience, ABodyThatTricklesIsCutOffAndNotKept)
{
    socket.write("POST /upload?panoid=AAAAAAAAAAAAAA&token=" + QByteArray::fromStdString(token) +
                 " HTTP/1.1\r\nContent-Length: 100000\r\n\r\n");
    EXPECT_TRUE(tricklesUntilEnded("body"));
}

TEST_F(ShortPatience, ABodyThatStopsIsCutOff)
{
    socket.write("POST /upload?panoid=AAAAAAAAAAAAAA&token=" + QByteArray::fromStdString(token) +
                 " HTTP/1.1\r\nContent-Length: 100000\r\n\r\nbegin");
    EXPECT_TRUE(endedByService());
}

TEST_F(ShortPatience, AReplyThatNobodyReadsIsCutOff)
{
    socket.setReadBufferSize(1);
    for (int i = 0; i < 4000; ++i)
        socket.write("GET /web/walk.js HTTP/1.1\r\n\r\n");
    socket.flush();
    EXPECT_TRUE(socket.waitForReadyRead(kWait_ms));
    do // the service takes the first requests, and no more when the way back is full
        socket.waitForBytesWritten(50);
    while (service.server().connections() > 0);
    EXPECT_EQ(service.server().connections(), 0u);
}

} // namespace
