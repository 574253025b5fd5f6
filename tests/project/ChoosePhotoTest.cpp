// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The picture of a photo hotspot: its copy, the copy's name, and files that are no pictures.

#include "project/ChoosePhoto.h"

#include "project/PhotoPicture.h"
#include "tests/project/Photos.h"
#include "tests/project/Tours.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

constexpr const char* kIdentity = "AAAAAAAAAAAAAB";
const QTime kNoon(12, 0);

class ChoosePhoto : public testing::Test
{
protected:
    ChoosePhoto()
    {
        panorama = tour.add(kIdentity, QStringLiteral("room"));
        QDir().mkpath(working());
    }

    QString working() const { return tour.file(QStringLiteral(u"工作 é/")); }
    QStringList copies() const { return QDir(working()).entryList(QDir::Files | QDir::Hidden); }

    static QByteArray contentOf(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Chooses the file for a hotspot that has a picture already; expects that nothing changes.
    void expectRefused(const QString& path, PhotoOutcome why = PhotoOutcome::NotAPicture)
    {
        PhotoHotspot photo;
        photo.photo_path = QStringLiteral("/before.jpg");
        photo.photo_width = 3;
        photo.photo_height = 2;
        const ChosenPhoto result = choosePhoto(*panorama, photo, path, working());
        EXPECT_EQ(result.outcome, why) << path.toStdString();
        EXPECT_TRUE(result.picture.isNull() && result.path.isEmpty());
        EXPECT_EQ(photo.photo_path, QStringLiteral("/before.jpg"));
        EXPECT_EQ(photo.photo_width, 3);
        EXPECT_EQ(photo.photo_height, 2);
        EXPECT_EQ(copies(), QStringList());
    }

    TourForTest tour;
    PanoNode* panorama;
};

TEST_F(ChoosePhoto, APictureOf5000By3000IsStoredAs4096By2457)
{
    PhotoHotspot photo;
    const QString path = tour.write(QStringLiteral("large.jpg"), photos::jpeg(5000, 3000));
    const ChosenPhoto result = choosePhoto(*panorama, photo, path, working());
    ASSERT_EQ(result.outcome, PhotoOutcome::Chosen);
    EXPECT_EQ(result.picture.size(), QSize(4096, 2457));
    EXPECT_EQ(photo.photo_width, 4096);
    EXPECT_EQ(photo.photo_height, 2457);
    EXPECT_EQ(photo.photo_path, result.path);
    const QImage stored(photo.photo_path, "jpg");
    EXPECT_EQ(stored.size(), QSize(4096, 2457));
    EXPECT_GT(qRed(stored.pixel(1000, 1200)), 240);
    EXPECT_GT(qBlue(stored.pixel(3000, 1200)), 240);
}

TEST_F(ChoosePhoto, ALargePortraitIsLimitedInItsHeight)
{
    const QString path = tour.write(QStringLiteral("high.jpg"), photos::jpeg(1000, 5000));
    const ChosenPhoto result = copyPhoto(path, working() + QStringLiteral("c.jpg"));
    EXPECT_EQ(result.picture.size(), QSize(819, 4096));
}

TEST_F(ChoosePhoto, APictureOfOneRowKeepsThatRow)
{
    const QString path = tour.write(QStringLiteral("line.jpg"), photos::jpeg(30000, 1));
    const ChosenPhoto result = copyPhoto(path, working() + QStringLiteral("c.jpg"));
    EXPECT_EQ(result.picture.size(), QSize(4096, 1));
}

TEST_F(ChoosePhoto, APictureOf4096By4096IsCopiedUnchanged)
{
    const QByteArray bytes = photos::jpeg(4096, 4096);
    PhotoHotspot photo;
    const ChosenPhoto result =
        choosePhoto(*panorama, photo, tour.write(QStringLiteral("p.jpg"), bytes), working());
    ASSERT_EQ(result.outcome, PhotoOutcome::Chosen);
    EXPECT_EQ(contentOf(photo.photo_path), bytes);
    EXPECT_EQ(photo.photo_width, 4096);
    EXPECT_EQ(photo.photo_height, 4096);
}

TEST_F(ChoosePhoto, APictureOneColumnWiderIsScaled)
{
    const QString path = tour.write(QStringLiteral("p.jpg"), photos::jpeg(4097, 100));
    const ChosenPhoto result = copyPhoto(path, working() + QStringLiteral("c.jpg"));
    EXPECT_EQ(result.picture.size(), QSize(4096, 99));
}

TEST_F(ChoosePhoto, APhotoOfATurnedCameraIsShownAndScaledUpright)
{
    const QString small = tour.write(QStringLiteral("small.jpg"), photos::turnedJpeg(60, 40));
    EXPECT_EQ(copyPhoto(small, working() + QStringLiteral("s.jpg")).picture.size(), QSize(40, 60));
    const QString large = tour.write(QStringLiteral("large.jpg"), photos::turnedJpeg(8192, 4096));
    EXPECT_EQ(copyPhoto(large, working() + QStringLiteral("l.jpg")).picture.size(), QSize(2048, 4096));
    EXPECT_EQ(QImage(working() + QStringLiteral("l.jpg")).size(), QSize(2048, 4096));
}

TEST_F(ChoosePhoto, TheContentTellsTheFormatNotTheName)
{
    const QByteArray bytes = photos::encoded(photos::picture(30, 20), "png");
    const QString path = tour.write(QStringLiteral("really a png.jpg"), bytes);
    const ChosenPhoto result = copyPhoto(path, working() + QStringLiteral("c.jpg"));
    EXPECT_EQ(result.picture.size(), QSize(30, 20));
    EXPECT_EQ(contentOf(result.path), bytes);
}

TEST_F(ChoosePhoto, NamesWithChineseBlanksAndMarkupAreNoTrouble)
{
    for (const QString& name : {QStringLiteral(u"照片 一.jpg"), QStringLiteral("a & <b> \"c\".jpg"),
                                QStringLiteral(u"été/&<\">.jpg"), QStringLiteral("no ending")}) {
        PhotoHotspot photo;
        const QString path = tour.write(name, photos::jpeg(30, 20));
        EXPECT_EQ(choosePhoto(*panorama, photo, path, working()).outcome, PhotoOutcome::Chosen)
            << name.toStdString();
        EXPECT_TRUE(QFile::exists(photo.photo_path));
    }
}

TEST_F(ChoosePhoto, AWriteProtectedPhotoLeavesACopyThatCanBeWritten)
{
    const QString path = tour.write(QStringLiteral("p.jpg"), photos::jpeg(30, 20));
    ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadUser));
    const ChosenPhoto result = copyPhoto(path, working() + QStringLiteral("c.jpg"));
    ASSERT_EQ(result.outcome, PhotoOutcome::Chosen);
    EXPECT_TRUE(QFile::permissions(result.path) & QFile::WriteOwner);
}

TEST_F(ChoosePhoto, TheCopyIsNamedByTheIdentityAndEightDigits)
{
    const QString path = photoCopyPath(working(), *panorama, QStringLiteral("/x/p.jpg"), kNoon);
    ASSERT_TRUE(path.startsWith(working()));
    const QString name = path.mid(working().size());
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^AAAAAAAAAAAAAB-[0-9]{8}\\.jpg$")).match(name).hasMatch())
        << name.toStdString();
    EXPECT_EQ(name.size(), 27);
}

TEST_F(ChoosePhoto, TheDigitsFollowFromTheSecondOfTheDay)
{
    const auto at = [&](QTime time) {
        return photoCopyPath(working(), *panorama, QStringLiteral("/x/p.jpg"), time);
    };
    EXPECT_EQ(at(kNoon), at(kNoon.addMSecs(900)));
    EXPECT_NE(at(kNoon), at(kNoon.addSecs(1)));
}

TEST_F(ChoosePhoto, ASecondPhotoWithinTheSameSecondGetsANameOfItsOwn)
{
    const QString chosen = tour.write(QStringLiteral("p.jpg"), photos::jpeg(30, 20));
    const QString first = photoCopyPath(working(), *panorama, chosen, kNoon);
    ASSERT_EQ(copyPhoto(chosen, first).outcome, PhotoOutcome::Chosen);
    const QString second = photoCopyPath(working(), *panorama, chosen, kNoon);
    EXPECT_NE(second, first);
    EXPECT_EQ(second.size(), first.size());
}

TEST_F(ChoosePhoto, APathWithoutASlashGetsNoCopy)
{
    EXPECT_EQ(photoCopyPath(working(), *panorama, QStringLiteral("p.jpg"), kNoon), QString());
    const QString path = tour.write(QStringLiteral("p.jpg"), photos::jpeg(30, 20));
    EXPECT_EQ(copyPhoto(path, QString()).outcome, PhotoOutcome::NotCopied);
    const QString large = tour.write(QStringLiteral("l.jpg"), photos::jpeg(4097, 20));
    EXPECT_EQ(copyPhoto(large, QString()).outcome, PhotoOutcome::NotCopied);
}

TEST_F(ChoosePhoto, AnIdentityThatLeadsOutOfTheFolderGetsNoCopy)
{
    qstrncpy(panorama->parameters.identity, "../../AAAAAAAA", sizeof panorama->parameters.identity);
    EXPECT_EQ(photoCopyPath(working(), *panorama, QStringLiteral("/x/p.jpg"), kNoon), QString());
    expectRefused(tour.write(QStringLiteral("p.jpg"), photos::jpeg(30, 20)), PhotoOutcome::NotCopied);
}

TEST_F(ChoosePhoto, FilesThatAreNoPicturesChangeNothing)
{
    expectRefused(tour.write(QStringLiteral("text.jpg"), "this is no picture"));
    expectRefused(tour.write(QStringLiteral("empty.jpg"), ""));
    expectRefused(tour.write(QStringLiteral(u"坏 &<\">.jpg"), QByteArray(100000, '\xff')));
    expectRefused(tour.write(QStringLiteral("start.jpg"), photos::jpeg(30, 20).left(20)));
    const QByteArray png = photos::encoded(photos::picture(300, 200), "png");
    expectRefused(tour.write(QStringLiteral("cut.png"), png.left(60)));
    expectRefused(tour.file(QStringLiteral("missing.jpg")));
    expectRefused(tour.folder());
}

TEST_F(ChoosePhoto, NoByteOfAPictureCanDoHarm)
{
    const QByteArray good = photos::jpeg(16, 16);
    const QString path = tour.file(QStringLiteral("p.jpg"));
    for (int at = 0; at < good.size(); ++at) {
        QByteArray bad = good;
        bad[at] = static_cast<char>(~bad[at]);
        tour.write(QStringLiteral("p.jpg"), bad);
        const QImage picture = loadPhoto(path);
        EXPECT_LE(picture.width(), kLargestPhotoSide);
        EXPECT_LE(picture.height(), kLargestPhotoSide);
    }
}

TEST_F(ChoosePhoto, AMissingFolderForTheCopyChangesNothing)
{
    const QString path = tour.write(QStringLiteral("p.jpg"), photos::jpeg(30, 20));
    const QString large = tour.write(QStringLiteral("l.jpg"), photos::jpeg(4097, 20));
    QDir(working()).removeRecursively();
    expectRefused(path, PhotoOutcome::NotCopied);
    expectRefused(large, PhotoOutcome::NotCopied);
}

TEST_F(ChoosePhoto, AFileAtTheDestinationStaysWhenTheCopyFails)
{
    const QString taken = tour.write(QStringLiteral("taken.jpg"), "earlier");
    const QString path = tour.write(QStringLiteral("p.jpg"), photos::jpeg(30, 20));
    EXPECT_EQ(copyPhoto(path, taken).outcome, PhotoOutcome::NotCopied);
    EXPECT_EQ(contentOf(taken), QByteArray("earlier"));
}

TEST_F(ChoosePhoto, APictureOf30000By30000PixelsIsRefused)
{
    const QString path = tour.write(QStringLiteral("huge.jpg"), photos::jpegThatStates(30000, 30000));
    EXPECT_FALSE(statedPhotoSize(path).isValid());
    EXPECT_TRUE(loadPhoto(path).isNull());
    expectRefused(path);
}

TEST_F(ChoosePhoto, APictureThatCannotBeScaledWhileItIsReadMayHaveHalfThePixels)
{
    EXPECT_TRUE(
        statedPhotoSize(tour.write(QStringLiteral("a.jpg"), photos::pngThatStates(10000, 10000))).isValid());
    EXPECT_FALSE(
        statedPhotoSize(tour.write(QStringLiteral("b.jpg"), photos::pngThatStates(10000, 10001))).isValid());
    EXPECT_TRUE(
        statedPhotoSize(tour.write(QStringLiteral("c.jpg"), photos::jpegThatStates(20000, 10000))).isValid());
    expectRefused(tour.write(QStringLiteral("d.jpg"), photos::pngThatStates(30000, 30000)));
}

#ifdef Q_OS_LINUX
TEST_F(ChoosePhoto, AnUnreadableFileChangesNothing)
{
    if (geteuid() == 0) GTEST_SKIP() << "everything is readable to this user";
    const QString path = tour.write(QStringLiteral("p.jpg"), photos::jpeg(30, 20));
    ASSERT_TRUE(QFile::setPermissions(path, {}));
    expectRefused(path);
}

TEST_F(ChoosePhoto, APipeIsNotWaitedFor)
{
    const QString path = tour.file(QStringLiteral("pipe.jpg"));
    ASSERT_EQ(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    expectRefused(path);
}

long peakMemory_mib()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

TEST_F(ChoosePhoto, RefusingAHugePictureTakesNoMemory)
{
    const QString path = tour.write(QStringLiteral("huge.jpg"), photos::jpegThatStates(30000, 30000));
    const long before = peakMemory_mib();
    expectRefused(path);
    EXPECT_LT(peakMemory_mib() - before, 32);
}

TEST_F(ChoosePhoto, TheLargestPictureThatIsTakenIsNeverHeldAtItsFullSize)
{
    const QString path = tour.write(QStringLiteral("large.jpg"), photos::jpegThatStates(16320, 12240));
    const long before = peakMemory_mib();
    const ChosenPhoto result = copyPhoto(path, working() + QStringLiteral("c.jpg"));
    EXPECT_EQ(result.picture.size(), QSize(4096, 3072));
    // At its full size it would take 760 MiB.
    EXPECT_LT(peakMemory_mib() - before, 400);
}
#endif

} // namespace
