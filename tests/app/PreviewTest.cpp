// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Preview: the tour is written beside the scratch files and the viewer started on it.

#include "tests/app/support/WindowTest.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

namespace {

class PreviewCommand : public WindowTest
{
protected:
    PreviewCommand()
    {
        // Stands where the viewer is looked for and notes what it was called with, whole or not at all.
        const QString viewer =
            writeFile(project().folders.viewer, "#!/bin/sh\n"
                                                "cd \"$(dirname \"$0\")\"\n"
                                                "printf '%s\\n' \"$#\" \"$@\" > seen.part\n"
                                                "mv seen.part seen\n");
        QFile::setPermissions(viewer, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    /// Number of arguments, then each on a line of its own.
    QStringList viewerCall()
    {
        const QString seen = inFolder(QStringLiteral("seen"));
        EXPECT_TRUE(QTest::qWaitFor([&] { return QFileInfo::exists(seen); }, 10000));
        QFile file(seen);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        file.remove();
        return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    QString previewFile() const { return inWorkingFolder(QStringLiteral("Preview/tmp.roa")); }
};

TEST_F(PreviewCommand, AnEmptyProjectIsToldAndNothingIsWritten)
{
    robot->press(QMessageBox::Ok);
    choose("menuPreview", "actionPreview");
    ASSERT_EQ(robot->boxes.size(), 1u);
    const SeenBox& box = robot->boxes.front();
    EXPECT_EQ(box.kind, QMessageBox::Information);
    EXPECT_EQ(box.title, QStringLiteral("Preview Panorama Roaming"));
    EXPECT_EQ(box.text, QStringLiteral("Please add panoramas first!"));
    EXPECT_EQ(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    EXPECT_FALSE(QFileInfo::exists(previewFile()));
}

TEST_F(PreviewCommand, OnePanoramaIsWrittenAndTheViewerStartedWithOneArgument)
{
    importRooms(1);
    choose("menuPreview", "actionPreview");
    EXPECT_EQ(viewerCall(), (QStringList{QStringLiteral("1"), previewFile()}));
    EXPECT_GT(QFileInfo(previewFile()).size(), QFileInfo(inFolder(QStringLiteral("room 1.pno"))).size());
}

TEST_F(PreviewCommand, TwoPreviewsInARowOverwriteTheSameFile)
{
    importRooms(1);
    choose("menuPreview", "actionPreview");
    viewerCall();
    const qint64 first = QFileInfo(previewFile()).size();
    import({makePano(QStringLiteral("more.pno"), identity(1))});
    choose("menuPreview", "actionPreview");
    EXPECT_EQ(viewerCall().value(1), previewFile());
    EXPECT_GT(QFileInfo(previewFile()).size(), first);
    EXPECT_EQ(QFileInfo(previewFile()).dir().entryList(QDir::Files), QStringList{QStringLiteral("tmp.roa")});
}

TEST_F(PreviewCommand, AnUnsavedProjectStaysUnnamedAndModified)
{
    importRooms(1);
    choose("menuPreview", "actionPreview");
    viewerCall();
    EXPECT_TRUE(project().modified);
    EXPECT_TRUE(project().file_path.isEmpty());
    EXPECT_EQ(project().stage, NotLinked);
}

TEST_F(PreviewCommand, AMissingViewerIsIgnored)
{
    importRooms(1);
    QFile::remove(project().folders.viewer);
    choose("menuPreview", "actionPreview");
    EXPECT_TRUE(robot->boxes.empty());
    EXPECT_TRUE(QFileInfo::exists(previewFile()));
}

} // namespace
