// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Which files an upload sends beside the panoramas.

#include "publish/FileLists.h"
#include "tests/publish/support/Tours.h"

#include <gtest/gtest.h>

namespace {

QString path(const char* name)
{
    return QStringLiteral("/tmp/") + QLatin1String(name);
}

PhotoHotspot photo(const QString& file)
{
    PhotoHotspot hotspot;
    hotspot.photo_path = file;
    return hotspot;
}

TEST(ModelFiles, BothLevelsOfEachLinkInOrderWithoutTheEmptyOnes)
{
    RoamProject project;
    fillTour(project, 4, 3);
    project.links[0]->match_path_0 = path("a0");
    project.links[0]->match_path_1 = path("a1");
    project.links[2]->match_path_1 = path("c1");
    EXPECT_EQ(publish::modelFiles(project), (QStringList{path("a0"), path("a1"), path("c1")}));
}

TEST(ModelFiles, RepetitionsStay)
{
    RoamProject project;
    fillTour(project, 2, 1);
    project.links[0]->match_path_0 = project.links[0]->match_path_1 = path("same");
    EXPECT_EQ(publish::modelFiles(project), (QStringList{path("same"), path("same")}));
}

TEST(PhotoFiles, PhotosComeFirstWithRepetitionsThenPlansWithout)
{
    RoamProject project;
    fillTour(project, 3, 0);
    project.panoramas[0]->photos = {photo(path("one")), photo(path("two"))};
    project.panoramas[1]->photos = {photo(path("one"))};
    project.panoramas[0]->plan_src = path("plan");
    project.panoramas[1]->plan_src = path("two");
    project.panoramas[2]->plan_src = path("other plan");
    EXPECT_EQ(publish::photoFiles(project),
              (QStringList{path("one"), path("two"), path("one"), path("plan"), path("other plan")}));
}

TEST(PhotoFiles, TwoPanoramasSharingOnePlanSendItOnce)
{
    RoamProject project;
    fillTour(project, 2, 0);
    project.panoramas[0]->plan_src = project.panoramas[1]->plan_src = path("plan");
    EXPECT_EQ(publish::photoFiles(project), QStringList{path("plan")});
}

TEST(PhotoFiles, AHotspotWithoutAPhotoAddsNone)
{
    RoamProject project;
    fillTour(project, 1, 0);
    project.panoramas[0]->photos = {photo(QString())};
    EXPECT_EQ(publish::photoFiles(project), QStringList());
}

} // namespace
