// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/BoundedServer.h"

#include "companions/albumd/Sockets.h"
#include "companions/albumd/WorkerQueue.h"

#include <thread>

#ifndef _WIN32
#include <sys/socket.h>
#endif

namespace albumd {
namespace {

constexpr int kThreads = 64;
constexpr std::size_t kMostWaiting = 256;
constexpr int kBacklog = 512;
constexpr int kRequestsPerConnection = 1000;

thread_local BoundedStream* t_stream = nullptr;

void reuseAddress(socket_t socket)
{
#ifdef _WIN32
    static_cast<void>(socket); // the option would let two services share the port there
#else
    const int yes = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
#endif
}

} // namespace

BoundedServer::BoundedServer(const Patience& patience)
    : m_patience(patience)
{
    set_socket_options(reuseAddress);
    new_task_queue = [this] { return new WorkerQueue(kThreads, kMostWaiting, [this] { closeOneIdle(); }); };
}

int BoundedServer::bind(const std::string& host, int port)
{
    const int bound = port == 0 ? bind_to_any_port(host) : bind_to_port(host, port) ? port : -1;
    // The HTTP library asks for a queue of five connections; a second call asks for more.
    if (bound > 0) ::listen(svr_sock_, kBacklog);
    return bound;
}

void BoundedServer::stopSoon(int grace_ms)
{
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_stopping = true;
        for (const auto& [socket, busy] : m_connections)
            if (!busy) shutDown(socket);
    }
    while (!is_running()) // bound, and about to listen
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    stop();
    std::unique_lock<std::mutex> guard(m_lock);
    m_gone.wait_for(guard, std::chrono::milliseconds(grace_ms), [this] { return m_connections.empty(); });
    for (const auto& [socket, busy] : m_connections)
        shutDown(socket);
}

std::size_t BoundedServer::connections()
{
    const std::lock_guard<std::mutex> guard(m_lock);
    return m_connections.size();
}

void BoundedServer::giveUpRequest(httplib::Response& response)
{
    response.set_header("Connection", "close");
    if (t_stream) t_stream->giveUp();
}

void BoundedServer::closeOneIdle()
{
    const std::lock_guard<std::mutex> guard(m_lock);
    for (auto& [socket, busy] : m_connections) {
        if (busy) continue;
        shutDown(socket);
        busy = true; // taken care of
        return;
    }
}

bool BoundedServer::setBusy(socket_t socket, bool busy)
{
    const std::lock_guard<std::mutex> guard(m_lock);
    m_connections[socket] = busy;
    return !m_stopping;
}

bool BoundedServer::process_and_close_socket(socket_t socket)
{
    prepareSocket(socket);
    if (WorkerQueue::refusing()) {
        constexpr char kBusy[] = "HTTP/1.1 503 Service Unavailable\r\nRetry-After: 5\r\nContent-Length: 0\r\n"
                                 "Connection: close\r\n\r\n";
        sendWithoutSignal(socket, kBusy, sizeof kBusy - 1);
        closeSocket(socket);
        return false;
    }
    BoundedStream stream(socket, m_patience);
    t_stream = &stream;
    serve(socket, stream);
    t_stream = nullptr;
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_connections.erase(socket);
    }
    m_gone.notify_all();
    if (stream.givenUp())
        closeGently(socket);
    else
        closeSocket(socket);
    return true;
}

void BoundedServer::serve(socket_t socket, BoundedStream& stream)
{
    for (int left = kRequestsPerConnection; left > 0; --left) {
        if (!setBusy(socket, false) || !stream.waitForRequest()) return;
        const bool goesOn = setBusy(socket, true);
        stream.beginRequest();
        bool closed = false;
        bool headRead = false;
        const bool answered =
            process_request(stream, left == 1 || !goesOn, closed, [&](httplib::Request& request) {
                headRead = true;
                stream.endHead();
                request.ranges.clear(); // nothing here is worth a piece of it
            });
        if (!headRead) stream.giveUp(); // nobody knows where a next request would begin
        if (!answered || closed || !goesOn || stream.givenUp()) return;
    }
}

} // namespace albumd
