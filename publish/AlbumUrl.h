// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Where the album service is.

#pragma once

#include <QString>

namespace publish {

/// Base URL of the album service, ending in "/": the environment variable TOURWRIGHT_ALBUM_URL, or where that
/// is missing or empty, the build's default.
QString albumUrl();

/// `url` without blanks around it and with "/" at its end.
QString asBaseUrl(const QString& url);

} // namespace publish
