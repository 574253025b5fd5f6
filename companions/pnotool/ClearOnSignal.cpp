// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/ClearOnSignal.h"

#include "companions/pnomaker/PartFile.h"

#include <csignal>
#include <cstring>

#ifndef _WIN32
#include <unistd.h>
#endif

namespace pnotool {
namespace {

char partPath[4096];
volatile std::sig_atomic_t partPathSet = 0;

#ifndef _WIN32
constexpr int kEndings[] = {SIGINT, SIGTERM, SIGHUP};

extern "C" void clearAndEnd(int signal)
{
    if (partPathSet) unlink(partPath);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}
#endif

} // namespace

ClearOnSignal::ClearOnSignal(const std::string& path)
{
    const std::string part = pnomaker::PartFile::partName(path);
    if (part.size() >= sizeof(partPath)) return;
    std::memcpy(partPath, part.c_str(), part.size() + 1);
    partPathSet = 1;
#ifndef _WIN32
    for (const int signal : kEndings)
        std::signal(signal, clearAndEnd);
#endif
}

ClearOnSignal::~ClearOnSignal()
{
    partPathSet = 0;
#ifndef _WIN32
    for (const int signal : kEndings)
        std::signal(signal, SIG_DFL);
#endif
}

void ClearOnSignal::prepareProcess()
{
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN);
#endif
}

} // namespace pnotool
