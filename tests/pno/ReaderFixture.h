// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "linking/pno/PnoFile.h"
#include "tests/support/PnoParts.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <memory>

/// A reader on the heap and a folder to put its files in.
class ReaderTest : public testing::Test
{
protected:
    std::int32_t open(const pnotest::Bytes& bytes)
    {
        m_path = m_folder.write("test.pno", bytes);
        return m_file->Open(m_path.c_str());
    }
    std::int32_t open(const pnotest::PnoParts& parts) { return open(parts.bytes()); }
    std::int32_t open(const std::vector<pnotest::Segment>& segments) { return open(pnotest::join(segments)); }

    pnotest::Bytes tile(int level, int column, int row)
    {
        std::uint32_t size = 12345;
        const PnoBytes bytes = m_file->ReadTile(level, column, row, &size);
        return bytes ? pnotest::Bytes(bytes.get(), bytes.get() + size) : pnotest::Bytes();
    }

    /// Null with size 0, as a tile that is not there must give.
    bool noTile(int level, int column, int row)
    {
        std::uint32_t size = 12345;
        return m_file->ReadTile(level, column, row, &size) == nullptr && size == 0;
    }

    pnotest::TemporaryFolder m_folder;
    std::string m_path;
    std::unique_ptr<PnoFile> m_file = std::make_unique<PnoFile>();
};

/// The same with two valid panoramas to bend.
class PartsTest : public ReaderTest
{
protected:
    const pnotest::PnoParts m_plain = pnotest::parts();
    const pnotest::PnoParts m_lidar = [] {
        pnotest::PnoOptions options;
        options.depthTiles = pnotest::tinyTiles();
        return pnotest::parts(options);
    }();
};
