// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Carries the upload's plain requests and replies over HTTP.

#pragma once

#include "publish/UploadChain.h"

class QNetworkAccessManager;
class QNetworkReply;

namespace publish {

/// How long neither side may send a byte before the request counts as failed.
constexpr int kSilence_ms = 300000;

/// Sends a request. Its file is read while it is sent, never held in memory.
/// @param baseUrl  ends in "/"
/// @return owned by the manager until its `finished` signal; nullptr when the file cannot be opened
QNetworkReply* sendRequest(QNetworkAccessManager& network, const QString& baseUrl,
                           const UploadRequest& request, int silence_ms = kSilence_ms);

/// What a finished reply says. Reads its body.
UploadReply readReply(QNetworkReply& reply);

} // namespace publish
