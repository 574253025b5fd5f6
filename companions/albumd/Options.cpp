// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/Options.h"

#include <charconv>

namespace albumd {
namespace {

bool toCount(const std::string& text, std::int64_t least, std::int64_t most, std::int64_t* value)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), *value);
    return error == std::errc() && end == text.data() + text.size() && *value >= least && *value <= most;
}

struct CommandName
{
    const char* name;
    Options::Command command;
    bool hasArgument;
};

constexpr CommandName kCommands[] = {
    {"add-user", Options::Command::AddUser, true},
    {"set-password", Options::Command::SetPassword, true},
    {"list-albums", Options::Command::ListAlbums, false},
    {"remove-album", Options::Command::RemoveAlbum, true},
};

std::string setOption(const std::string& name, const std::string& value, Options* options)
{
    std::int64_t port = 0;
    if (name == "--data")
        options->folder = value;
    else if (name == "--listen")
        options->host = value;
    else if (name == "--port" && toCount(value, 0, 65535, &port))
        options->port = static_cast<int>(port);
    else if (name == "--quota" && toCount(value, 1, std::int64_t(1) << 40, &options->quota_mib))
        return std::string();
    else if (name == "--token-minutes" && toCount(value, 1, 60 * 24 * 365, &options->token_minutes))
        return std::string();
    else if (name == "--port" || name == "--quota" || name == "--token-minutes")
        return name + " takes a number, not \"" + value + "\"";
    else
        return "there is no option " + name;
    return std::string();
}

} // namespace

std::string parseOptions(const std::vector<std::string>& arguments, Options* options)
{
    Options read;
    std::vector<std::string> words;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& word = arguments[i];
        if (word == "--help" || word == "-h") {
            options->command = Options::Command::Help;
            return std::string();
        }
        if (word.compare(0, 2, "--") != 0) {
            words.push_back(word);
            continue;
        }
        if (i + 1 == arguments.size()) return word + " takes a value";
        const std::string wrong = setOption(word, arguments[++i], &read);
        if (!wrong.empty()) return wrong;
    }
    if (read.folder.empty()) return "--data DIR is missing";
    if (!words.empty()) {
        const CommandName* found = nullptr;
        for (const CommandName& each : kCommands)
            if (words[0] == each.name) found = &each;
        if (!found) return "there is no command \"" + words[0] + "\"";
        if (words.size() != (found->hasArgument ? 2u : 1u))
            return std::string(found->name) +
                   (found->hasArgument ? " takes one argument" : " takes no argument");
        read.command = found->command;
        read.argument = words.back();
    }
    *options = read;
    return std::string();
}

std::string helpText()
{
    return R"(albumd: an album service for panorama tours, to host oneself

albumd --data DIR [--port N] [--listen ADDRESS]   serve; ends on SIGTERM and SIGINT
albumd --data DIR add-user EMAIL [--quota MIB]    a new account; the password comes from standard input
albumd --data DIR set-password EMAIL              another password, from standard input; forgives wrong tries
albumd --data DIR list-albums                     every album: its address below the service's, account and name
albumd --data DIR remove-album ID                 take an album off the service; panoramas stay

--data DIR          where everything is kept; made if it is missing
--port N            8086; 0 takes a free one
--listen ADDRESS    127.0.0.1; other machines reach only what listens on another address
--quota MIB         room of the account, 20480
--token-minutes N   how long a login is good for, 720

Exit status: 0 success, 1 refused or failed, 2 wrong usage.
)";
}

} // namespace albumd
