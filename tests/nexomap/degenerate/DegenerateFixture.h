// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/ScanAlignment.h"
#include "nexomap/src/pair/Sphere.h"
#include "tests/nexomap/degenerate/BoxPlace.h"
#include "tests/nexomap/LibraryFixture.h"

/// Pictures of box places through the whole library: real features, real matching, no files of panoramas.
class Degenerate : public LibraryTest
{
protected:
    struct Error
    {
        double degrees = 180.0, metres = 1e9;
        double direction_deg = 180.0; ///< of the way from one to the other
    };

    /// Takes a picture. @return the station's index
    int take(const BoxPlace& place, const nexomap::RigidPose& world_from_pano, bool lidar, int width = 1024)
    {
        return add(place.shoot(world_from_pano, width), world_from_pano, lidar);
    }
    int add(const MadeUpRoom::Shot& shot, const nexomap::RigidPose& world_from_pano, bool lidar)
    {
        return add(panoramaOf(MadeUpTour::nameOf(int(m_truth.size())), shot, lidar), world_from_pano);
    }
    int add(std::shared_ptr<nexomap::Panorama> panorama, const nexomap::RigidPose& world_from_pano)
    {
        const int index = int(m_truth.size());
        panorama->id = MadeUpTour::nameOf(index);
        panorama->path = MadeUpTour::pathOf(index);
        m_panoramas.push_back(std::move(panorama));
        m_truth.push_back(world_from_pano);
        return index;
    }

    /// Adds all in the given order (empty: as they were taken) and finishes.
    void linkAll(std::vector<int> order = {})
    {
        if (order.empty())
            for (int k = 0; k < int(m_truth.size()); ++k)
                order.push_back(k);
        startWith(frontEnd());
        ASSERT_EQ(NexomapReset(), NEXOMAP_OK);
        for (const int k : order)
            ASSERT_EQ(NexomapAddNode(MadeUpTour::pathOf(k).c_str()), NEXOMAP_OK) << k;
        ASSERT_EQ(NexomapFinishAddNode(), NEXOMAP_OK);
        for (const MatchReport& m : matches())
            std::printf("  %s %s mode %d spacing %.3f reliability %.3f: off by %.3f degrees, %.3f m\n",
                        m.name_0.c_str() + 12, m.name_1.c_str() + 12, m.mode, m.spacing, m.reliability,
                        errorOf(m).degrees, errorOf(m).metres);
        std::printf("  %d panoramas, %d groups\n", NexomapGetPanoNodeNum(), NexomapGetPanoGroupNum());
    }

    static int stationOf(const std::string& name) { return (name[12] - 'A') * 26 + name[13] - 'A'; }
    nexomap::RigidPose found(int station) const
    {
        for (const NodeReport& n : nodes())
            if (stationOf(n.name) == station) return {n.rotation, n.position};
        ADD_FAILURE() << "station " << station << " is not in the tour";
        return {};
    }
    static nexomap::RigidPose between(const nexomap::RigidPose& a, const nexomap::RigidPose& b)
    {
        return {a.R.transpose() * b.R, a.R.transpose() * (b.t - a.t)};
    }
    Error errorOf(int a, int b) const
    {
        const nexomap::RigidPose is = between(found(a), found(b)), truth = between(m_truth[a], m_truth[b]);
        Error error;
        error.degrees = Eigen::AngleAxisd(is.R.transpose() * truth.R).angle() / nexomap::kDegree;
        error.metres = (is.t - truth.t).norm();
        error.direction_deg = std::atan2(is.t.cross(truth.t).norm(), is.t.dot(truth.t)) / nexomap::kDegree;
        return error;
    }
    Error errorOf(const MatchReport& m) const { return errorOf(stationOf(m.name_0), stationOf(m.name_1)); }
    bool linked(int a, int b) const
    {
        for (const MatchReport& m : matches()) {
            const int i = stationOf(m.name_0), j = stationOf(m.name_1);
            if ((i == a && j == b) || (i == b && j == a)) return true;
        }
        return false;
    }
    double reliability(int a, int b) const
    {
        for (const MatchReport& m : matches()) {
            const int i = stationOf(m.name_0), j = stationOf(m.name_1);
            if ((i == a && j == b) || (i == b && j == a)) return m.reliability;
        }
        return 0.0;
    }
    /// Links farther off than any noise.
    int wrongLinks(double degrees, double metres) const
    {
        int wrong = 0;
        for (const MatchReport& m : matches()) {
            const Error error = errorOf(m);
            wrong += error.degrees > degrees || error.metres > metres;
        }
        return wrong;
    }
    nexomap::FrontEnd frontEnd() const
    {
        const auto panoramas = m_panoramas;
        const auto of = [panoramas](const std::string& path) -> std::shared_ptr<const nexomap::Panorama> {
            for (const auto& panorama : panoramas)
                if (panorama->path == path) return panorama;
            return nullptr;
        };
        nexomap::FrontEnd front;
        front.identify = [of](const std::string& path, std::string* error) -> std::optional<std::string> {
            const auto panorama = of(path);
            if (panorama) return panorama->id;
            *error = "no such file";
            return std::nullopt;
        };
        front.load = [of](const std::string& path, std::string* error) {
            const auto panorama = of(path);
            if (!panorama) *error = "no such file";
            return panorama;
        };
        front.match = nexomap::matchPair;
        front.align = nexomap::alignScans;
        front.colours = [](const nexomap::Panorama&) { return nexomap::ColourPicture(); };
        return front;
    }

    std::vector<std::shared_ptr<nexomap::Panorama>> m_panoramas;
    std::vector<nexomap::RigidPose> m_truth; ///< world_from_pano
};

/// A furnished room of 6 x 4.5 m whose floor is z = 0.
inline BoxPlace furnishedRoom(std::uint32_t key = 100)
{
    BoxPlace place;
    place.room({0, 0, 0}, {6, 4.5, 2.7}, key);
    place.box({1.0, 0.0, 0.0}, {2.2, 0.5, 1.8}, key + 10);
    place.box({4.0, 3.6, 0.0}, {5.5, 4.5, 0.8}, key + 11);
    place.box({2.8, 1.8, 0.0}, {3.6, 2.5, 0.75}, key + 12);
    return place;
}
