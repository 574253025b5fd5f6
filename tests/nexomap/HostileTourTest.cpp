// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Saved tours whose match files or numbers were bent: each call is refused with the state as before, or taken
// and everything goes on working.

#include "tests/nexomap/LibraryFixture.h"
#include "tests/nexomap/RandomCalls.h"

using namespace nexomap;

namespace {

constexpr int kTours = 8;

class HostileTour : public LibraryTest, public ::testing::WithParamInterface<RandomRanges>
{
protected:
    HostileTour()
        : tour(randomTour(GetParam()))
    {}
    void SetUp() override
    {
        link(tour, randomFrontEnd(tour, GetParam()));
        saved_nodes = nodes();
        saved_matches = matches();
        ASSERT_GE(saved_matches.size(), 5u);
        for (const std::string& name : folder.names())
            if (name.find(".dat") != std::string::npos) files[name] = readFile(folder / name);
        ASSERT_GE(files.size(), 10u);
    }

    /// Opens a bent tour over and over: `bend` changes nodes, matches and files, which are as saved each
    /// time.
    template <class Bend>
    void forEachTour(const Bend& bend)
    {
        const std::vector<NodeReport> whole_nodes = saved_nodes;
        const std::vector<MatchReport> whole_matches = saved_matches;
        const std::map<std::string, Bytes> whole_files = files;
        const int seed = firstSeed(1);
        const int count = kTours * sequences();
        for (int k = 0; k < count && !HasFailure(); ++k) {
            SCOPED_TRACE("tour " + std::to_string(seed + k));
            BentBytes dice{unsigned(seed + k)};
            bend(dice);
            ASSERT_NO_FATAL_FAILURE(openAndWork(dice));
            saved_nodes = whole_nodes;
            saved_matches = whole_matches;
            files = whole_files;
        }
        EXPECT_GT(m_refused + m_taken, count);
    }
    std::string anyFile(BentBytes& dice, const std::string& ending)
    {
        std::vector<std::string> names;
        for (const auto& [name, bytes] : files)
            if (name.find(ending) != std::string::npos) names.push_back(name);
        return names[dice.below(names.size())];
    }

    MadeUpTour tour;
    std::vector<NodeReport> saved_nodes;
    std::vector<MatchReport> saved_matches;
    std::map<std::string, Bytes> files;

private:
    void openAndWork(BentBytes& dice)
    {
        ASSERT_EQ(NexomapReset(), NEXOMAP_OK);
        for (const std::string& name : folder.names())
            std::filesystem::remove(folder / name);
        for (const auto& [name, bytes] : files)
            writeFile(folder / name, bytes);
        for (const NodeReport& n : saved_nodes)
            loaded(NexomapLoadPanoNode(MadeUpTour::pathOf(indexOf(tour, n.name)).c_str(), n.position.x(),
                                       n.position.y(), n.position.z(), n.vertex.x(), n.vertex.y(),
                                       n.direction, n.plan_x, n.plan_y, n.plan_name.c_str()));
        for (const MatchReport& m : saved_matches) {
            const int before = NexomapGetPanoMatchNum();
            const int status = NexomapLoadPanoMatch(m.name_0.c_str(), m.name_1.c_str(), m.rot_0, m.rot_1,
                                                    m.tilt_x0, m.tilt_x1, m.tilt_y0, m.icon_y0, m.icon_y1,
                                                    m.spacing, m.mode, m.reliability);
            loaded(status);
            EXPECT_EQ(NexomapGetPanoMatchNum(), before + (status == NEXOMAP_OK));
        }
        ASSERT_NO_FATAL_FAILURE(expectSound());
        EXPECT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
        ASSERT_NO_FATAL_FAILURE(expectSound());
        EXPECT_EQ(NexomapAutoCreatePanoMatch(), NEXOMAP_OK);
        if (const int count = NexomapGetPanoMatchNum()) {
            const MatchReport any = match(int(dice.below(std::size_t(count))));
            EXPECT_EQ(NexomapDrawPanoMatchPng(any.name_0.c_str(), any.name_1.c_str()), NEXOMAP_OK);
            EXPECT_EQ(NexomapDeletePanoMatch(any.name_0.c_str(), any.name_1.c_str()), NEXOMAP_OK);
        }
        if (dice.below(8) == 0) {
            EXPECT_NE(NexomapMergePointCloud(1, 3, 1, 0, 1), NEXOMAP_INTERNAL);
        }
        EXPECT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
        ASSERT_NO_FATAL_FAILURE(expectSound());
    }
    void loaded(int status)
    {
        EXPECT_TRUE(status == NEXOMAP_OK || status == NEXOMAP_BAD_FILE || status == NEXOMAP_BAD_ARGUMENT ||
                    status == NEXOMAP_UNKNOWN_NAME)
            << status;
        ++(status == NEXOMAP_OK ? m_taken : m_refused);
    }

    int m_taken = 0, m_refused = 0;
};

/// All reals of a measured pose but those of its rotation, which are refused one by one.
void addReals(PairPose& pose, std::vector<double*>* reals)
{
    for (double& real : pose.t_0_from_1)
        reals->push_back(&real);
    for (int k = 0; k < 36; ++k)
        reals->push_back(pose.information.data() + k);
    reals->push_back(&pose.reliability);
    for (LengthTie& tie : pose.ties)
        for (double* const real : {&tie.log_ratio, &tie.sigma})
            reals->push_back(real);
}

TEST_P(HostileTour, BentMatchFilesAreRefusedOrDoNoHarm)
{
    forEachTour([&](BentBytes& dice) {
        for (int times = 0; times < 3; ++times) {
            Bytes& bytes = files[anyFile(dice, ".dat")];
            bytes = dice.bend(bytes);
            if (dice.below(3) > 0) BentBytes::sealMatchFile(&bytes);
        }
    });
}

TEST_P(HostileTour, MatchFilesWithNumbersOfAnySizeAreRefusedOrDoNoHarm)
{
    forEachTour([&](BentBytes& dice) {
        for (int times = 0; times < 3; ++times) {
            Bytes& bytes = files[anyFile(dice, "_0.dat")];
            MatchRecord record;
            try {
                record = decodeMatchRecord(bytes);
            } catch (const Failure&) { // bent before
                continue;
            }
            if (dice.below(4) == 0)
                record.link.pose.ties.push_back({MadeUpTour::nameOf(int(dice.below(8))),
                                                 MadeUpTour::nameOf(int(dice.below(8))), 0.1, 0.02});
            if (dice.below(4) == 0) record.link.pose.matches = int(dice.below(5)) - 2;
            if (dice.below(4) == 0) record.link.pose.metric = !record.link.pose.metric;
            if (dice.below(4) == 0) record.link.pose.rotation_only = !record.link.pose.rotation_only;
            if (dice.below(4) == 0)
                record.companions.insert(record.companions.end(), dice.below(200), record.link);
            for (StoredPose& companion : record.companions) {
                if (dice.below(4) == 0) companion.mode = int(dice.below(3));
                if (dice.below(4) == 0) companion.name_0 = MadeUpTour::nameOf(int(dice.below(8)));
                if (dice.below(4) == 0) companion.name_1 = MadeUpTour::nameOf(int(dice.below(8)));
            }
            std::vector<double*> reals;
            addReals(record.link.pose, &reals);
            for (StoredPose& companion : record.companions)
                addReals(companion.pose, &reals);
            for (StoredStation* const station : {&record.station_0, &record.station_1}) {
                for (double& real : station->world_from_pano.t)
                    reals.push_back(&real);
                reals.push_back(&station->height_m);
            }
            *reals[dice.below(reals.size())] = dice.real();
            if (dice.below(2)) *reals[dice.below(3)] = dice.real(); // where the other panorama stands
            bytes = encodeMatchRecord(record);
        }
    });
}

TEST_P(HostileTour, FeaturesThatLieAreRefusedOrDoNoHarm)
{
    forEachTour([&](BentBytes& dice) {
        for (int times = 0; times < 3; ++times) {
            const std::string name = anyFile(dice, "_1.dat");
            const std::string a = name.substr(0, 14), b = name.substr(15, 14);
            std::vector<PairInlier> inliers;
            try {
                inliers = decodeInliers(files[name], a, b);
            } catch (const Failure&) { // holds a lie already
                continue;
            }
            for (std::size_t k = dice.below(40); k > 0 && !inliers.empty(); --k) {
                PairInlier& one = inliers[dice.below(inliers.size())];
                PairInlier& other = inliers[dice.below(inliers.size())];
                switch (dice.below(6)) {
                case 0:
                    one = other;
                    break;
                case 1:
                    one.bearing_0 = one.bearing_1;
                    break;
                case 2:
                    one.bearing_0 = -other.bearing_1;
                    break;
                case 3:
                    one.range_0_m = float(std::abs(dice.real()));
                    break;
                case 4:
                    one.bearing_1 = -one.bearing_1;
                    break;
                case 5:
                    one.range_1_m = one.range_0_m = 1e-38f;
                    break;
                }
            }
            if (dice.below(4) == 0) inliers.resize(dice.below(8));
            files[name] = encodeInliers(a, b, inliers);
        }
    });
}

TEST_P(HostileTour, SavedNumbersOfAnySizeAreRefusedOrDoNoHarm)
{
    forEachTour([&](BentBytes& dice) {
        if (dice.below(2) == 0)
            for (auto file = files.begin(); file != files.end();)
                file = dice.below(2) ? files.erase(file) : std::next(file);
        for (std::size_t times = 1 + dice.below(4); times > 0; --times) {
            NodeReport& n = saved_nodes[dice.below(saved_nodes.size())];
            MatchReport& m = saved_matches[dice.below(saved_matches.size())];
            double* const reals[] = {&n.position[0], &n.position[1], &n.position[2], &n.vertex[0],
                                     &n.vertex[1],   &n.direction,   &m.rot_0,       &m.rot_1,
                                     &m.tilt_x0,     &m.tilt_x1,     &m.tilt_y0,     &m.icon_y0,
                                     &m.icon_y1,     &m.spacing,     &m.reliability, &m.spacing};
            *reals[dice.below(std::size(reals))] = dice.real();
            m.mode = int(dice.below(3));
        }
    });
}

std::string nameOf(const ::testing::TestParamInfo<RandomRanges>& info)
{
    const char* const names[] = {"All", "None", "EverySecond"};
    return names[int(info.param)];
}

INSTANTIATE_TEST_SUITE_P(Ranges, HostileTour,
                         ::testing::Values(RandomRanges::All, RandomRanges::None, RandomRanges::EverySecond),
                         nameOf);

} // namespace
