// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/support/Browser.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTimer>

namespace albumtest {
namespace {

constexpr int kReply_ms = 60'000;

QString found(const char* name)
{
    return QStandardPaths::findExecutable(QString::fromLatin1(name));
}

QJsonObject move(QPointF place)
{
    return {{QStringLiteral("type"), QStringLiteral("pointerMove")},
            {QStringLiteral("duration"), 0},
            {QStringLiteral("x"), qRound(place.x())},
            {QStringLiteral("y"), qRound(place.y())}};
}

QJsonObject button(const char* type)
{
    return {{QStringLiteral("type"), QString::fromLatin1(type)}, {QStringLiteral("button"), 0}};
}

QJsonObject capabilities(const QString& language, const QString& profile, int width, int height)
{
    const QJsonObject options{
        {QStringLiteral("binary"), found("chromium")},
        {QStringLiteral("args"),
         QJsonArray{QStringLiteral("--headless=new"), QStringLiteral("--no-sandbox"),
                    QStringLiteral("--use-angle=swiftshader"), QStringLiteral("--enable-unsafe-swiftshader"),
                    QStringLiteral("--disable-dev-shm-usage"), QStringLiteral("--no-first-run"),
                    QStringLiteral("--disable-extensions"), QStringLiteral("--disable-background-networking"),
                    QStringLiteral("--force-device-scale-factor=1"), QStringLiteral("--hide-scrollbars"),
                    QStringLiteral("--lang=") + language, QStringLiteral("--user-data-dir=") + profile,
                    QStringLiteral("--window-size=%1,%2").arg(width).arg(height)}},
        {QStringLiteral("prefs"), QJsonObject{{QStringLiteral("intl.accept_languages"), language}}}};
    return {{QStringLiteral("capabilities"),
             QJsonObject{{QStringLiteral("alwaysMatch"),
                          QJsonObject{{QStringLiteral("browserName"), QStringLiteral("chrome")},
                                      {QStringLiteral("goog:loggingPrefs"),
                                       QJsonObject{{QStringLiteral("browser"), QStringLiteral("ALL")}}},
                                      {QStringLiteral("goog:chromeOptions"), options}}}}}};
}

} // namespace

const QString Browser::kEnter = QString(QChar(0xE007));
const QString Browser::kEscape = QString(QChar(0xE00C));
const QString Browser::kLeft = QString(QChar(0xE012));
const QString Browser::kUp = QString(QChar(0xE013));
const QString Browser::kRight = QString(QChar(0xE014));
const QString Browser::kDown = QString(QChar(0xE015));
const QString Browser::kTab = QString(QChar(0xE004));

bool Browser::installed()
{
    return !found("chromium").isEmpty() && !found("chromedriver").isEmpty();
}

Browser::Browser(const QString& language, int width, int height)
    : m_network(std::make_unique<QNetworkAccessManager>())
{
    m_driver.setProcessChannelMode(QProcess::MergedChannels);
    m_driver.start(found("chromedriver"), {QStringLiteral("--port=0")});
    static const QRegularExpression port(QStringLiteral("started successfully on port (\\d+)"));
    QByteArray said;
    while (m_address.isEmpty()) {
        if (!m_driver.waitForReadyRead(kReply_ms)) {
            m_error = QString::fromUtf8("chromedriver does not start: " + said);
            return;
        }
        said += m_driver.readAll();
        const QRegularExpressionMatch match = port.match(QString::fromUtf8(said));
        if (match.hasMatch()) m_address = QStringLiteral("http://127.0.0.1:") + match.captured(1);
    }
    const QJsonObject answer =
        call("POST", QStringLiteral("/session"), capabilities(language, m_profile.path(), width, height))
            .toObject();
    m_session = answer.value(QLatin1String("sessionId")).toString();
}

Browser::~Browser()
{
    if (ready()) call("DELETE", QStringLiteral("/session/") + m_session);
    m_driver.terminate();
    if (!m_driver.waitForFinished(10'000)) m_driver.kill();
    m_driver.waitForFinished(10'000);
}

QJsonValue Browser::call(const QByteArray& method, const QString& path, const QJsonObject& body)
{
    QNetworkRequest request(QUrl(m_address + path));
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    const QByteArray bytes =
        method == "POST" ? QJsonDocument(body).toJson(QJsonDocument::Compact) : QByteArray();
    const std::unique_ptr<QNetworkReply> reply(m_network->sendCustomRequest(request, method, bytes));
    QEventLoop loop;
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(kReply_ms, &loop, &QEventLoop::quit);
    if (!reply->isFinished()) loop.exec();
    const QJsonValue value = QJsonDocument::fromJson(reply->readAll()).object().value(QLatin1String("value"));
    if (!reply->isFinished() || reply->error() != QNetworkReply::NoError)
        m_error = path + QStringLiteral(": ") + reply->errorString() + u' ' +
                  value.toObject().value(QLatin1String("message")).toString();
    return value;
}

bool Browser::open(const QString& url)
{
    m_error.clear();
    call("POST", QStringLiteral("/session/%1/url").arg(m_session), {{QStringLiteral("url"), url}});
    return m_error.isEmpty();
}

QJsonValue Browser::run(const QString& script)
{
    return call("POST", QStringLiteral("/session/%1/execute/sync").arg(m_session),
                {{QStringLiteral("script"), script}, {QStringLiteral("args"), QJsonArray()}});
}

bool Browser::waitFor(const QString& script, int timeout_ms)
{
    // The page itself waits, frame by frame: it knows when something has changed.
    const QString waiting =
        QStringLiteral("const done = arguments[0]; const end = performance.now() + %1;"
                       "const holds = () => { %2 };"
                       "const look = () => { let it = false; try { it = holds(); } catch (e) {}"
                       "if (it === true) done(true); else if (performance.now() > end) done(false);"
                       "else setTimeout(look, 10); }; look();")
            .arg(timeout_ms)
            .arg(script);
    call("POST", QStringLiteral("/session/%1/timeouts").arg(m_session),
         {{QStringLiteral("script"), timeout_ms + 10'000}});
    return call("POST", QStringLiteral("/session/%1/execute/async").arg(m_session),
                {{QStringLiteral("script"), waiting}, {QStringLiteral("args"), QJsonArray()}})
        .toBool();
}

void Browser::pointer(const QString& kind, const QJsonArray& actions)
{
    const QJsonObject source{
        {QStringLiteral("type"), QStringLiteral("pointer")},
        {QStringLiteral("id"), kind},
        {QStringLiteral("parameters"), QJsonObject{{QStringLiteral("pointerType"), kind}}},
        {QStringLiteral("actions"), actions}};
    call("POST", QStringLiteral("/session/%1/actions").arg(m_session),
         {{QStringLiteral("actions"), QJsonArray{source}}});
}

void Browser::click(QPointF place)
{
    pointer(QStringLiteral("mouse"), {move(place), button("pointerDown"), button("pointerUp")});
}

void Browser::drag(QPointF from, QPointF to)
{
    pointer(QStringLiteral("mouse"),
            {move(from), button("pointerDown"), move((from + to) / 2), move(to), button("pointerUp")});
}

void Browser::tap(QPointF place)
{
    pointer(QStringLiteral("touch"), {move(place), button("pointerDown"), button("pointerUp")});
}

void Browser::press(const QString& key)
{
    const auto stroke = [&](const char* type) {
        return QJsonObject{{QStringLiteral("type"), QString::fromLatin1(type)},
                           {QStringLiteral("value"), key}};
    };
    const QJsonObject source{{QStringLiteral("type"), QStringLiteral("key")},
                             {QStringLiteral("id"), QStringLiteral("keyboard")},
                             {QStringLiteral("actions"), QJsonArray{stroke("keyDown"), stroke("keyUp")}}};
    call("POST", QStringLiteral("/session/%1/actions").arg(m_session),
         {{QStringLiteral("actions"), QJsonArray{source}}});
}

void Browser::wheel(QPointF place, int by)
{
    QJsonObject scroll = move(place);
    scroll.insert(QStringLiteral("type"), QStringLiteral("scroll"));
    scroll.insert(QStringLiteral("deltaX"), 0);
    scroll.insert(QStringLiteral("deltaY"), by);
    const QJsonObject source{{QStringLiteral("type"), QStringLiteral("wheel")},
                             {QStringLiteral("id"), QStringLiteral("wheel")},
                             {QStringLiteral("actions"), QJsonArray{scroll}}};
    call("POST", QStringLiteral("/session/%1/actions").arg(m_session),
         {{QStringLiteral("actions"), QJsonArray{source}}});
}

QImage Browser::picture()
{
    const QJsonValue png = call("GET", QStringLiteral("/session/%1/screenshot").arg(m_session));
    return QImage::fromData(QByteArray::fromBase64(png.toString().toLatin1()));
}

QStringList Browser::console()
{
    QStringList lines;
    const QJsonValue log = call("POST", QStringLiteral("/session/%1/se/log").arg(m_session),
                                {{QStringLiteral("type"), QStringLiteral("browser")}});
    for (const QJsonValue& line : log.toArray())
        lines << line.toObject().value(QLatin1String("message")).toString();
    return lines;
}

} // namespace albumtest
