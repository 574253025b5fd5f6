// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the program does for each of its commands. Each returns the exit status.

#pragma once

#include "companions/albumd/Options.h"

namespace albumd {

int serve(const Options& options);
int addUser(const Options& options);
int setPassword(const Options& options);
int listAlbums(const Options& options);
int removeAlbum(const Options& options);

} // namespace albumd
