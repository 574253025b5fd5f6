// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The few socket calls that differ between systems.

#pragma once

#include <httplib.h>

#ifndef _WIN32
#include <poll.h>
#endif

namespace albumd {

/// True when one of the events, or the connection's end, comes in time.
bool waitForSocket(socket_t socket, short events, int timeout_ms);

/// Sends what fits without waiting; bytes sent, possibly 0, or -1.
ssize_t sendWithoutSignal(socket_t socket, const char* data, std::size_t size);

/// Ends both directions; whoever waits on the socket wakes up.
void shutDown(socket_t socket);

/// Ends our direction, then reads and forgets what still comes, for a moment: closed at once, the client's
/// system might throw our reply away.
void closeGently(socket_t socket);

void closeSocket(socket_t socket);

/// Small replies leave at once; no call on the socket waits.
void prepareSocket(socket_t socket);

} // namespace albumd
