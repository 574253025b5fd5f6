// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/PasswordInput.h"

#include <cstdio>

#ifdef _WIN32
#include <windows.h>
#else
#include <termios.h>
#include <unistd.h>
#endif

namespace albumd {
namespace {

constexpr std::size_t kLongest = 1024;

/// While it lives, the terminal does not show what is typed.
class Unseen
{
public:
#ifdef _WIN32
    Unseen()
    {
        const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
        m_terminal = GetConsoleMode(input, &m_earlier) != 0;
        if (m_terminal) SetConsoleMode(input, m_earlier & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
        if (m_terminal) std::fputs("Password: ", stderr);
    }
    ~Unseen()
    {
        if (m_terminal) SetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), m_earlier);
        if (m_terminal) std::fputs("\n", stderr);
    }
#else
    Unseen()
    {
        m_terminal = tcgetattr(STDIN_FILENO, &m_earlier) == 0;
        if (!m_terminal) return;
        termios silent = m_earlier;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
        std::fputs("Password: ", stderr);
    }
    ~Unseen()
    {
        if (!m_terminal) return;
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_earlier);
        std::fputs("\n", stderr);
    }
#endif
    Unseen(const Unseen&) = delete;
    Unseen& operator=(const Unseen&) = delete;

private:
    bool m_terminal = false;
#ifdef _WIN32
    DWORD m_earlier = 0;
#else
    termios m_earlier{};
#endif
};

} // namespace

std::string readPassword()
{
    const Unseen unseen;
    std::string line;
    for (int c = std::getchar(); c != EOF && c != '\n'; c = std::getchar()) {
        line += static_cast<char>(c);
        if (line.size() > kLongest) return std::string();
    }
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
}

} // namespace albumd
