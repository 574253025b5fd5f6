// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The HTTP server with bounds: on threads, on waiting connections, on everybody's patience.

#pragma once

#include "companions/albumd/BoundedStream.h"

#include <httplib.h>

#include <condition_variable>
#include <map>
#include <mutex>

namespace albumd {

class BoundedServer : public httplib::Server
{
public:
    explicit BoundedServer(const Patience& patience = Patience());

    /// @param port  0 takes a free one
    /// @return the port, or -1
    int bind(const std::string& host, int port);

    /// Takes no more connections, closes those that wait, lets requests under way end for a while, then cuts
    /// them off. `listen_after_bind` returns after it.
    void stopSoon(int grace_ms);

    /// Open ones that a thread looks after.
    std::size_t connections();

    /// From a handler: the rest of this request stays unread; the connection ends with the reply.
    static void giveUpRequest(httplib::Response& response);

private:
    bool process_and_close_socket(socket_t socket) override;
    void serve(socket_t socket, BoundedStream& stream);
    void closeOneIdle();
    bool setBusy(socket_t socket, bool busy); ///< false: the server is stopping

    Patience m_patience;
    std::mutex m_lock;
    std::condition_variable m_gone;
    std::map<socket_t, bool> m_connections; ///< whether a request is under way
    bool m_stopping = false;
};

} // namespace albumd
