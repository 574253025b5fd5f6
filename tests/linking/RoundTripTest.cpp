// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Save, open, save: the second file is the first, byte for byte.

#include "project/SaveTour.h"
#include "project/TourXmlReader.h"
#include "tests/linking/support/MadeUpTours.h"
#include "tests/linking/support/TourFolders.h"

#include <gtest/gtest.h>

namespace {

/// What the format does not carry as it stands, and how it comes back. Nothing else may change.
/// - A link's mode: 2 stays; any other is 0 where the link has match data and 1 where it has none.
/// - A text that holds "&lt;", "&gt;" or "&amp;" as characters comes back with "<", ">" or "&".
/// @return whether there was anything to change
bool applyPermittedChanges(RoamProject& project)
{
    bool changed = false;
    for (const auto& link : project.links) {
        const bool hasData = !link->match_path_0.isEmpty() || !link->match_path_1.isEmpty();
        const qint32 mode = link->mode == LinkByPose ? LinkByPose : hasData ? LinkMatched : LinkByHand;
        changed = changed || mode != link->mode;
        link->mode = mode;
    }
    for (const auto& node : project.panoramas) {
        for (InfoHotspot& info : node->infos) {
            const QString content = tourxml::unescapedContent(info.content);
            changed = changed || content != info.content;
            info.content = content;
        }
    }
    return changed;
}

class RoundTrip : public TourFolders, public testing::TestWithParam<unsigned>
{
protected:
    QByteArray saved(RoamProject& which, int entry)
    {
        const QString path = top() + QStringLiteral("saved.roa");
        const SaveResult result = saveTour(which, entry, path);
        EXPECT_TRUE(result) << result.detail.toStdString();
        return bytesOf(path);
    }

    /// The bytes of `first`, opened and saved again.
    QByteArray savedAgain(const QByteArray& first)
    {
        clearProject(project);
        QDir(working()).removeRecursively();
        QDir().mkpath(working());
        const OpenResult opened = openBytes(first);
        EXPECT_NE(opened.outcome, OpenOutcome::Failed)
            << opened.path.toStdString() << ": " << opened.detail.toStdString();
        return saved(project, project.entry_index);
    }
};

TEST_P(RoundTrip, AHundredProjectsAreTheSameFileAfterSavingOpeningAndSaving)
{
    constexpr unsigned kProjects = 100;
    int unchanged = 0;
    for (unsigned i = 0; i < kProjects; ++i) {
        MadeUpTour made(GetParam() * kProjects + i, top() + QStringLiteral("sources/"));
        const int entry = made.entrySelector();
        QByteArray expected = saved(made.project, entry);
        const QByteArray second = savedAgain(expected);
        if (applyPermittedChanges(made.project))
            expected = saved(made.project, entry);
        else
            ++unchanged;
        ASSERT_TRUE(second == expected) << "project " << GetParam() * kProjects + i;
        ASSERT_EQ(project.panoramas.size(), made.project.panoramas.size());
    }
    EXPECT_GT(unchanged, 10);
}

INSTANTIATE_TEST_SUITE_P(Projects, RoundTrip, testing::Range(0u, 10u));

using RoundTripOnce = RoundTrip;

TEST_P(RoundTripOnce, TwoSourceFilesOfOneNameAreToldApartByNameFromTheSecondSaveOn)
{
    MadeUpTour made(1, top() + QStringLiteral("sources/"));
    made.project.panoramas.clear();
    made.project.links.clear();
    made.addPanorama(QStringLiteral("one/"), QStringLiteral("room"));
    made.addPanorama(QStringLiteral("two/"), QStringLiteral("room"));
    const QByteArray first = saved(made.project, 0);
    const QByteArray second = savedAgain(first);
    EXPECT_EQ(node(0).base_name, QStringLiteral("room"));
    EXPECT_EQ(node(1).base_name, QStringLiteral("room"));
    EXPECT_EQ(bytesOf(node(0).file_path), bytesOf(made.project.panoramas[0]->file_path));
    EXPECT_EQ(bytesOf(node(1).file_path), bytesOf(made.project.panoramas[1]->file_path));

    QByteArray renamed = first;
    const QByteArray name("room.pno");
    const int at = renamed.lastIndexOf(name);
    ASSERT_GT(at, 0);
    renamed.replace(at, name.size() + 2, "2_" + name);
    EXPECT_TRUE(second == renamed);
}

INSTANTIATE_TEST_SUITE_P(Names, RoundTripOnce, testing::Values(0u));

} // namespace
