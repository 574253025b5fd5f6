// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/include/NexomapLib.h"

#include <stdexcept>
#include <string>

namespace nexomap {

/// Why a call cannot be done. Thrown inside the library only; the C interface turns it into its status.
class Failure : public std::runtime_error
{
public:
    Failure(NexomapStatus status, const std::string& reason)
        : std::runtime_error(reason)
        , m_status(status)
    {}
    NexomapStatus status() const { return m_status; }

private:
    NexomapStatus m_status;
};

} // namespace nexomap
