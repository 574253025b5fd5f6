// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/EndSignals.h"

#include <thread>
#include <utility>

#ifdef _WIN32
#include <windows.h>
#else
#include <csignal>
#include <pthread.h>
#endif

namespace albumd {

#ifdef _WIN32

namespace {

HANDLE endEvent()
{
    static const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    return event;
}

BOOL WINAPI onConsoleEvent(DWORD)
{
    SetEvent(endEvent());
    return TRUE;
}

} // namespace

void holdEndSignals()
{
    endEvent();
    SetConsoleCtrlHandler(onConsoleEvent, TRUE);
}

void onEndSignal(std::function<void()> end)
{
    std::thread([end = std::move(end)] {
        WaitForSingleObject(endEvent(), INFINITE);
        end();
    }).detach();
}

#else

namespace {

sigset_t endSignals()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGINT);
    return set;
}

} // namespace

void holdEndSignals()
{
    const sigset_t set = endSignals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

void onEndSignal(std::function<void()> end)
{
    std::thread([end = std::move(end)] {
        const sigset_t set = endSignals();
        int signal = 0;
        sigwait(&set, &signal);
        end();
    }).detach();
}

#endif

} // namespace albumd
