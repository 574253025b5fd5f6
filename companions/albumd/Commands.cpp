// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/Commands.h"

#include "companions/albumd/EndSignals.h"
#include "companions/albumd/FolderLock.h"
#include "companions/albumd/Names.h"
#include "companions/albumd/PasswordInput.h"
#include "companions/albumd/Service.h"

#include <cstdio>
#include <filesystem>

namespace albumd {
namespace {

constexpr int kGrace_ms = 5000;

int failed(const std::string& line)
{
    std::fprintf(stderr, "albumd: %s\n", line.c_str());
    return 1;
}

bool makeDataFolder(const std::string& folder, std::string* error)
{
    std::error_code problem;
    std::filesystem::create_directories(folder, problem);
    if (std::filesystem::is_directory(folder, problem)) return true;
    *error = folder + ": this folder cannot be made";
    return false;
}

bool openForCommand(Database& database, const Options& options, std::string* error)
{
    return makeDataFolder(options.folder, error) && openDatabase(database, options.folder, error);
}

} // namespace

int serve(const Options& options)
{
    holdEndSignals();
    std::string error;
    if (!makeDataFolder(options.folder, &error)) return failed(error);
    const FolderLock lock(options.folder);
    if (!lock.held()) return failed(options.folder + ": another albumd serves this folder");
    ServiceOptions serviceOptions;
    serviceOptions.folder = options.folder;
    serviceOptions.tokenLife_s = options.token_minutes * 60;
    Service service(serviceOptions);
    if (!service.open(&error)) return failed(error);
    const int port = service.server().bind(options.host, options.port);
    if (port < 0)
        return failed("cannot listen on " + options.host + ", port " + std::to_string(options.port));
    onEndSignal([&service] { service.server().stopSoon(kGrace_ms); });
    const bool hasColons = options.host.find(':') != std::string::npos;
    const std::string host = hasColons ? '[' + options.host + ']' : options.host;
    std::printf("albumd: listening on http://%s:%d/\n", host.c_str(), port);
    std::fflush(stdout);
    return service.server().listen_after_bind() ? 0 : failed("listening came to an end");
}

int addUser(const Options& options)
{
    std::string error;
    Database database;
    if (!openForCommand(database, options, &error)) return failed(error);
    Accounts accounts(database, 0);
    if (!accounts.add(options.argument, readPassword(), options.quota_mib << 20, &error))
        return failed(options.argument + ": " + error);
    return 0;
}

int setPassword(const Options& options)
{
    std::string error;
    Database database;
    if (!openForCommand(database, options, &error)) return failed(error);
    Accounts accounts(database, 0);
    if (!accounts.setPassword(options.argument, readPassword(), &error))
        return failed(options.argument + ": " + error);
    return 0;
}

int listAlbums(const Options& options)
{
    std::string error;
    Database database;
    if (!openForCommand(database, options, &error)) return failed(error);
    for (const Album& album : Albums(database).list(0))
        std::printf("album/%s\t%s\t%s\n", album.id.c_str(), Accounts(database, 0).email(album.user).c_str(),
                    album.name.c_str());
    return 0;
}

int removeAlbum(const Options& options)
{
    std::string error;
    Database database;
    if (!openForCommand(database, options, &error)) return failed(error);
    Albums albums(database);
    if (!isAlbumId(options.argument) || !albums.find(options.argument))
        return failed(options.argument + ": there is no such album");
    return albums.remove(options.argument) ? 0 : failed(database.error());
}

} // namespace albumd
