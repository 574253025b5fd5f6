// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Builder.h"

/// What stands outdoors. Frames: origin on the ground.
namespace samplescene {

/// A house front along x, its outside toward -y, the house behind it. Windows, a door, a sill course, a roof.
void house(Builder& b, const Frame& f, float width, float depth, int floors);
void tree(Builder& b, const Frame& f, float height);
void car(Builder& b, const Frame& f); ///< along x, 4.2 long
void lampPost(Builder& b, const Frame& f);
void bench(Builder& b, const Frame& f);
void signPost(Builder& b, const Frame& f);

} // namespace samplescene
