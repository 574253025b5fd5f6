// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// scripted-service SCRIPT.json FOLDER: an HTTP server that answers as a test tells it, well or badly, and
// keeps each request as it came, byte by byte, in FOLDER. Prints its port; ends when standard input does.
//
// The script is an object: last part of the path -> list of answers, taken in turn, the last one for ever.
// An answer: "do" (what is done, see `Deed`), "status", "body", "after_ms".

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QSocketNotifier>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <cstdio>
#include <map>

namespace {

constexpr int kKeptBytes = 1 << 20; ///< of a longer request only the size is kept

enum class Deed
{
    Reply,
    CloseAtHead,  ///< as soon as the request's head is there
    CloseAtEnd,   ///< once the whole request is there
    CloseInHead,  ///< in the middle of the reply's head
    CloseInReply, ///< in the middle of the reply's body
    Garbage,      ///< answers with bytes that are no HTTP
    Silence
};

Deed deedOf(const QString& word)
{
    static const std::map<QString, Deed> kDeeds = {
        {QStringLiteral("close at head"), Deed::CloseAtHead},
        {QStringLiteral("close at end"), Deed::CloseAtEnd},
        {QStringLiteral("close in head"), Deed::CloseInHead},
        {QStringLiteral("close in reply"), Deed::CloseInReply},
        {QStringLiteral("garbage"), Deed::Garbage},
        {QStringLiteral("silence"), Deed::Silence},
    };
    const auto found = kDeeds.find(word);
    return found == kDeeds.end() ? Deed::Reply : found->second;
}

struct Answer
{
    Deed deed = Deed::Reply;
    int status = 200;
    QByteArray body = "OK";
    int after_ms = 0;
};

class Script
{
public:
    explicit Script(const QJsonObject& object)
    {
        for (auto it = object.begin(); it != object.end(); ++it)
            for (const QJsonValue& value : it->toArray()) {
                const QJsonObject answer = value.toObject();
                m_answers[it.key().toUtf8()].push_back(
                    {deedOf(answer[QStringLiteral("do")].toString()),
                     answer[QStringLiteral("status")].toInt(200),
                     answer[QStringLiteral("body")].toString(QStringLiteral("OK")).toUtf8(),
                     answer[QStringLiteral("after_ms")].toInt()});
            }
    }

    Answer next(const QByteArray& word)
    {
        const auto found = m_answers.find(word);
        if (found == m_answers.end() || found->second.empty()) return {};
        const std::size_t turn = m_turns[word]++;
        return found->second[qMin(turn, found->second.size() - 1)];
    }

private:
    std::map<QByteArray, std::vector<Answer>> m_answers;
    std::map<QByteArray, std::size_t> m_turns;
};

/// One connection: request after request, as long as the client keeps it.
class Connection : public QObject
{
public:
    Connection(QTcpSocket* socket, Script& script, const QString& folder, int& count)
        : QObject(socket)
        , m_socket(socket)
        , m_script(script)
        , m_folder(folder)
        , m_count(count)
    {
        connect(socket, &QTcpSocket::readyRead, this, [this] { read(); });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }

private:
    void read()
    {
        while (m_socket->bytesAvailable() > 0 && !m_deaf) {
            const QByteArray bytes = m_socket->read(1 << 16);
            m_received += bytes.size();
            if (m_request.size() < kKeptBytes) m_request += bytes;
            if (m_bodyStart < 0) takeHead();
            if (m_bodyStart >= 0 && m_received >= m_bodyStart + m_bodyBytes) finishRequest();
        }
    }

    void takeHead()
    {
        const int end = m_request.indexOf("\r\n\r\n");
        if (end < 0) return;
        m_bodyStart = end + 4;
        m_bodyBytes = 0;
        const QByteArray head = m_request.left(end).toLower();
        const int length = head.indexOf("\r\ncontent-length:");
        if (length >= 0) m_bodyBytes = head.mid(length + 17).split('\r').first().trimmed().toLongLong();
        const QByteArray path = m_request.split(' ').value(1).split('?').first();
        m_answer = m_script.next(path.mid(path.lastIndexOf('/') + 1));
        if (m_answer.deed != Deed::CloseAtHead) return;
        keep();
        m_deaf = true;
        m_socket->abort();
    }

    void finishRequest()
    {
        keep();
        const Answer answer = m_answer;
        m_request.clear();
        m_received = 0;
        m_bodyStart = -1;
        QTimer::singleShot(answer.after_ms, this, [this, answer] { give(answer); });
    }

    /// Whole or not at all: the test looks at the folder meanwhile.
    void keep()
    {
        const QString name = m_folder + QStringLiteral("/%1").arg(m_count++, 3, 10, QLatin1Char('0'));
        QFile file(name + QStringLiteral(".part"));
        if (!file.open(QIODevice::WriteOnly)) return;
        if (m_received < kKeptBytes)
            file.write(m_request);
        else
            file.write(m_request.left(m_bodyStart) + QByteArray::number(m_received - m_bodyStart) + " bytes");
        file.close();
        file.rename(name);
    }

    void give(const Answer& answer)
    {
        const QByteArray head = "HTTP/1.1 " + QByteArray::number(answer.status) +
                                " As Told\r\nContent-Type: text/plain\r\nContent-Length: " +
                                QByteArray::number(answer.body.size()) + "\r\n\r\n";
        switch (answer.deed) {
        case Deed::Reply:
            m_socket->write(head + answer.body);
            return;
        case Deed::CloseInHead:
            m_socket->write(head.left(12));
            return m_socket->disconnectFromHost();
        case Deed::CloseInReply:
            m_socket->write(head + answer.body.left(answer.body.size() / 2));
            return m_socket->disconnectFromHost();
        case Deed::Garbage:
            m_socket->write(QByteArray("\x01\x02\x03 this is no reply \xFF\xFE\r\n\r\n"));
            return m_socket->disconnectFromHost();
        case Deed::CloseAtHead:
        case Deed::CloseAtEnd:
            return m_socket->abort();
        case Deed::Silence:
            return;
        }
    }

    QTcpSocket* m_socket;
    Script& m_script;
    const QString m_folder;
    int& m_count;
    QByteArray m_request;
    qint64 m_received = 0;
    int m_bodyStart = -1; ///< -1: the head is not whole yet
    qint64 m_bodyBytes = 0;
    Answer m_answer;
    bool m_deaf = false;
};

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QFile file(arguments.value(1));
    if (arguments.size() != 3 || !file.open(QIODevice::ReadOnly)) return 2;
    Script script(QJsonDocument::fromJson(file.readAll()).object());

    QTcpServer server;
    int count = 0;
    QObject::connect(&server, &QTcpServer::newConnection, [&] {
        while (QTcpSocket* socket = server.nextPendingConnection())
            new Connection(socket, script, arguments[2], count);
    });
    if (!server.listen(QHostAddress::LocalHost)) return 1;
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        if (std::fgetc(stdin) == EOF) QCoreApplication::quit();
    });
    std::printf("%d\n", server.serverPort());
    std::fflush(stdout);
    return QCoreApplication::exec();
}
