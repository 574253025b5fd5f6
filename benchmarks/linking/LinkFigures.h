// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "benchmarks/linking/LinkedSet.h"

/// How far a relative pose is from the truth.
struct PairError
{
    double rotation_deg = 180.0;
    double direction_deg = 180.0; ///< of the baseline; 0 where the stations stand within 20 cm
    double shift_m = 1e9;
};

PairError errorOf(const nexomap::RigidPose& found, const nexomap::RigidPose& truth);
/// 1 degree, and 10 cm with ranges or 5 degrees of direction without.
bool isRight(const PairError& error, bool ranged);
/// Beyond any noise: the two stand elsewhere. More than 10 degrees, or 30 degrees of direction.
bool isGross(const PairError& error);

/// One set or several sets' figures; sums, so that sets can be added up.
struct LinkFigures
{
    struct Band
    {
        int pairs = 0, measured = 0, final_right = 0;
    };
    static constexpr double kBandFrom[] = {0.3, 0.15, 0.05, 0.01};
    Band bands[4];
    std::vector<double>
        pose_errors_deg; ///< the larger of rotation and direction, pairs of 0.3 and more; 180: apart
    int panoramas = 0, placed = 0, groups = 0, sets = 0;
    int links = 0, wrong = 0, gross = 0, trusted = 0, trusted_wrong = 0;
    int links_with_sight = 0, sights = 0, sights_linked = 0, near_sights = 0, near_sights_linked = 0;
    int ruled_sights = 0, ruled_sights_linked = 0; ///< that the rule of needless links leaves
    int measured = 0, measured_wrong = 0, measured_gross = 0, measured_trusted_wrong = 0;
    std::vector<std::pair<double, bool>> reliabilities; ///< of measured pairs, with whether they are right
    std::vector<double> chi2; ///< squared errors of right metric pairs in units of the graph's covariance
    std::vector<double> headings_deg;       ///< errors over the largest groups
    double squares_m2 = 0.0, worst_m = 0.0; ///< of stations in the largest groups
    double seconds = 0.0;

    void add(const LinkFigures& other);
};

LinkFigures figuresOf(const LinkedSet& set);
void printFigures(const std::string& name, const LinkFigures& figures);
/// Stated against true reliability, ten bins, and the expected calibration error.
void printCalibration(const LinkFigures& figures);
/// Errors of every right metric pair against its stated deviations.
void printPairs(const LinkedSet& set);
/// Every wrong link and every grossly wrong measured pair, and the sight lines that are missing though no
/// chain of links takes their place.
void printWrong(const LinkedSet& set);
