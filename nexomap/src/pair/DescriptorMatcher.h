// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/pair/MatchKernel.h"
#include "nexomap/src/Panorama.h"

#include <cstdint>
#include <vector>

namespace nexomap {

/// A pair of features whose descriptors are each other's nearest.
struct DescriptorMatch
{
    int index_0 = 0, index_1 = 0;
    int distance2 = 0;        ///< squared Euclidean distance of the descriptors
    int second_distance2 = 0; ///< of index_0's second-nearest
};

/// Kernels that this processor can run, the fastest first.
std::vector<const MatchKernel*> availableMatchKernels();

/// Squared Euclidean distance of two features' descriptors.
int descriptorDistance2(const Features& features_0, int index_0, const Features& features_1, int index_1);

/// Mutual nearest neighbours that pass the ratio test (Lowe 2004), by index_0. The result does not depend on
/// the kernel or on the number of threads.
/// @param descriptors_0, descriptors_1  128 bytes each, values up to 127
/// @param ratio   nearest over second-nearest distance, at most 1
/// @param kernel  null: the fastest
std::vector<DescriptorMatch> matchDescriptors(const std::vector<std::uint8_t>& descriptors_0,
                                              const std::vector<std::uint8_t>& descriptors_1, double ratio,
                                              const MatchKernel* kernel = nullptr);

} // namespace nexomap
