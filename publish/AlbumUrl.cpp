// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "publish/AlbumUrl.h"

namespace publish {

QString albumUrl()
{
    const QString configured = asBaseUrl(qEnvironmentVariable("TOURWRIGHT_ALBUM_URL"));
    return configured.isEmpty() ? asBaseUrl(QStringLiteral(TOURWRIGHT_ALBUM_URL)) : configured;
}

QString asBaseUrl(const QString& url)
{
    const QString trimmed = url.trimmed();
    return trimmed.isEmpty() || trimmed.endsWith(QLatin1Char('/')) ? trimmed : trimmed + QLatin1Char('/');
}

} // namespace publish
