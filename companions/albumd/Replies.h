// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Replies as uploading programs read them: "OK" or "ER", a number, lines divided by CR LF.

#pragma once

#include <httplib.h>

#include <string>

namespace albumd {

constexpr const char* kPlainText = "text/plain; charset=utf-8";

void answerOk(httplib::Response& response, const std::string& lines = std::string());

/// Status 200: the client reads the number and goes on from there.
void answerError(httplib::Response& response, int number, const std::string& reason = std::string());

/// Status 4xx or 5xx: the client ends, and shows the status.
void refuse(httplib::Response& response, int status, const std::string& reason);

} // namespace albumd
