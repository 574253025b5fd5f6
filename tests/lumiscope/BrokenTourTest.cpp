// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What cannot be walked through is told in the window; and what the viewer leaves behind: nothing.

#include "tests/lumiscope/support/ViewerTest.h"

#include "companions/lumiscope/tour/ScratchFolder.h"

#include <QDir>
#include <QFile>
#include <QLockFile>

using namespace lumiscope;

namespace {

class BrokenTour : public ViewerTest
{
protected:
    BrokenTour()
    {
        // The scratch folders of other tests and programs are not this one's.
        qputenv("TMPDIR", temporary.path().toLocal8Bit());
    }
    ~BrokenTour() override
    {
        window.reset(); // its folder lies in the temporary one
        qputenv("TMPDIR", systemsOwn);
    }

    QByteArray goodTour()
    {
        made.addStation("AAAAAAAAAAAAAB", QStringLiteral("hall"), 0, 0, 0);
        QFile file(made.save());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void expectMessage(const QString& path, const QString& message)
    {
        openAnything(path);
        EXPECT_TRUE(waitFor([&] { return shown("message"); }));
        EXPECT_EQ(textOf("message"), message);
        for (const char* control : {"view", "map", "notice", "buttonMap", "buttonNearer"})
            EXPECT_FALSE(shown(control)) << control;
        EXPECT_EQ(find<QLabel>("message")->size(), window->size());
    }

    QStringList scratchFolders() const
    {
        return QDir(temporary.path()).entryList({QStringLiteral("lumiscope-*")}, QDir::Dirs);
    }

    const QByteArray systemsOwn = QDir::tempPath().toLocal8Bit();
    QTemporaryDir temporary;
};

TEST_F(BrokenTour, AMissingFileIsTold)
{
    const QString path = made.path(QStringLiteral(u"没有.roa"));
    expectMessage(path, QStringLiteral("There is no file %1.").arg(path));
}

TEST_F(BrokenTour, AnEmptyFileIsTold)
{
    expectMessage(made.write(QStringLiteral("empty.roa"), ""),
                  QStringLiteral("The tour empty.roa is empty."));
}

TEST_F(BrokenTour, AnotherFileIsTold)
{
    expectMessage(made.write(QStringLiteral("photo.roa"), "\xFF\xD8\xFF\xE0 no tour"),
                  QStringLiteral("The file photo.roa is not a tour."));
}

TEST_F(BrokenTour, AFolderIsTold)
{
    openAnything(made.path(QString()));
    EXPECT_TRUE(waitFor([&] { return shown("message"); }));
    EXPECT_TRUE(textOf("message").contains(QStringLiteral("cannot be opened")));
}

TEST_F(BrokenTour, ATourCutShortAnywhereIsTold)
{
    const QByteArray tour = goodTour();
    expectMessage(made.write(QStringLiteral("cut.roa"), tour.left(tour.size() - 1)),
                  QStringLiteral("The tour cut.roa is damaged: its end is missing."));
    window.reset();
    expectMessage(made.write(QStringLiteral("cut.roa"), tour.left(100)),
                  QStringLiteral("The tour cut.roa is damaged: its end is missing."));
}

TEST_F(BrokenTour, ADescriptionThatCannotBeReadIsTold)
{
    const QByteArray tour = goodTour();
    openAnything(
        made.write(QStringLiteral("bad.roa"), withDescription(tour, "<panorama_list>", "<panorama_list")));
    EXPECT_TRUE(waitFor([&] { return shown("message"); }));
    EXPECT_TRUE(
        textOf("message").startsWith(QStringLiteral("The tour bad.roa cannot be shown: its description")))
        << textOf("message").toStdString();
}

TEST_F(BrokenTour, ATourWithoutPanoramasIsTold)
{
    QByteArray tour = goodTour();
    const int first = tour.indexOf("<panorama pano_id");
    const int last = tour.indexOf("</panorama>") + 11;
    const QByteArray none = withDescription(tour, tour.mid(first, last - first), QByteArray());
    expectMessage(made.write(QStringLiteral("none.roa"), none),
                  QStringLiteral("The tour none.roa has no panoramas."));
    window.reset();
    // The magic word alone.
    expectMessage(made.write(QStringLiteral("magic.roa"), tour.left(2)),
                  QStringLiteral("The tour magic.roa has no panoramas."));
}

TEST_F(BrokenTour, APanoramaThatIsNotInTheFileIsToldInPlace)
{
    QByteArray tour = goodTour();
    const int description = 2 + 262 + tour.mid(262).indexOf("</pano_group>") - 2 + 13 + 2;
    openAnything(made.write(QStringLiteral("hollow.roa"), tour.left(description)));
    EXPECT_TRUE(waitFor([&] {
        return shown("notice") &&
               textOf("notice").startsWith(QStringLiteral("This panorama cannot be shown."));
    })) << textOf("message").toStdString();
}

TEST_F(BrokenTour, TheScratchFolderGoesWithTheWindow)
{
    goodTour();
    open(made.path(QStringLiteral(u"一次 tour.roa")));
    EXPECT_EQ(scratchFolders().size(), 1);
    window.reset();
    EXPECT_TRUE(scratchFolders().isEmpty());
}

TEST_F(BrokenTour, TheWindowMayBeClosedWhileItLoads)
{
    goodTour();
    for (const int wait_ms : {0, 5, 40, 120}) {
        openAnything(made.path(QStringLiteral(u"一次 tour.roa")));
        QTest::qWait(wait_ms);
        window.reset();
        EXPECT_TRUE(scratchFolders().isEmpty());
    }
}

TEST_F(BrokenTour, AFolderOfALivingViewerStaysAndOneOfACrashedViewerGoes)
{
    const ScratchFolder living;
    ASSERT_TRUE(living.isValid());
    // As a crash leaves it: files, and the lock of a process that is no more.
    const QString crashed = temporary.filePath(QStringLiteral("lumiscope-crash"));
    ASSERT_TRUE(QDir().mkpath(crashed));
    QFile lock(crashed + QStringLiteral("/lock"));
    ASSERT_TRUE(lock.open(QIODevice::WriteOnly));
    lock.write("2147480000\nlumiscope\n" + QSysInfo::machineHostName().toLocal8Bit() + "\n");
    lock.close();
    const ScratchFolder next;
    EXPECT_FALSE(QFileInfo::exists(crashed));
    EXPECT_TRUE(QFileInfo::exists(living.path()));
    EXPECT_TRUE(QFileInfo::exists(next.path()));
}

TEST_F(BrokenTour, AFolderThatIsJustBeingMadeStays)
{
    const QString young = temporary.filePath(QStringLiteral("lumiscope-young"));
    ASSERT_TRUE(QDir().mkpath(young));
    const ScratchFolder next;
    EXPECT_TRUE(QFileInfo::exists(young));
}

} // namespace
