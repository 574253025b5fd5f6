// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// albumd: receives tours and shows them as web pages.

#include "companions/albumd/Commands.h"

#include <cstdio>
#include <sodium.h>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace {

int run(const albumd::Options& options)
{
    switch (options.command) {
    case albumd::Options::Command::Serve:
        return albumd::serve(options);
    case albumd::Options::Command::AddUser:
        return albumd::addUser(options);
    case albumd::Options::Command::SetPassword:
        return albumd::setPassword(options);
    case albumd::Options::Command::ListAlbums:
        return albumd::listAlbums(options);
    case albumd::Options::Command::RemoveAlbum:
        return albumd::removeAlbum(options);
    case albumd::Options::Command::Help:
        break;
    }
    std::fputs(albumd::helpText().c_str(), stdout);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    albumd::Options options;
    const std::string wrong = albumd::parseOptions(std::vector<std::string>(argv + 1, argv + argc), &options);
    if (!wrong.empty()) {
        std::fprintf(stderr, "albumd: %s\nalbumd --help tells more\n", wrong.c_str());
        return 2;
    }
#ifndef _WIN32
    umask(077); // what people upload is nobody else's on this machine
#endif
    if (sodium_init() < 0) {
        std::fputs("albumd: the system gives no random numbers\n", stderr);
        return 1;
    }
    return run(options);
}
