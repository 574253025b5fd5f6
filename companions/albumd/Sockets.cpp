// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/Sockets.h"

#include <cerrno>
#include <chrono>

#ifndef _WIN32
#include <fcntl.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace albumd {
namespace {

constexpr int kLinger_ms = 1000;

#ifdef _WIN32
constexpr int kNoSignal = 0;
constexpr int kBoth = SD_BOTH;
constexpr int kOurs = SD_SEND;

int pollOne(pollfd* what, int timeout_ms)
{
    return WSAPoll(what, 1, timeout_ms);
}
bool interrupted()
{
    return false;
}
bool wouldWait()
{
    return WSAGetLastError() == WSAEWOULDBLOCK;
}
#else
constexpr int kNoSignal = MSG_NOSIGNAL;
constexpr int kBoth = SHUT_RDWR;
constexpr int kOurs = SHUT_WR;

int pollOne(pollfd* what, int timeout_ms)
{
    return ::poll(what, 1, timeout_ms);
}
bool interrupted()
{
    return errno == EINTR;
}
bool wouldWait()
{
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}
#endif

int millisecondsSince(std::chrono::steady_clock::time_point start)
{
    return static_cast<int>(
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start)
            .count());
}

} // namespace

bool waitForSocket(socket_t socket, short events, int timeout_ms)
{
    const auto start = std::chrono::steady_clock::now();
    for (int left_ms = timeout_ms; left_ms >= 0; left_ms = timeout_ms - millisecondsSince(start)) {
        pollfd what{socket, events, 0};
        const int ready = pollOne(&what, left_ms);
        if (ready > 0) return true;
        if (ready == 0 || !interrupted()) return false;
    }
    return false;
}

ssize_t sendWithoutSignal(socket_t socket, const char* data, std::size_t size)
{
    const auto sent = ::send(socket, data, size, kNoSignal);
    return sent < 0 && wouldWait() ? 0 : static_cast<ssize_t>(sent);
}

void shutDown(socket_t socket)
{
    ::shutdown(socket, kBoth);
}

void closeGently(socket_t socket)
{
    ::shutdown(socket, kOurs);
    const auto start = std::chrono::steady_clock::now();
    char ignored[16384];
    for (int left_ms = kLinger_ms; left_ms > 0; left_ms = kLinger_ms - millisecondsSince(start)) {
        if (!waitForSocket(socket, POLLIN, left_ms)) break;
        if (::recv(socket, ignored, sizeof ignored, 0) <= 0) break;
    }
    closeSocket(socket);
}

void closeSocket(socket_t socket)
{
#ifdef _WIN32
    ::closesocket(socket);
#else
    ::close(socket);
#endif
}

void prepareSocket(socket_t socket)
{
    const int yes = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&yes), sizeof yes);
#ifdef _WIN32
    u_long nonBlocking = 1;
    ::ioctlsocket(socket, FIONBIO, &nonBlocking);
#else
    ::fcntl(socket, F_SETFL, ::fcntl(socket, F_GETFL, 0) | O_NONBLOCK);
#endif
}

} // namespace albumd
