// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A client's connection with an end to everybody's patience: for the head of a request, for its body, for the
// reading of the reply.

#pragma once

#include <httplib.h>

#include <array>
#include <chrono>

namespace albumd {

/// Generous to slow lines, closed to those who only hold a thread.
struct Patience
{
    int head_ms = 10'000;           ///< for a whole head of a request
    int silence_ms = 15'000;        ///< between two pieces of anything
    int grace_ms = 20'000;          ///< before the least rate counts
    int slowest_bytes_per_s = 8192; ///< of a request, and of its reply
    int keepAlive_ms = 5'000;       ///< for the next request on a connection
    std::size_t head_bytes = 32768; ///< of a request line and all header lines together
};

/// Of one thread at a time. The socket stays its owner's.
class BoundedStream : public httplib::Stream
{
public:
    BoundedStream(socket_t socket, const Patience& patience);

    /// Waits for the first byte of a request. False when none comes.
    bool waitForRequest();

    void beginRequest(); ///< the clock starts
    void endHead();      ///< the head's bounds hold no more

    /// The rest of the request stays unread, so nothing can follow on this connection.
    void giveUp() { m_givenUp = true; }
    bool givenUp() const { return m_givenUp; }

    bool is_readable() const override { return true; }
    bool is_writable() const override { return !m_broken; }
    ssize_t read(char* data, size_t size) override;
    ssize_t write(const char* data, size_t size) override;
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;

    /// Not the true one: the HTTP library turns away numbers that its own waiting could not take, ours can.
    socket_t socket() const override { return 0; }

private:
    using Time = std::chrono::steady_clock::time_point;

    bool wait(short events, Time start, std::size_t moved) const;
    int timeLeft_ms(Time start, std::size_t moved) const;

    socket_t m_socket;
    Patience m_patience;
    std::array<char, 16384> m_buffer;
    std::size_t m_at = 0;
    std::size_t m_filled = 0;
    Time m_requestStart;
    Time m_replyStart;
    std::size_t m_received = 0; ///< of this request
    std::size_t m_sent = 0;     ///< of its reply
    bool m_inHead = true;
    bool m_replying = false;
    bool m_broken = false;
    bool m_givenUp = false;
};

} // namespace albumd
