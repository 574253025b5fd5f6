// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/views/cloud/CloudBytes.h"
#include "views/cloud/PointCloudFile.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

/// Cloud files in a folder of the test's own.
class CloudFixture : public testing::Test
{
protected:
    QString pathOf(const QString& name = QStringLiteral("cloud.tmp")) const
    {
        return m_folder.filePath(name);
    }

    cloud::ReadStatus read(const QByteArray& bytes)
    {
        writeBytes(pathOf(), bytes);
        return cloud::readPointCloud(pathOf(), &cloud);
    }

    /// Puts these points into `cloud`.
    void make(const CloudBytes& bytes) { ASSERT_EQ(read(bytes.file()), cloud::ReadStatus::Ok); }

    cloud::PointCloud cloud;
    CloudBytes bytes;

private:
    QTemporaryDir m_folder;
};
