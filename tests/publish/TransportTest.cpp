// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Requests on the wire and back: encoding, streaming, failures without secrets.

#include "publish/UploadRequests.h"
#include "publish/UploadTransport.h"
#include "tests/publish/support/ScriptedService.h"

#include <QEventLoop>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTcpServer>

#include <gtest/gtest.h>

namespace {

using namespace publish;

class Transport : public testing::Test
{
protected:
    UploadReply exchange(const UploadRequest& request, int silence_ms = kSilence_ms)
    {
        return exchange(service.url(), request, silence_ms);
    }

    UploadReply exchange(const QString& baseUrl, const UploadRequest& request, int silence_ms = kSilence_ms)
    {
        QEventLoop loop;
        QObject::connect(&network, &QNetworkAccessManager::finished, &loop, &QEventLoop::quit);
        QNetworkReply* reply = sendRequest(network, baseUrl, request, silence_ms);
        if (!reply) return {};
        loop.exec();
        reply->deleteLater();
        return readReply(*reply);
    }

    static UploadRequest login(const char* password)
    {
        return loginRequest(QStringLiteral("a@b.com"), QString::fromUtf8(password));
    }

    std::string lastTarget() const { return service.requests().back().target().toStdString(); }

    QString makeFile(qint64 bytes)
    {
        const QString path = folder.filePath(QStringLiteral("été 漫游 file"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || !file.resize(bytes)) qFatal("cannot write a file");
        return path;
    }

    UploadRequest fileRequest(const QString& path)
    {
        RoamProject project;
        return modelRequest(project, path);
    }

    QTemporaryDir folder;
    ScriptedService service;
    QNetworkAccessManager network;
};

TEST_F(Transport, QueryItemsArriveAsTheyWereTypedHoweverAServiceDecodesThem)
{
    service.start();
    exchange(login("a1 &=#?/%41+%密\"<>"));
    EXPECT_EQ(lastTarget(),
              std::string("/login?email=a@b.com&password=a1%20%26%3D%23?/%2541%2B%25%E5%AF%86%22%3C%3E"));
}

TEST_F(Transport, APathBeforeTheWordsIsKept)
{
    service.start();
    const UploadReply reply = exchange(service.url() + QStringLiteral("my%20albums/"), login("abcd123"));
    EXPECT_EQ(lastTarget(), std::string("/my%20albums/login?email=a@b.com&password=abcd123"));
    EXPECT_EQ(reply.path, QStringLiteral("/my albums/login"));
}

TEST_F(Transport, StatusBodyAndPathComeBack)
{
    service.reply("login", QStringLiteral("OK\r\n一"));
    service.start();
    const UploadReply reply = exchange(login("abcd123"));
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.path, QStringLiteral("/login"));
    EXPECT_EQ(reply.body, QByteArray("OK\r\n一"));
}

TEST_F(Transport, AnEmptyBodyIsSentAsOne)
{
    service.start();
    UploadRequest request;
    request.path = QStringLiteral("set_albumpano_linktags");
    EXPECT_EQ(exchange(request).status, 200);
    const SeenRequest seen = service.requests().back();
    EXPECT_EQ(seen.method(), QByteArray("POST"));
    EXPECT_TRUE(seen.head.toLower().contains("content-length: 0"));
    EXPECT_EQ(seen.body, QByteArray());
}

TEST_F(Transport, AnEmptyFileIsSentAsOne)
{
    service.start();
    EXPECT_EQ(exchange(fileRequest(makeFile(0))).status, 200);
    EXPECT_EQ(service.requests().back().body, QByteArray());
}

TEST_F(Transport, AFileIsSentByteByByte)
{
    service.start();
    const QString path = folder.filePath(QStringLiteral("bytes"));
    QByteArray bytes;
    for (int i = 0; i < 100000; ++i)
        bytes += static_cast<char>(i * 7 + i / 256);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    EXPECT_EQ(exchange(fileRequest(path)).status, 200);
    EXPECT_EQ(service.requests().back().body, bytes);
}

TEST_F(Transport, AFileThatCannotBeOpenedSendsNothing)
{
    service.start();
    EXPECT_EQ(sendRequest(network, service.url(), fileRequest(folder.filePath(QStringLiteral("none")))),
              nullptr);
    EXPECT_TRUE(service.requests().empty());
}

TEST_F(Transport, NeitherPasswordNorTokenIsInAReason)
{
    for (const int status : {404, 500, 503}) {
        service.reply("login", QString(), status);
        service.reply("get_pano_list", QString(), status);
    }
    service.start();
    RoamProject project;
    project.cloud.token = QStringLiteral("to ken%4+密");
    for (int i = 0; i < 3; ++i) {
        const QString reason = exchange(login("se cret1%41&+密")).error;
        EXPECT_FALSE(reason.isEmpty());
        EXPECT_FALSE(reason.contains(QLatin1String("cret1"))) << reason.toStdString();
        const QString other = exchange(listRequest(project)).error;
        EXPECT_FALSE(other.contains(QLatin1String("ken"))) << other.toStdString();
        EXPECT_TRUE(other.contains(QLatin1String("get_pano_list"))) << other.toStdString();
    }
}

TEST_F(Transport, ARefusedConnectionHasNoStatusAndAReason)
{
    QTcpServer free;
    ASSERT_TRUE(free.listen(QHostAddress::LocalHost));
    const QString url = QStringLiteral("http://127.0.0.1:%1/").arg(free.serverPort());
    free.close();
    const UploadReply reply = exchange(url, login("abcd123"));
    EXPECT_EQ(reply.status, 0);
    EXPECT_EQ(reply.error, QStringLiteral("Connection refused"));
}

TEST_F(Transport, AnAddressThatIsNoneFailsToo)
{
    for (const char* url : {"nowhere/", "ftp2://x/", "http:///"}) {
        const UploadReply reply = exchange(QLatin1String(url), login("abcd123"));
        EXPECT_EQ(reply.status, 0) << url;
        EXPECT_FALSE(reply.error.isEmpty()) << url;
        EXPECT_FALSE(reply.error.contains(QLatin1String("abcd123"))) << reply.error.toStdString();
    }
}

TEST_F(Transport, ASilentServiceFailsAfterAWhile)
{
    service.misbehave("login", "silence");
    service.start();
    const UploadReply reply = exchange(login("abcd123"), 300);
    EXPECT_EQ(reply.status, 0);
    EXPECT_FALSE(reply.error.isEmpty());
}

qint64 peakMemory_kib()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly)) return -1;
    for (const QByteArray& line : file.readAll().split('\n'))
        if (line.startsWith("VmHWM:")) return line.mid(6).trimmed().split(' ').first().toLongLong();
    return -1;
}

TEST_F(Transport, APanoramaOf300MegabytesRaisesThePeakByLittle)
{
    service.start();
    exchange(login("abcd123")); // what the network itself needs
    constexpr qint64 kBytes = 300 << 20;
    const QString path = makeFile(kBytes);
    const qint64 before = peakMemory_kib();
    if (before < 0) GTEST_SKIP() << "the system does not tell a process's peak";
    EXPECT_EQ(exchange(fileRequest(path)).status, 200);
    EXPECT_LT(peakMemory_kib() - before, 20 << 10);
    EXPECT_EQ(service.requests().back().body, QByteArray::number(kBytes) + " bytes");
}

} // namespace
