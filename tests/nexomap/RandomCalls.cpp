// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/nexomap/RandomCalls.h"

#include "nexomap/include/NexomapLib.h"
#include "nexomap/src/Failure.h"

#include <cstdlib>

using namespace nexomap;

namespace {

constexpr int kStations = 7;

/// The points that the made-up tour's pairs match, as features of every panorama.
Features featuresOf(const MadeUpTour& tour, int station)
{
    Features features;
    const PairPose some = tour.pairPose(station, (station + 1) % kStations);
    for (std::size_t k = 0; k < some.inliers.size(); ++k) {
        features.bearings.push_back(some.inliers[k].bearing_0);
        features.ranges_m.push_back(0.f);
        features.scales.push_back(0.01f);
        features.angles_rad.push_back(0.1f);
        std::mt19937 look(unsigned(k) + 1);
        for (int byte = 0; byte < 128; ++byte)
            features.descriptors.push_back(std::uint8_t(look() % 24));
    }
    return features;
}

FrontEnd withFeatures(const MadeUpTour& tour)
{
    FrontEnd front = tour.frontEnd();
    front.load = [tour, load = front.load](const std::string& path, std::string* error) {
        const auto panorama = load(path, error);
        if (!panorama) return panorama;
        auto filled = std::make_shared<Panorama>(*panorama);
        filled->features = featuresOf(tour, panorama->id.back() - 'A');
        return std::shared_ptr<const Panorama>(filled);
    };
    // Too few of the matches are shared by two pairs to tell their lengths: that is what the features are
    // for.
    front.match = [match = front.match](const Panorama& p, const Panorama& q) {
        auto pose = match(p, q);
        if (!pose) return pose;
        std::mt19937 random(unsigned(p.id.back()) * 31u + unsigned(q.id.back()));
        std::vector<PairInlier> some;
        for (const PairInlier& inlier : pose->inliers)
            if (random() % 4 == 0) some.push_back(inlier);
        pose->inliers = some;
        return pose;
    };
    return front;
}

int fromEnvironment(const char* name, int otherwise)
{
    const char* const text = std::getenv(name);
    return text ? std::atoi(text) : otherwise;
}

struct SavedNode
{
    char name[16], plan[256];
    double position[3], vertex[2], direction;
    int plan_x, plan_y;
};

struct SavedMatch
{
    char name_0[16], name_1[16];
    double values[8], reliability;
    int mode;
};

} // namespace

int sequences()
{
    return fromEnvironment("NEXOMAP_TEST_SEQUENCES", 1);
}

int firstSeed(int otherwise)
{
    return fromEnvironment("NEXOMAP_TEST_SEED", otherwise);
}

MadeUpTour randomTour(RandomRanges ranges)
{
    MadeUpTour tour;
    tour.half_width_m = 9;
    tour.half_depth_m = 4;
    tour.walls = {{0, -0.5, 0.5}};
    tour.lidar = ranges != RandomRanges::None;
    for (int k = 0; k < kStations; ++k)
        tour.add(2.3 * k - 7.0, k % 3 - 1.0, 0.9 * k);
    return tour;
}

FrontEnd randomFrontEnd(const MadeUpTour& tour, RandomRanges ranges)
{
    switch (ranges) {
    case RandomRanges::None:
        return withFeatures(tour);
    case RandomRanges::EverySecond:
        return everySecondRanged(tour);
    case RandomRanges::All:
        break;
    }
    return tour.frontEnd();
}

int RandomCalls::next()
{
    const std::string a = anyName(), b = anyName();
    switch (m_dice.below(24)) {
    case 0:
        return oneIn(6) ? NexomapReset() : NexomapFinishAddNode();
    case 1:
    case 2:
        return NexomapAddNode(anyPath().c_str());
    case 3:
    case 4:
        return NexomapFinishAddNode();
    case 5:
        return NexomapAddPanoMatch(a.c_str(), b.c_str());
    case 6:
    case 7:
    case 8:
        return NexomapAddPanoLinkPair(a.c_str(), b.c_str(), anyAngle(), anyAngle(), anyAngle(), anyAngle());
    case 9:
        return NexomapAnalyzePanoMatchParas(a.c_str(), b.c_str());
    case 10:
        return NexomapRelocateAll();
    case 11:
        return NexomapDeletePanoMatch(a.c_str(), b.c_str());
    case 12:
        return oneIn(4) ? NexomapDrawPanoMatchPng(a.c_str(), b.c_str()) : NEXOMAP_OK;
    case 13:
        return NexomapAutoCreatePanoMatch();
    case 14:
        return std::min(0, NexomapGetPanoNodeNumInOneGroup(int(m_dice.below(4)) - 1));
    case 15:
    case 16:
        return loadNode();
    case 17:
    case 18:
        return loadMatch();
    case 19:
        if (!m_cleaned && !oneIn(20)) return NEXOMAP_OK;
        m_cleaned = false;
        return NexomapInit(m_folder.c_str(), 0);
    case 20:
        return linkByHand();
    case 21:
        return reopen();
    case 22:
        return oneIn(8) ? merge() : NEXOMAP_OK;
    default:
        if (!oneIn(40)) return std::min(0, NexomapGetPanoGroupNum());
        m_cleaned = true;
        return NexomapClean();
    }
}

std::string RandomCalls::anyName()
{
    char name[16], plan[256];
    double v[9];
    int plan_x, plan_y;
    const int count = NexomapGetPanoNodeNum();
    const bool there = count > 0 && !oneIn(12) &&
                       NexomapGetPanoNodeParasB(name, v, v, v, v, &plan_x, &plan_y, plan,
                                                int(m_dice.below(std::size_t(count)))) == NEXOMAP_OK;
    return there ? name : MadeUpTour::nameOf(anyStation());
}

/// Picks what both stations see, or, as often, anything.
int RandomCalls::linkByHand()
{
    const std::string a = anyName(), b = anyName();
    if (const int status = NexomapAddPanoMatch(a.c_str(), b.c_str())) return status;
    const std::size_t last = m_tour.stations.size() - 1;
    const Pose& from = m_tour.stations[std::min(last, std::size_t(a.back() - 'A'))].pose;
    const Pose& to = m_tour.stations[std::min(last, std::size_t(b.back() - 'A'))].pose;
    const bool honest = oneIn(2);
    for (std::size_t picks = 3 + m_dice.below(5); picks > 0; --picks) {
        const double azimuth = anyAngle(), polar = honest ? 1.0 + 0.3 * anyAngle() : anyAngle();
        const Eigen::Vector3d u = directionFromAngles(azimuth, polar);
        const Eigen::Vector3d v = to.inverse() * (from * (m_tour.rayRange(from, u) * u));
        const bool sound = honest && v.allFinite();
        NexomapAddPanoLinkPair(a.c_str(), b.c_str(), azimuth, polar, sound ? azimuthOf(v) : anyAngle(),
                               sound ? polarOf(v) : anyAngle());
    }
    return NexomapAnalyzePanoMatchParas(a.c_str(), b.c_str());
}

int RandomCalls::loadNode()
{
    const auto number = [this] { return oneIn(20) ? m_dice.real() : 0.1 * double(m_dice.below(100)); };
    const double x = number(), y = number(), z = number();
    return NexomapLoadPanoNode(anyPath().c_str(), x, y, z, number(), number(), anyAngle(), -1, -1, "");
}

int RandomCalls::loadMatch()
{
    const auto number = [this] { return oneIn(20) ? m_dice.real() : 0.01 * double(m_dice.below(100)); };
    const std::string a = anyName(), b = anyName();
    return NexomapLoadPanoMatch(a.c_str(), b.c_str(), anyAngle(), anyAngle(), number(), number(), number(),
                                anyAngle(), anyAngle(), number(), oneIn(9) ? 3 : int(m_dice.below(3)),
                                std::abs(number()));
}

int RandomCalls::merge()
{
    return NexomapMergePointCloud(int(m_dice.below(3)), int(m_dice.below(5)), 1, oneIn(4) ? 1 : 0,
                                  int(m_dice.below(3)));
}

/// Saves what there is, drops it, and loads it again; sometimes a file or a number has changed meanwhile.
int RandomCalls::reopen()
{
    std::vector<SavedNode> nodes;
    for (int k = 0; k < NexomapGetPanoNodeNum(); ++k) {
        SavedNode n;
        if (NexomapGetPanoNodeParas(n.name, n.position, n.position + 1, n.position + 2, n.vertex,
                                    n.vertex + 1, &n.direction, &n.plan_x, &n.plan_y, n.plan,
                                    k) == NEXOMAP_OK)
            nodes.push_back(n);
    }
    std::vector<SavedMatch> matches;
    for (int k = 0; k < NexomapGetPanoMatchNum(); ++k) {
        SavedMatch m;
        double* const v = m.values;
        if (NexomapGetPanoMatchParas(m.name_0, m.name_1, v, v + 1, v + 2, v + 3, v + 4, v + 5, v + 6, v + 7,
                                     &m.mode, &m.reliability, k) == NEXOMAP_OK)
            matches.push_back(m);
    }
    if (oneIn(2)) bendMatchFile();
    if (oneIn(4) && !nodes.empty())
        nodes[m_dice.below(nodes.size())].position[m_dice.below(3)] = m_dice.real();
    if (oneIn(4) && !matches.empty())
        matches[m_dice.below(matches.size())].values[m_dice.below(8)] = m_dice.real();
    if (const int status = NexomapReset()) return status;
    for (const SavedNode& n : nodes)
        NexomapLoadPanoNode(MadeUpTour::pathOf(n.name[13] - 'A').c_str(), n.position[0], n.position[1],
                            n.position[2], n.vertex[0], n.vertex[1], n.direction, n.plan_x, n.plan_y, n.plan);
    int status = NEXOMAP_OK;
    for (const SavedMatch& m : matches) {
        const double* const v = m.values;
        status = NexomapLoadPanoMatch(m.name_0, m.name_1, v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7],
                                      m.mode, m.reliability);
    }
    return status;
}

void RandomCalls::bendMatchFile()
{
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder, error))
        if (entry.path().extension() == ".dat") files.push_back(entry.path());
    if (files.empty()) return;
    std::sort(files.begin(), files.end());
    try {
        const std::filesystem::path& victim = files[m_dice.below(files.size())];
        Bytes bytes = m_dice.bend(readFile(victim));
        if (oneIn(2)) BentBytes::sealMatchFile(&bytes);
        writeFile(victim, bytes);
    } catch (const Failure&) { // another thread was at it
    }
}
