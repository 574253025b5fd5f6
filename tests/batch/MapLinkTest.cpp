// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The command "link --map" with a linking library that records.

#include "companions/batch/LinkCommand.h"
#include "tests/linking/support/RecordingLinker.h"
#include "tests/support/JpegTiles.h"
#include "tests/support/PnoParts.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

constexpr const char* kA = "AAAAAAAAAAAAAA";
constexpr const char* kB = "BBBBBBBBBBBBBB";

QString qs(const char* text)
{
    return QString::fromUtf8(text);
}

class LinkMap : public testing::Test
{
protected:
    LinkMap()
    {
        options.work = inFolder("工作 é");
        options.out = inFolder("tour.roa");
        options.report = inFolder("report.json");
        options.map = MapOptions();
        for (const char* identity : {kA, kB}) {
            PanoNodeParasB pose;
            qstrncpy(pose.name, identity, sizeof pose.name);
            linker.nodesB.push_back(pose);
        }
        linker.groups = {2};
    }

    QString inFolder(const std::string& name) const { return QString::fromStdString(m_folder.path(name)); }

    void panorama(const std::string& name, const char* identity, bool lidar)
    {
        pnotest::PnoOptions made;
        made.identity = identity;
        const pnotest::Bytes jpeg = pnotest::solidJpeg({90, 90, 90});
        made.tiles = [jpeg](int level, int, int) { return level == 0 ? jpeg : pnotest::Bytes{1, 2, 3, 4}; };
        if (lidar) made.depthTiles = pnotest::tinyTiles();
        options.panoramas << QString::fromStdString(m_folder.write(name, pnotest::panorama(made)));
    }

    int link()
    {
        testing::internal::CaptureStderr();
        const int status = runLink(options, linker);
        errors = testing::internal::GetCapturedStderr();
        return status;
    }

    void mergeLeaves(const QStringList& names)
    {
        linker.onCall = [this, names](const QString& call) {
            if (!call.startsWith(qs("mergePointCloud"))) return;
            for (const QString& name : names) {
                QFile file(options.work + qs("/Tmp/") + name);
                ASSERT_TRUE(file.open(QIODevice::WriteOnly));
                file.write("new");
            }
        };
    }

    QJsonObject report() const
    {
        QFile file(options.report);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return QJsonDocument::fromJson(file.readAll()).object();
    }

    pnotest::TemporaryFolder m_folder;
    LinkOptions options;
    RecordingLinker linker;
    std::string errors;
};

TEST_F(LinkMap, LinksThenMakesTheMapThenSavesAndReportsWhatItPutOut)
{
    panorama("客厅 1.pno", kA, true);
    panorama("b.pno", kB, true);
    options.map->fullCloud = true;
    mergeLeaves({qs("a-group.pts"), qs("a-color.png"), qs("a-00000000.tmp")});
    ASSERT_EQ(link(), ExitDone) << errors;
    EXPECT_EQ(errors, "");
    const QStringList commands = linker.commands();
    EXPECT_EQ(commands.mid(commands.indexOf(qs("finishAddNode"))),
              (QStringList{qs("finishAddNode"), qs("autoCreateMatch"), qs("mergePointCloud 1 1 1 2 1")}));

    const QString out = options.work + qs("/Out/");
    const QString table = out + qs("AAAAAAAAAAAAAA_BBBBBBBBBBBBBB_2.csv");
    EXPECT_EQ(report().value(qs("outputs")).toArray(),
              (QJsonArray{table, out + qs("a-color.png"), out + qs("a-group.pts")}));
    EXPECT_EQ(report().value(qs("stage")).toInt(), 2);
    for (const char* step : {"complete_links", "merge", "map_files"})
        EXPECT_TRUE(report().value(qs("seconds")).toObject().contains(qs(step))) << step;
    QFile poses(table);
    ASSERT_TRUE(poses.open(QIODevice::ReadOnly));
    EXPECT_THAT(poses.readAll().toStdString(), HasSubstr("1,AAAAAAAAAAAAAA,客厅 1,"));
    QFile tour(options.out);
    ASSERT_TRUE(tour.open(QIODevice::ReadOnly));
}

TEST_F(LinkMap, WithoutTheOptionNoMapIsMade)
{
    panorama("a.pno", kA, true);
    panorama("b.pno", kB, true);
    options.map.reset();
    ASSERT_EQ(link(), ExitDone);
    EXPECT_TRUE(linker.calls.filter(qs("mergePointCloud")).isEmpty());
    EXPECT_EQ(report().value(qs("stage")).toInt(), 1);
}

TEST_F(LinkMap, AMapOfPanoramasThatAreNotConnectedSaysSoAndGoesOn)
{
    panorama("a.pno", kA, true);
    panorama("b.pno", kB, true);
    linker.groups = {1, 1};
    ASSERT_EQ(link(), ExitDone);
    EXPECT_THAT(errors, HasSubstr("some panoramas are not connected"));
    EXPECT_EQ(report().value(qs("stage")).toInt(), 2);
}

TEST_F(LinkMap, AMapOfPanoramasWithoutLidarIsRefusedBeforeTheWork)
{
    panorama("a.pno", kA, false);
    panorama("b.pno", kB, false);
    EXPECT_EQ(link(), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("--map wants panoramas with lidar"));
    EXPECT_FALSE(linker.calls.contains(qs("finishAddNode")));
}

TEST_F(LinkMap, AMergeThatFailsIsSaidAndTheTourIsSavedAllTheSame)
{
    panorama("a.pno", kA, true);
    panorama("b.pno", kB, true);
    linker.status = -5;
    EXPECT_EQ(link(), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("the map cannot be made, status -5"));
    EXPECT_TRUE(QFile::exists(options.out));
    EXPECT_TRUE(QFile::exists(options.report));
}

Parsed<LinkOptions> parse(const QStringList& words)
{
    return parseLinkOptions(QStringList{qs("a.pno"), qs("--work"), qs("w"), qs("--out"), qs("t")} + words);
}

TEST(MapArguments, TheDefaultsAreAnIndoorSceneOfHighDensityWithoutExtraFiles)
{
    const Parsed<LinkOptions> parsed = parse({qs("--map"), qs("3d")});
    ASSERT_TRUE(parsed.options && parsed.options->map) << parsed.error.toStdString();
    EXPECT_EQ(parsed.options->map->mode, MapOptions::Cloud3D);
    EXPECT_EQ(parsed.options->map->scene, MapOptions::Indoor);
    EXPECT_EQ(parsed.options->map->density, MapOptions::High);
    EXPECT_FALSE(parsed.options->map->fullCloud);
    EXPECT_FALSE(parsed.options->map->binaryCloud);
}

TEST(MapArguments, EveryOption)
{
    const Parsed<LinkOptions> parsed = parse({qs("--map"), qs("2d"), qs("--scene"), qs("outdoor"),
                                              qs("--density"), qs("low"), qs("--pts"), qs("--bin")});
    ASSERT_TRUE(parsed.options && parsed.options->map) << parsed.error.toStdString();
    EXPECT_EQ(parsed.options->map->mode, MapOptions::Plan2D);
    EXPECT_EQ(parsed.options->map->scene, MapOptions::Outdoor);
    EXPECT_EQ(parsed.options->map->density, MapOptions::Low);
    EXPECT_TRUE(parsed.options->map->fullCloud);
    EXPECT_TRUE(parsed.options->map->binaryCloud);
    EXPECT_EQ(parse({qs("--map=2d"), qs("--density=mid")}).options->map->density, MapOptions::Mid);
}

TEST(MapArguments, WithoutMapThereIsNone)
{
    const Parsed<LinkOptions> parsed = parse({});
    ASSERT_TRUE(parsed.options);
    EXPECT_FALSE(parsed.options->map);
}

TEST(MapArguments, WhatIsWrongIsNamed)
{
    const struct
    {
        QStringList words;
        const char* said;
    } cases[] = {
        {{qs("--map"), qs("4d")}, "--map wants 2d or 3d"},
        {{qs("--map"), qs("2d"), qs("--scene"), qs("moon")}, "--scene wants indoor or outdoor"},
        {{qs("--map"), qs("2d"), qs("--density"), qs("")}, "--density wants high or mid or low"},
        {{qs("--pts")}, "--pts goes with --map"},
        {{qs("--density"), qs("low")}, "--density goes with --map"},
        {{qs("--map")}, "map"},
    };
    for (const auto& wrong : cases) {
        const Parsed<LinkOptions> parsed = parse(wrong.words);
        EXPECT_FALSE(parsed.options) << wrong.said;
        EXPECT_THAT(parsed.error.toStdString(), HasSubstr(wrong.said));
    }
}

} // namespace
