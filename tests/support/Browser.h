// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QImage>
#include <QJsonObject>
#include <QJsonValue>
#include <QPointF>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <memory>

class QNetworkAccessManager;

namespace albumtest {

/// A browser without a window, driven as a visitor drives it: clicks, keys, pictures of the page. A small
/// client of the W3C WebDriver protocol over chromedriver. Needs an application object; calls wait.
class Browser
{
public:
    /// True where chromium and chromedriver are installed.
    static bool installed();

    /// @param language  that the browser asks pages for, such as "en" or "zh-CN"
    explicit Browser(const QString& language = QStringLiteral("en"), int width = 1000, int height = 700);
    ~Browser();
    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;

    bool ready() const { return !m_session.isEmpty(); }

    /// What went wrong last.
    QString error() const { return m_error; }

    bool open(const QString& url);

    /// Value of a JavaScript function body ("return ...").
    QJsonValue run(const QString& script);

    /// Runs the script until its value is true.
    bool waitFor(const QString& script, int timeout_ms = 30'000);

    void click(QPointF place); ///< CSS pixels of the page
    void drag(QPointF from, QPointF to);
    void tap(QPointF place);           ///< with a finger
    void press(const QString& key);    ///< one character, or a WebDriver key such as kEnter
    void wheel(QPointF place, int by); ///< positive: towards the visitor

    /// The page as it is shown.
    QImage picture();

    /// Lines of the console, complaints about the content security policy among them, since the last call.
    QStringList console();

    static const QString kEnter, kEscape, kLeft, kRight, kUp, kDown, kTab;

private:
    QJsonValue call(const QByteArray& method, const QString& path, const QJsonObject& body = QJsonObject());
    void pointer(const QString& kind, const QJsonArray& actions);

    QTemporaryDir m_profile;
    QProcess m_driver;
    std::unique_ptr<QNetworkAccessManager> m_network;
    QString m_address;
    QString m_session;
    QString m_error;
};

} // namespace albumtest
