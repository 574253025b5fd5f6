// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/Secret.h"

#include "project/LocalText.h"

#include <QByteArray>

#include <cstdio>
#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#else
#include <termios.h>
#include <unistd.h>
#endif

namespace {

/// While it lives, a terminal at standard input does not show what is typed.
class HiddenTyping
{
public:
    HiddenTyping()
    {
#ifdef Q_OS_WIN
        m_console = GetStdHandle(STD_INPUT_HANDLE);
        m_terminal = GetConsoleMode(m_console, &m_mode) != 0;
        if (m_terminal) SetConsoleMode(m_console, m_mode & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
#else
        m_terminal = tcgetattr(STDIN_FILENO, &m_mode) == 0;
        if (!m_terminal) return;
        termios hidden = m_mode;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
#endif
    }

    ~HiddenTyping()
    {
        if (!m_terminal) return;
#ifdef Q_OS_WIN
        SetConsoleMode(m_console, m_mode);
#else
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_mode);
#endif
        std::fputc('\n', stderr);
    }

    HiddenTyping(const HiddenTyping&) = delete;
    HiddenTyping& operator=(const HiddenTyping&) = delete;

    bool onTerminal() const
    {
        return m_terminal;
    }

private:
#ifdef Q_OS_WIN
    HANDLE m_console = nullptr;
    DWORD m_mode = 0;
#else
    termios m_mode{};
#endif
    bool m_terminal = false;
};

} // namespace

QString readSecret(const char* variable, const QString& question)
{
    if (qEnvironmentVariableIsSet(variable)) return qEnvironmentVariable(variable);
    const HiddenTyping hidden;
    if (hidden.onTerminal()) {
        const QByteArray prompt = localtext::toLocal(question);
        std::fputs(prompt.constData(), stderr);
        std::fflush(stderr);
    }
    QByteArray line;
    for (int c = std::fgetc(stdin); c != EOF && c != '\n'; c = std::fgetc(stdin))
        line += static_cast<char>(c);
    if (line.endsWith('\r')) line.chop(1);
    return localtext::fromLocal(line);
}
