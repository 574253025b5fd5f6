// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/TestFiles.h"

#include <string>

/// Writes a panorama file whose 8192 x 4096 level looks like a photograph to a decoder: detail at every
/// scale, hard edges, grain.
/// @param identity  14 letters; empty: any
/// @return its path
std::string writeTexturedPanorama(const pnotest::TemporaryFolder& folder, const std::string& name,
                                  const std::string& identity = {});
