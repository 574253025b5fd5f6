// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/PnoParts.h"

#include <string>

/// A folder of a test's own, and files in it. Paths are UTF-8.
namespace pnotest {

/// Made on construction under the system's temporary folder, gone with everything in it on destruction.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// Full path of a file or folder in it, whether it is there or not.
    std::string path(const std::string& name) const { return m_path + "/" + name; }

    /// Writes a file, and the folders that `name` puts before it; aborts the test program on failure.
    /// @return its full path
    std::string write(const std::string& name, const Bytes& bytes) const;

private:
    std::string m_path;
};

} // namespace pnotest
