// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/include/NexomapLib.h"
#include "nexomap/src/interface/Library.h"
#include "tests/nexomap/MadeUpTour.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

/// What the library says of one panorama and one link.
struct NodeReport
{
    std::string name, plan_name;
    Eigen::Vector3d position;
    Eigen::Vector2d vertex;
    double direction = 0;
    Eigen::Matrix3d rotation;
    int plan_x = -7, plan_y = -7;
};

struct MatchReport
{
    std::string name_0, name_1;
    double rot_0 = 0, rot_1 = 0, tilt_x0 = 0, tilt_x1 = 0, tilt_y0 = 0, icon_y0 = 0, icon_y1 = 0, spacing = 0;
    int mode = -1;
    double reliability = 0;
};

/// The library with a made-up tour behind it and a working folder of its own.
class LibraryTest : public ::testing::Test
{
protected:
    explicit LibraryTest(const std::string& folder_name = "nexomap test")
        : folder(folder_name)
    {}
    void TearDown() override { NexomapClean(); }

    void start(const MadeUpTour& tour) { startWith(tour.frontEnd()); }
    void startWith(const nexomap::FrontEnd& front_end)
    {
        nexomap::setFrontEnd(front_end);
        ASSERT_EQ(NexomapInit(folder.path().c_str(), 0), NEXOMAP_OK);
    }
    void link(const MadeUpTour& tour) { link(tour, tour.frontEnd()); }
    void link(const MadeUpTour& tour, const nexomap::FrontEnd& front_end)
    {
        startWith(front_end);
        ASSERT_EQ(NexomapReset(), NEXOMAP_OK);
        for (int k = 0; k < int(tour.stations.size()); ++k)
            ASSERT_EQ(NexomapAddNode(MadeUpTour::pathOf(k).c_str()), NEXOMAP_OK) << k;
        ASSERT_EQ(NexomapFinishAddNode(), NEXOMAP_OK);
    }
    static NodeReport node(int index)
    {
        NodeReport r;
        char name[16], plan[256];
        double p[3], v[2], m[9];
        EXPECT_EQ(NexomapGetPanoNodeParas(name, p, p + 1, p + 2, v, v + 1, &r.direction, &r.plan_x, &r.plan_y,
                                          plan, index),
                  NEXOMAP_OK);
        EXPECT_EQ(NexomapGetPanoNodeParasB(name, p, p + 1, p + 2, m, &r.plan_x, &r.plan_y, plan, index),
                  NEXOMAP_OK);
        r.name = name;
        r.plan_name = plan;
        r.position = {p[0], p[1], p[2]};
        r.vertex = {v[0], v[1]};
        r.rotation = Eigen::Map<Eigen::Matrix<double, 3, 3, Eigen::RowMajor>>(m);
        return r;
    }
    static MatchReport match(int index)
    {
        MatchReport r;
        char a[16], b[16];
        EXPECT_EQ(NexomapGetPanoMatchParas(a, b, &r.rot_0, &r.rot_1, &r.tilt_x0, &r.tilt_x1, &r.tilt_y0,
                                           &r.icon_y0, &r.icon_y1, &r.spacing, &r.mode, &r.reliability,
                                           index),
                  NEXOMAP_OK);
        r.name_0 = a;
        r.name_1 = b;
        return r;
    }
    /// Counts and indices fit each other, and every number is one.
    static void expectSound()
    {
        const int nodes = NexomapGetPanoNodeNum(), matches = NexomapGetPanoMatchNum();
        if (nodes == NEXOMAP_NOT_READY) return;
        int members = 0;
        for (int g = 0; g < NexomapGetPanoGroupNum(); ++g) {
            const int size = NexomapGetPanoNodeNumInOneGroup(g);
            if (g > 0) {
                EXPECT_LE(size, NexomapGetPanoNodeNumInOneGroup(g - 1));
            }
            members += size;
        }
        ASSERT_EQ(members, nodes);
        std::set<std::string> pairs;
        for (int m = 0; m < matches; ++m) {
            const MatchReport r = match(m);
            ASSERT_TRUE(pairs.insert(std::min(r.name_0, r.name_1) + std::max(r.name_0, r.name_1)).second);
            for (const double real :
                 {r.rot_0, r.rot_1, r.tilt_x0, r.tilt_x1, r.tilt_y0, r.icon_y0, r.icon_y1, r.spacing})
                ASSERT_TRUE(std::isfinite(real)) << r.name_0 << " " << r.name_1;
        }
        for (int n = 0; n < nodes; ++n)
            ASSERT_TRUE(node(n).position.allFinite() && node(n).rotation.allFinite());
    }
    static int indexOf(const MadeUpTour& tour, const std::string& name)
    {
        for (int k = 0; k < int(tour.stations.size()); ++k)
            if (tour.stations[k].name == name) return k;
        return -1;
    }
    static std::vector<NodeReport> nodes()
    {
        std::vector<NodeReport> all;
        for (int k = 0; k < NexomapGetPanoNodeNum(); ++k)
            all.push_back(node(k));
        return all;
    }
    static std::vector<MatchReport> matches()
    {
        std::vector<MatchReport> all;
        for (int k = 0; k < NexomapGetPanoMatchNum(); ++k)
            all.push_back(match(k));
        return all;
    }

    TemporaryFolder folder;
};

inline bool operator==(const MatchReport& a, const MatchReport& b)
{
    return a.name_0 == b.name_0 && a.name_1 == b.name_1 && a.rot_0 == b.rot_0 && a.rot_1 == b.rot_1 &&
           a.tilt_x0 == b.tilt_x0 && a.tilt_x1 == b.tilt_x1 && a.tilt_y0 == b.tilt_y0 &&
           a.icon_y0 == b.icon_y0 && a.icon_y1 == b.icon_y1 && a.spacing == b.spacing && a.mode == b.mode &&
           a.reliability == b.reliability;
}

inline bool operator==(const NodeReport& a, const NodeReport& b)
{
    return a.name == b.name && a.plan_name == b.plan_name && a.position == b.position &&
           a.vertex == b.vertex && a.direction == b.direction && a.rotation == b.rotation &&
           a.plan_x == b.plan_x && a.plan_y == b.plan_y;
}
