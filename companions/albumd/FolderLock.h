// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// One service per data folder.

#pragma once

#include <string>

namespace albumd {

/// Held for as long as it lives; the system lets go of it when the process ends, however it ends.
class FolderLock
{
public:
    explicit FolderLock(const std::string& folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    bool held() const { return m_handle >= 0; }

private:
    int m_handle = -1;
};

} // namespace albumd
