// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/Replies.h"

namespace albumd {

void answerOk(httplib::Response& response, const std::string& lines)
{
    response.status = 200;
    response.set_content(lines.empty() ? "OK" : "OK\r\n" + lines, kPlainText);
}

void answerError(httplib::Response& response, int number, const std::string& reason)
{
    response.status = 200;
    response.set_content("ER " + std::to_string(number) + (reason.empty() ? reason : "\r\n" + reason),
                         kPlainText);
}

void refuse(httplib::Response& response, int status, const std::string& reason)
{
    response.status = status;
    response.set_content("ER " + std::to_string(status) + "\r\n" + reason, kPlainText);
}

} // namespace albumd
