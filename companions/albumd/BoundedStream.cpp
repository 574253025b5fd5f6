// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/BoundedStream.h"

#include "companions/albumd/Sockets.h"

#include <algorithm>
#include <cerrno>

namespace albumd {

BoundedStream::BoundedStream(socket_t socket, const Patience& patience)
    : m_socket(socket)
    , m_patience(patience)
{}

bool BoundedStream::waitForRequest()
{
    return m_at < m_filled || waitForSocket(m_socket, POLLIN, m_patience.keepAlive_ms);
}

void BoundedStream::beginRequest()
{
    m_requestStart = std::chrono::steady_clock::now();
    m_received = 0;
    m_sent = 0;
    m_inHead = true;
    m_replying = false;
}

void BoundedStream::endHead()
{
    m_inHead = false;
}

int BoundedStream::timeLeft_ms(Time start, std::size_t moved) const
{
    using std::chrono::duration_cast;
    using std::chrono::milliseconds;
    const auto passed = duration_cast<milliseconds>(std::chrono::steady_clock::now() - start).count();
    const auto allowed = m_inHead ? std::int64_t(m_patience.head_ms)
                                  : m_patience.grace_ms + static_cast<std::int64_t>(moved) * 1000 /
                                                              m_patience.slowest_bytes_per_s;
    return static_cast<int>(std::clamp<std::int64_t>(allowed - passed, 0, m_patience.silence_ms));
}

bool BoundedStream::wait(short events, Time start, std::size_t moved) const
{
    const int left_ms = timeLeft_ms(start, moved);
    return left_ms > 0 && waitForSocket(m_socket, events, left_ms);
}

ssize_t BoundedStream::read(char* data, size_t size)
{
    if (m_inHead && m_received >= m_patience.head_bytes) return -1;
    if (m_at == m_filled) {
        if (m_broken || !wait(POLLIN, m_requestStart, m_received)) return -1;
        const ssize_t got = ::recv(m_socket, m_buffer.data(), m_buffer.size(), 0);
        if (got <= 0) {
            m_broken = true;
            return got;
        }
        m_at = 0;
        m_filled = static_cast<std::size_t>(got);
    }
    const std::size_t part = std::min(size, m_filled - m_at);
    std::copy_n(m_buffer.data() + m_at, part, data);
    m_at += part;
    m_received += part;
    return static_cast<ssize_t>(part);
}

ssize_t BoundedStream::write(const char* data, size_t size)
{
    if (!m_replying) {
        m_replying = true;
        m_inHead = false;
        m_replyStart = std::chrono::steady_clock::now();
    }
    std::size_t done = 0;
    while (done < size) {
        if (m_broken || !wait(POLLOUT, m_replyStart, m_sent)) {
            m_broken = true;
            return -1;
        }
        const ssize_t sent = sendWithoutSignal(m_socket, data + done, size - done);
        if (sent < 0) {
            m_broken = true;
            return -1;
        }
        done += static_cast<std::size_t>(sent);
        m_sent += static_cast<std::size_t>(sent);
    }
    return static_cast<ssize_t>(done);
}

void BoundedStream::get_remote_ip_and_port(std::string& ip, int& port) const
{
    ip.clear(); // nobody's address is looked at or kept
    port = 0;
}

void BoundedStream::get_local_ip_and_port(std::string& ip, int& port) const
{
    ip.clear();
    port = 0;
}

} // namespace albumd
