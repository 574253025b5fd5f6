// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/AlbumService.h"
#include "tests/support/PnoParts.h"

#include <httplib.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// What an uploading program sends, put together here by hand.
namespace albumtest {

using Items = std::vector<std::pair<std::string, std::string>>;

struct Answer
{
    int status = 0; ///< 0: no answer
    std::string body;
    httplib::Headers headers;
};

/// Every byte but letters and digits as %XX.
std::string percentEncoded(std::string_view text);

/// PATH?NAME=VALUE&...
std::string address(const std::string& path, const Items& items);

/// Parts of a reply between its CR LF.
std::vector<std::string> lines(const std::string& reply);

class Client
{
public:
    explicit Client(int port);

    Answer get(const std::string& path, const Items& items = {});
    Answer post(const std::string& path, const Items& items, const std::string& body);

    /// Logs in and keeps the token.
    bool login(const std::string& email = kAccount, const std::string& password = kPassword);

    Answer upload(const std::string& id, const pnotest::Bytes& file);

    /// Panoramas that the service lists.
    std::vector<std::string> listed();

    /// Empty when it is refused.
    std::string createAlbum(const std::vector<std::string>& ids, const std::string& name = "Tour",
                            const std::string& entry = std::string());

    std::string token;

private:
    httplib::Client m_client;
};

/// Id number `number` in a series: "Abcdefghijklaa", "...ab" and so on.
std::string idNumber(int number);

/// A sound panorama of an id, with `padding` bytes in a segment that readers skip.
pnotest::Bytes smallPanorama(const std::string& id, std::size_t padding = 0);

/// Location fragment.
std::string locationText(double x, double y, double direction, int planX = 0, int planY = 0,
                         const std::string& plan = std::string());

struct LinkValues
{
    double rot_0 = 0, rot_1 = 0, icon_y0 = 2.0, icon_y1 = 2.0;
};
std::string linkText(const std::string& pano_0, const std::string& pano_1, const LinkValues& values);

std::string photoTag(double x, double y, const std::string& caption, const std::string& name);
std::string infoTag(double x, double y, const std::string& caption, const std::string& escapedContent);

} // namespace albumtest
