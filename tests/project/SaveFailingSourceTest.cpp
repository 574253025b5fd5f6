// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A save in which one of the tour's files fails, whichever it is: the earlier tour stays.

#include "project/SaveTour.h"
#include "tests/project/TourParts.h"
#include "tests/project/Tours.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* kA = "AAAAAAAAAAAAAB";
constexpr const char* kB = "BBBBBBBBBBBBBB";

/// A tour with every kind of source, each file of it once.
class FailingSource : public TourForTest, public testing::Test
{
protected:
    void SetUp() override
    {
        PanoNode* a = add(kA, QStringLiteral("门厅 à"));
        PanoNode* b = add(kB, QStringLiteral("b"));
        PanoLink* joined = link(kA, kB);
        joined->match_path_0 = write(QStringLiteral("m_0.dat"), "match 0");
        joined->match_path_1 = write(QStringLiteral("m_1.dat"), "match 1");
        a->photos.append({0, 0, 0, 0, QString(), write(QStringLiteral("photo.jpg"), "photo"), {}});
        b->plan_src = write(QStringLiteral("plan-00000000.png"), "plan");
        sources = QStringList{
            a->file_path, b->file_path, joined->match_path_0, joined->match_path_1, a->photos[0].photo_path,
            b->plan_src};
        ASSERT_TRUE(saveTour(project, 0, path()));
        earlier = contents(path());
        ASSERT_FALSE(earlier.isEmpty());
    }

    QString path() const { return file(QStringLiteral("tour.roa")); }
    QString kept() const { return path() + QLatin1Char('~'); }

    static QByteArray contents(const QString& name)
    {
        QFile read(name);
        return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray();
    }

    /// Saves while `source` is failing: the half-written file goes, the earlier tour stays under its other
    /// name, and the outcome names the file.
    void expectKept(const QString& source)
    {
        const SaveResult result = saveTour(project, 0, path());
        EXPECT_EQ(result.outcome, SaveOutcome::Failed) << source.toStdString();
        EXPECT_TRUE(result.detail.contains(source)) << result.detail.toStdString();
        EXPECT_FALSE(QFile::exists(path())) << source.toStdString();
        EXPECT_EQ(contents(kept()), earlier) << source.toStdString();
    }

    void bringBackTheEarlierTour()
    {
        ASSERT_TRUE(QFile::rename(kept(), path()));
        ASSERT_TRUE(saveTour(project, 0, path()));
        EXPECT_EQ(contents(path()), earlier);
        EXPECT_FALSE(QFile::exists(kept()));
    }

    QStringList sources;
    QByteArray earlier;
};

TEST_F(FailingSource, WhicheverFileIsGoneTheEarlierTourStays)
{
    for (const QString& source : sources) {
        const QByteArray bytes = contents(source);
        ASSERT_TRUE(QFile::remove(source));
        expectKept(source);
        write(QFileInfo(source).fileName(), bytes);
        bringBackTheEarlierTour();
    }
}

TEST_F(FailingSource, WhicheverFileBecameAFolderTheEarlierTourStays)
{
    for (const QString& source : sources) {
        const QByteArray bytes = contents(source);
        ASSERT_TRUE(QFile::remove(source) && QDir().mkdir(source));
        expectKept(source);
        ASSERT_TRUE(QDir().rmdir(source));
        write(QFileInfo(source).fileName(), bytes);
        bringBackTheEarlierTour();
    }
}

} // namespace
