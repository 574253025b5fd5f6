// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/FrontEnd.h"
#include "tests/nexomap/BentBytes.h"
#include "tests/nexomap/MadeUpTour.h"

#include <filesystem>
#include <string>

/// How many times as many random sequences a test shall run: the environment variable NEXOMAP_TEST_SEQUENCES,
/// else 1.
int sequences();
/// The seed of the first one: the environment variable NEXOMAP_TEST_SEED.
int firstSeed(int otherwise);

/// What the panoramas of a random tour bring.
enum class RandomRanges
{
    All,
    None,       ///< pictures alone, with features of which each pair matched a few only
    EverySecond ///< lidar on every second panorama
};

/// A small tour in one hall, the front end with what the panoramas bring.
MadeUpTour randomTour(RandomRanges ranges);
nexomap::FrontEnd randomFrontEnd(const MadeUpTour& tour, RandomRanges ranges);

/// Calls of the linking library in any order, as nobody sensible would make them. One of these belongs to one
/// thread; several may work on the library at once.
class RandomCalls
{
public:
    /// @param tour    what the library is about to be given; must outlive this
    /// @param folder  the library's working folder, in which match files are damaged now and then
    RandomCalls(const MadeUpTour& tour, std::filesystem::path folder, unsigned seed)
        : m_tour(tour)
        , m_folder(std::move(folder))
        , m_dice(seed)
    {}

    /// Makes one call, or a few that belong together.
    /// @return the last one's status
    int next();

private:
    bool oneIn(std::size_t sides) { return m_dice.below(sides) == 0; }
    int anyStation() { return int(m_dice.below(8)); } ///< the last one has no panorama
    std::string anyName();                            ///< mostly one that is there
    std::string anyPath() { return MadeUpTour::pathOf(anyStation()); }
    double anyAngle() { return oneIn(30) ? m_dice.real() : 0.1 * double(m_dice.below(32)); }
    int linkByHand();
    int loadNode();
    int loadMatch();
    int merge();
    int reopen();
    void bendMatchFile();

    const MadeUpTour& m_tour;
    std::filesystem::path m_folder;
    BentBytes m_dice;
    bool m_cleaned = false;
};
