// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/graph/GraphEdge.h"

namespace nexomap {

/// log(scale_a) - log(scale_b) = difference, or log(scale_a) = difference when b is negative. Beyond the
/// edges stand heights above the floor, as TieIndex says.
struct Tie
{
    int a, b;
    double difference, weight;
};

/// Where the unknown logarithms stand: the edges' lengths, then the height above the floor that the stations
/// have in common, then each station's own.
struct TieIndex
{
    int edges, nodes;
    int height() const { return edges; }
    int heightOf(int node) const { return edges + 1 + node; }
    int count() const { return edges + 1 + nodes; }
};

/// What ties edges without scale by single points: features that two edges see at a panorama they share (four
/// of one pair of edges, or of two sets of edges that are tied already), ranges of features, and the edges' own
/// length ties.
std::vector<Tie> featureTies(int nodes, const std::vector<GraphEdge>& edges, const std::vector<char>& kept);

/// What ties them by the floor: all edges of a station see it equally far below, and all stations stand about
/// equally high above it.
std::vector<Tie> floorTies(int nodes, const std::vector<GraphEdge>& edges, const std::vector<char>& kept);

/// All the logarithms: least absolute deviations of the ties by reweighting. What nothing ties comes out as
/// 0.
Eigen::VectorXd solveTies(const TieIndex& index, const std::vector<Tie>& ties);

/// Edges that ties join, numbered; -1 for metric edges, 0 for what is tied to the metre.
/// @param count  written: sets, the metre's included
std::vector<int> tiedSets(int nodes, const std::vector<GraphEdge>& edges, const std::vector<char>& kept,
                          const std::vector<Tie>& ties, int* count);

/// How far below the stations the floor lies, by the heights of triangulated points: the fullest narrow level
/// that little lies below and that stands out from its surroundings; 0 without one.
/// @param drops  metres or units below a station; reordered
double floorDrop(std::vector<double>& drops);

/// The upper middle; reorders the values, of which there must be one.
double median(std::vector<double>& values);

} // namespace nexomap
