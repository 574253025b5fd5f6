// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "publish/UploadTransport.h"

#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QUrlQuery>

#include <memory>

namespace publish {

namespace {

// The query class takes "%41" for an encoded letter, and leaves "+" as it is, which many services read as a
// blank; a password may hold either.
QString unambiguous(QString value)
{
    value.replace(QLatin1Char('%'), QLatin1String("%25"));
    value.replace(QLatin1Char('+'), QLatin1String("%2B"));
    return value;
}

QUrl urlOf(const QString& baseUrl, const UploadRequest& request)
{
    QUrlQuery query;
    for (const auto& item : request.query)
        query.addQueryItem(item.first, unambiguous(item.second));
    QUrl url(baseUrl + request.path);
    url.setQuery(query);
    return url;
}

// The toolkit puts the whole URL into the reasons that it gives, and a service may repeat what it was sent.
QString withoutSecrets(QString reason, const QUrl& url)
{
    QUrl bare = url;
    bare.setQuery(QString());
    for (const QUrl::ComponentFormattingOption format :
         {QUrl::PrettyDecoded, QUrl::FullyEncoded, QUrl::EncodeSpaces})
        reason.replace(url.toString(format), bare.toString());
    for (const char* name : {"password", "token"})
        for (const QUrl::ComponentFormattingOption format :
             {QUrl::FullyDecoded, QUrl::FullyEncoded, QUrl::PrettyDecoded}) {
            const QString secret = QUrlQuery(url).queryItemValue(QLatin1String(name), format);
            // What is shorter is no secret, and taking it out would garble the reason.
            if (secret.size() >= 4) reason.replace(secret, QStringLiteral("..."));
        }
    return reason;
}

} // namespace

QNetworkReply* sendRequest(QNetworkAccessManager& network, const QString& baseUrl,
                           const UploadRequest& request, int silence_ms)
{
    QNetworkRequest sent(urlOf(baseUrl, request));
    sent.setTransferTimeout(silence_ms);
    if (request.method == UploadRequest::Method::Get) return network.get(sent);
    if (request.body_file.isEmpty()) return network.post(sent, request.body);

    auto file = std::make_unique<QFile>(request.body_file);
    if (!file->open(QIODevice::ReadOnly)) return nullptr;
    QNetworkReply* reply = network.post(sent, file.get());
    file.release()->setParent(reply);
    return reply;
}

UploadReply readReply(QNetworkReply& reply)
{
    UploadReply read;
    read.status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    read.path = reply.url().path(QUrl::FullyDecoded);
    if (reply.isOpen()) read.body = reply.readAll();
    read.error = withoutSecrets(reply.errorString(), reply.url());
    return read;
}

} // namespace publish
