// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Panorama files bent at random and given to the library: refused, or linked and merged with what is left.

#include "tests/nexomap/LibraryFixture.h"
#include "tests/nexomap/pair/RoomFile.h"
#include "tests/nexomap/RandomCalls.h"

#include <opencv2/imgproc.hpp>

using namespace nexomap;

namespace {

constexpr int kFiles = 1; // each takes seconds

class HostilePanorama : public LibraryTest
{
protected:
    void SetUp() override
    {
        const MadeUpRoom room;
        pnotest::PnoOptions options = roomFile(room.shoot(standAt(1.5, 2.5, 1.5, 0.4), 2048), true);
        options.identity = "AAAAAAAAAAAAAA";
        whole = pnotest::parts(options);
        options = roomFile(room.shoot(standAt(3.9, 1.2, 1.5, -2.0), 2048), true);
        options.identity = "AAAAAAAAAAAAAB";
        writeFile(folder / "other.pno", pnotest::panorama(options));
        // The other one's features need no second look.
        FrontEnd front = panoramaFileFrontEnd();
        front.load = [this, load = front.load](const std::string& path, std::string* error) {
            if (path != at("other.pno")) return load(path, error);
            if (!other) other = load(path, error);
            return other;
        };
        startWith(front);
    }
    std::string at(const std::string& name) const { return (folder / name).string(); }

    /// @return share of the files that were taken
    template <class Bend>
    double forEachFile(const Bend& bend)
    {
        int taken = 0;
        const int seed = firstSeed(1);
        for (int k = 0; k < kFiles * sequences() && !HasFailure(); ++k) {
            SCOPED_TRACE("file " + std::to_string(seed + k));
            BentBytes dice{unsigned(seed + k)};
            writeFile(folder / "bent.pno", bend(dice));
            work(&taken);
        }
        return double(taken) / (kFiles * sequences());
    }

    pnotest::PnoParts whole;
    std::shared_ptr<const Panorama> other;

private:
    void work(int* taken)
    {
        ASSERT_EQ(NexomapReset(), NEXOMAP_OK);
        ASSERT_EQ(NexomapAddNode(at("other.pno").c_str()), NEXOMAP_OK);
        const int status = NexomapAddNode(at("bent.pno").c_str());
        EXPECT_TRUE(status == NEXOMAP_OK || status == NEXOMAP_BAD_FILE || status == NEXOMAP_DUPLICATE)
            << status;
        *taken += status == NEXOMAP_OK;
        ASSERT_EQ(NexomapFinishAddNode(), NEXOMAP_OK);
        ASSERT_NO_FATAL_FAILURE(expectSound());
        EXPECT_EQ(NexomapGetPanoNodeNum(), status == NEXOMAP_OK ? 2 : 1);
        EXPECT_EQ(NexomapMergePointCloud(1, 3, 1, 0, 1), NEXOMAP_OK);
        EXPECT_EQ(NexomapRelocateAll(), NEXOMAP_OK);
        ASSERT_NO_FATAL_FAILURE(expectSound());
    }
};

TEST_F(HostilePanorama, BentBytesAreRefusedOrDoNoHarm)
{
    const Bytes bytes = whole.bytes();
    forEachFile([&](BentBytes& dice) {
        if (dice.below(2)) return dice.bend(bytes);
        // The small blocks are where a bent bit matters.
        Bytes bent = bytes;
        constexpr std::size_t kBlocks = 1200;
        const Bytes start = dice.bend(Bytes(bytes.begin(), bytes.begin() + kBlocks));
        std::copy_n(start.begin(), std::min(start.size(), kBlocks), bent.begin());
        return bent;
    });
}

TEST_F(HostilePanorama, TilesThatLieAboutTheirPlaceAndSizeDoNoHarm)
{
    forEachFile([&](BentBytes& dice) {
        pnotest::PnoParts bent = whole;
        constexpr std::uint32_t kNumbers[] = {0, 1, 7, 70000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFF8, 0xFFFFFFFF};
        for (std::vector<pno::TileRecord>* const directory : {&bent.tiles, &bent.depthTiles})
            for (std::size_t times = dice.below(60); times > 0; --times) {
                pno::TileRecord& tile = (*directory)[dice.below(directory->size())];
                (dice.below(2) ? tile.offset : tile.size) = kNumbers[dice.below(std::size(kNumbers))];
            }
        return bent.bytes();
    });
}

TEST_F(HostilePanorama, RangesThatAreNoneDoNoHarm)
{
    MadeUpRoom::Shot shot = MadeUpRoom().shoot(standAt(1.5, 2.5, 1.5, 0.4), 2048);
    const cv::Mat1w ranges = shot.range_mm;
    const double taken = forEachFile([&](BentBytes& dice) {
        shot.range_mm = ranges.clone();
        for (std::size_t times = 1 + dice.below(6); times > 0; --times) {
            const cv::Rect any(int(dice.below(1024)), int(dice.below(512)), 1 + int(dice.below(1024)),
                               1 + int(dice.below(512)));
            constexpr int kSteps[] = {0, 1, 2, 100, 30000, 65535};
            if (dice.below(2))
                shot.range_mm(any).setTo(kSteps[dice.below(std::size(kSteps))]);
            else
                cv::randu(shot.range_mm(any), 0, kSteps[1 + dice.below(std::size(kSteps) - 1)]);
        }
        pnotest::PnoOptions options = roomFile(shot, true);
        options.identity = "AAAAAAAAAAAAAA";
        const std::uint32_t unit = std::uint32_t(dice.below(3) ? 1000 : dice.below(120000));
        for (int k = 0; k < 4; ++k)
            options.extra[std::size_t(4 + k)] = std::uint8_t(unit >> (8 * k));
        return pnotest::panorama(options);
    });
    EXPECT_EQ(taken, 1.0) << "the picture is whole";
}

} // namespace
