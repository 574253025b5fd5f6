// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Requests that no honest client sends: turned away, with the service alive and nothing outside its folder.

#include "tests/albumd/Client.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTcpSocket>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>

using namespace albumtest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr int kWait_ms = 40'000;

class Hostile : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_FALSE(service.baseUrl().isEmpty());
        ASSERT_TRUE(client.login());
        ASSERT_EQ(client.upload(a, smallPanorama(a)).body, "OK");
        album = client.createAlbum({a});
    }

    /// Whatever came before: the service answers, lists what it has, and its folder holds what it should.
    void TearDown() override
    {
        EXPECT_TRUE(service.running());
        Client fresh(service.port());
        fresh.token = client.token;
        EXPECT_THAT(fresh.listed(), ElementsAre(a));
        EXPECT_EQ(service.terminate(), 0) << "it ends what is under way";
        QDir above(service.dataFolder());
        const QString own = above.dirName();
        above.cdUp();
        EXPECT_EQ(above.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList{own});
        static const QRegularExpression expected(
            QStringLiteral("^albumd\\.(lock|sqlite(-wal|-shm)?)$|^files/1/"
                           "[A-Za-z0-9_-]+\\.[A-Za-z]{12}\\.(pno|dat|photo)$"));
        QDirIterator walk(service.dataFolder(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            const QString path = QDir(service.dataFolder()).relativeFilePath(walk.next());
            EXPECT_TRUE(expected.match(path).hasMatch()) << path.toStdString();
        }
    }

    std::unique_ptr<QTcpSocket> connected() const
    {
        auto socket = std::make_unique<QTcpSocket>();
        socket->connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(service.port()));
        EXPECT_TRUE(socket->waitForConnected(kWait_ms));
        return socket;
    }

    /// Sends the bytes and reads until the service ends the connection.
    std::string exchange(const QByteArray& bytes) const
    {
        const auto socket = connected();
        socket->write(bytes);
        return rest(*socket);
    }

    static std::string rest(QTcpSocket& socket)
    {
        QByteArray all;
        while (socket.state() == QAbstractSocket::ConnectedState && socket.waitForReadyRead(kWait_ms))
            all += socket.readAll();
        all += socket.readAll();
        EXPECT_NE(socket.error(), QAbstractSocket::SocketTimeoutError) << "the connection was never ended";
        return all.toStdString();
    }

    QByteArray postHead(const char* path, const char* more = "") const
    {
        return QByteArray("POST ") + path + "?token=" + client.token.c_str() + "&panoid=" + a.c_str() +
               "&albumid=" + album.c_str() + " HTTP/1.1\r\nHost: x\r\n" + more;
    }

    AlbumService service{QStringLiteral(ALBUMD_PROGRAM)};
    Client client{service.port()};
    const std::string a = idNumber(0);
    std::string album;
};

TEST_F(Hostile, PathsThatClimbFindNothing)
{
    for (const char* path :
         {"/../../etc/passwd", "/web/../albumd.sqlite", "/web/..%2f..%2falbumd.sqlite",
          "/web/%2e%2e/albumd.sqlite", "//album", "/album/", "/album/..", "/album/../../etc/passwd/x",
          "/web/album.html", "/web/", "/web/x%00.js", "/albumd.sqlite", "/files/1", "/login/../web/main.js",
          "\\..\\albumd.sqlite", "/web/main.js/", "/./web/main.js"}) {
        const std::string reply =
            exchange(QByteArray("GET ") + path + " HTTP/1.1\r\nConnection: close\r\n\r\n");
        EXPECT_THAT(reply, StartsWith("HTTP/1.1 40")) << path;
        EXPECT_EQ(reply.find("SQLite format"), std::string::npos);
    }
    for (const std::string& name :
         {std::string("../x"), a + "-00000000/jpg", a + "/../../x.jpg", a + "-../../00.jpg"})
        EXPECT_NE(client.get("/album/" + album + "/photo/" + name).status, 200) << name;
}

TEST_F(Hostile, NamesWithSlashesDotsOrZeroBytesReachNoFile)
{
    using namespace std::string_literals;
    for (const std::string& id :
         {"../../../../x."s, "/etc/passwd\0aa"s, "Abcdefghijkl/."s, "Abcdefghijkl.."s, "Abcdefghijkl\0\0"s,
          "Abcdefghijklaa/"s, ""s, "Abcdefghijklé"s, std::string(5000, 'A')}) {
        EXPECT_EQ(client.upload(id, smallPanorama(a)).status, 400) << id;
        EXPECT_EQ(
            client.post("/upload_linkphoto", {{"token", client.token}, {"panoid", a}, {"photoname", id}}, "x")
                .status,
            400);
        EXPECT_EQ(
            client
                .post("/upload_linkphoto",
                      {{"token", client.token}, {"panoid", a}, {"photoname", a + id.substr(0, 9) + ".jpg"}},
                      "x")
                .status,
            400);
        EXPECT_EQ(client
                      .post("/upload_linkmodel",
                            {{"token", client.token}, {"panoid0", a}, {"panoid1", id}, {"levelSel", "0"}},
                            "x")
                      .status,
                  400);
        EXPECT_EQ(client.createAlbum({id}), "");
    }
}

TEST_F(Hostile, LengthsThatNobodyCanMeanAreRefusedBeforeTheBody)
{
    for (const char* length :
         {"999999999999999999", "268435457", "18446744073709551615", "99999999999999999999999"})
        EXPECT_THAT(exchange(postHead("/upload", "Content-Length: ") + length + "\r\n\r\n"),
                    StartsWith("HTTP/1.1 4"))
            << length;
    for (const char* more : {"Content-Length: -1\r\n\r\n", "Content-Length: 5x\r\n\r\nhello",
                             "Content-Length: 5\r\nContent-Length: 6\r\n\r\nhello!",
                             "Content-Length: 5\r\nTransfer-Encoding: chunked\r\n\r\nhello"})
        EXPECT_THAT(exchange(postHead("/upload", more)), StartsWith("HTTP/1.1 400")) << more;
    EXPECT_THAT(exchange(postHead("/set_albumpano_location", "Content-Length: 1000000\r\n\r\n")),
                StartsWith("HTTP/1.1 413"));
    EXPECT_THAT(exchange(postHead("/nowhere", "Content-Length: 1000000\r\n\r\n")),
                StartsWith("HTTP/1.1 400"));
    EXPECT_THAT(exchange(postHead("/upload", "\r\n")), StartsWith("HTTP/1.1 411"));
}

TEST_F(Hostile, ABodyInPiecesWithoutAnEndIsCutOff)
{
    const auto socket = connected();
    socket->write(postHead("/set_albumpano_location", "Transfer-Encoding: chunked\r\n\r\n"));
    const QByteArray piece = "1000\r\n" + QByteArray(0x1000, 'x') + "\r\n";
    qint64 sent = 0;
    while (socket->state() == QAbstractSocket::ConnectedState && sent < (64 << 20)) {
        sent += socket->write(piece);
        if (!socket->waitForBytesWritten(kWait_ms)) break;
    }
    EXPECT_LT(sent, 4 << 20);
}

TEST_F(Hostile, ForeignEncodingsAreRefused)
{
    EXPECT_THAT(exchange(postHead("/upload", "Content-Encoding: gzip\r\nContent-Length: 5\r\n\r\nhello")),
                StartsWith("HTTP/1.1 415"));
    EXPECT_THAT(
        exchange(postHead("/upload",
                          "Content-Type: multipart/form-data; boundary=x\r\nContent-Length: 5\r\n\r\nhello")),
        StartsWith("HTTP/1.1 415"));
    for (const char* method : {"PUT", "DELETE", "PATCH", "OPTIONS", "BREW"})
        EXPECT_THAT(exchange(QByteArray(method) + " /upload HTTP/1.1\r\nContent-Length: 99999\r\n\r\n"),
                    StartsWith("HTTP/1.1 40"))
            << method;
}

TEST_F(Hostile, HeadsWithoutMeasureAreCutOff)
{
    EXPECT_THAT(exchange("GET /" + QByteArray(20'000, 'a') + " HTTP/1.1\r\n\r\n"), StartsWith("HTTP/1.1 4"));
    const auto socket = connected();
    socket->write("GET / HTTP/1.1\r\n");
    qint64 sent = 0;
    while (socket->state() == QAbstractSocket::ConnectedState && sent < (16 << 20)) {
        sent += socket->write("X-Header: " + QByteArray(1000, 'y') + "\r\n");
        if (!socket->waitForBytesWritten(kWait_ms)) break;
    }
    EXPECT_LT(sent, 8 << 20);
    EXPECT_THAT(exchange("GET /web/main.js HTTP/1.1\r\nConnection: close\r\nRange: bytes=" +
                         QByteArray("0-1,").repeated(1900) + "2-3\r\n\r\n"),
                StartsWith("HTTP/1.1 "));
}

TEST_F(Hostile, AnUploadThatBreaksOffIsNotListed)
{
    const std::string b = idNumber(1);
    const pnotest::Bytes whole = smallPanorama(b, 1 << 20);
    QByteArray head = postHead("/upload");
    head.replace(a.c_str(), b.c_str());
    const auto socket = connected();
    socket->write(head + "Content-Length: " + QByteArray::number(qulonglong(whole.size())) + "\r\n\r\n");
    socket->write(reinterpret_cast<const char*>(whole.data()), static_cast<qint64>(whole.size()) - 1);
    socket->flush();
    socket->disconnectFromHost();
    if (socket->state() != QAbstractSocket::UnconnectedState) socket->waitForDisconnected(kWait_ms);
    EXPECT_THAT(client.listed(), ElementsAre(a));
}

TEST_F(Hostile, ThousandsOfSilentConnectionsKeepNobodyOut)
{
    std::vector<std::unique_ptr<QTcpSocket>> crowd;
    for (int i = 0; i < 800; ++i)
        crowd.push_back(connected());
    Client visitor(service.port());
    visitor.token = client.token;
    EXPECT_THAT(visitor.listed(), ElementsAre(a));
    crowd.clear();
    for (int i = 0; i < 2000; ++i) {
        const auto socket = connected();
        socket->write("GET / HT");
        socket->abort();
    }
}

TEST_F(Hostile, RandomRequestsAreAnsweredOrDropped)
{
    std::mt19937 random(20260711);
    const auto below = [&](std::size_t n) { return static_cast<int>(random() % n); };
    const std::string fragment = locationText(1, 2, 3);
    const QByteArray seeds[] = {
        postHead("/upload", "Content-Length: 20\r\n\r\n") + "12345678901234567890",
        postHead("/set_albumpano_location", "Content-Length: ") + QByteArray::number(int(fragment.size())) +
            "\r\n\r\n" + fragment.c_str(),
        postHead("/upload_linkphoto", "Transfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n0\r\n\r\n"),
        QByteArray("GET /album/") + album.c_str() + "/tile/" + a.c_str() +
            "/3/1/0 HTTP/1.1\r\nHost: x\r\n\r\n",
        QByteArray("GET /login?email=a%40b.com&password=x HTTP/1.1\r\n\r\n")
            .replace("/login", "/get_pano_list"),
    };
    for (int round = 0; round < 400; ++round) {
        QByteArray bytes = seeds[below(5)];
        for (int change = below(6); change >= 0; --change) {
            const int at = below(static_cast<std::size_t>(bytes.size()));
            switch (below(4)) {
            case 0:
                bytes[at] = static_cast<char>(below(256));
                break;
            case 1:
                bytes.insert(at, QByteArray(below(300), static_cast<char>(below(256))));
                break;
            case 2:
                bytes.remove(at, below(40));
                break;
            default:
                bytes.insert(at, "../%2e%00\r\n");
            }
            if (bytes.isEmpty()) bytes = "\r\n";
        }
        const auto socket = connected();
        socket->write(bytes);
        socket->waitForBytesWritten(1000);
        if (round % 8 == 0) socket->waitForReadyRead(200);
        socket->abort();
    }
    // A change may have made a sound request that takes the album apart, never one that takes a file away.
    EXPECT_EQ(client.get("/album/" + album + "/tour").status, 200);
}

TEST_F(Hostile, TilesOutsideTheGridAreNotThere)
{
    const std::string tile = "/album/" + album + "/tile/" + a + "/";
    for (const char* place :
         {"0/1/0", "11/0/0", "-1/0/0", "0/0/-1", "99999/0/0", "x/0/0", "0/0", "0/0/0/0", "0x0/0/0", "+0/0/0"})
        EXPECT_EQ(client.get(tile + place).status, 404) << place;
    EXPECT_EQ(client.get("/album/AAAAAAAAAAAAAA/tile/" + a + "/0/0/0").status, 404);
    EXPECT_EQ(client.get("/album/" + album + "/tile/" + idNumber(1) + "/0/0/0").status, 404);
}

TEST_F(Hostile, TheNameOfAnAlbumIsTextOnItsPage)
{
    const std::string name = "\"><script>alert(1)</script>{{album}}";
    const Answer page = client.get("/album/" + client.createAlbum({a}, name));
    EXPECT_THAT(page.body,
                HasSubstr("<title>&quot;&gt;&lt;script&gt;alert(1)&lt;/script&gt;{{album}}</title>"));
    EXPECT_EQ(page.body.find("<script>"), std::string::npos);
    const std::string policy = page.headers.find("Content-Security-Policy")->second;
    EXPECT_THAT(policy, HasSubstr("default-src 'none'; script-src 'self'; style-src 'self'"));
    EXPECT_EQ(policy.find("unsafe"), std::string::npos);
}

} // namespace
