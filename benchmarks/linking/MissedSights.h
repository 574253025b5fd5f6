// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "benchmarks/linking/LinkedSet.h"

#include <set>

/// The true sight lines that stay when the library's rule of needless links is applied to the truth: what is
/// missing of these is missing by fault, not by rule.
std::set<Pair> sightsByRule(const LinkedSet& set);

/// One line for each of them that is no link, with the reason.
void printMissedSights(const LinkedSet& set);
