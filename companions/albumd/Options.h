// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The command line.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace albumd {

struct Options
{
    enum class Command
    {
        Serve,
        Help,
        AddUser,
        SetPassword,
        ListAlbums,
        RemoveAlbum,
    };
    Command command = Command::Serve;
    std::string folder;
    std::string argument; ///< of the command: an e-mail address or an album's id
    std::string host = "127.0.0.1";
    int port = 8086; ///< 0 takes a free one
    std::int64_t quota_mib = 20 * 1024;
    std::int64_t token_minutes = 12 * 60;
};

/// @return empty, or what is wrong
std::string parseOptions(const std::vector<std::string>& arguments, Options* options);

std::string helpText();

} // namespace albumd
