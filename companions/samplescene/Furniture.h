// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/samplescene/Builder.h"

/// Single pieces of furniture. Frames: origin on the floor at the middle of the back, x to the right as seen
/// from the wall, y away from the wall, unless said otherwise. Sizes in metres.
namespace samplescene {

void bed(Builder& b, const Frame& f, float width);                    ///< head at the back, 2.05 long
void wardrobe(Builder& b, const Frame& f, float width, float height); ///< 0.6 deep
void bookcase(Builder& b, const Frame& f, float width, float height); ///< 0.3 deep
void desk(Builder& b, const Frame& f, float width, int monitors);     ///< 0.75 deep, with a chair before it
void sofa(Builder& b, const Frame& f, float width);                   ///< 0.9 deep
void armchair(Builder& b, const Frame& f);                            ///< 0.85 square
void coffeeTable(Builder& b, const Frame& f);                         ///< origin: the middle
void televisionBench(Builder& b, const Frame& f, float width);        ///< 0.42 deep
void diningTable(Builder& b, const Frame& f, float length,
                 float breadth);                          ///< origin: the middle; chairs around it
void officeChair(Builder& b, const Frame& f);             ///< origin: the middle
void kitchenRow(Builder& b, const Frame& f, float width); ///< 0.62 deep
void refrigerator(Builder& b, const Frame& f);            ///< 0.6 wide, 0.64 deep
void bathtub(Builder& b, const Frame& f);                 ///< 1.7 wide, 0.75 deep
void toilet(Builder& b, const Frame& f);                  ///< 0.4 wide, 0.65 deep
void washbasin(Builder& b, const Frame& f);               ///< 0.6 wide, 0.48 deep, with a small mirror
void sideboard(Builder& b, const Frame& f, float width, float height); ///< 0.42 deep, things on top
void plant(Builder& b, const Frame& f, float height);                  ///< origin: the middle
void floorLamp(Builder& b, const Frame& f);                            ///< origin: the middle
void coatRack(Builder& b, const Frame& f, float width);                ///< hangs on the wall at 1.7
void cardboardBoxes(Builder& b, const Frame& f);                       ///< origin: the middle

/// Flat things: origin on the wall at their middle.
void framedPrint(Builder& b, const Frame& f, Print kind, float width, float height);
void wallMirror(Builder& b, const Frame& f, float width, float height);
void clock(Builder& b, const Frame& f);
void wallShelf(Builder& b, const Frame& f, float width);

void curtains(Builder& b, const Frame& f, float windowWidth, float top); ///< origin: floor below the window
void radiator(Builder& b, const Frame& f, float width);
void ceilingLamp(Builder& b, const Frame& f, float ceiling, int model,
                 float power); ///< origin: floor below it
void books(Builder& b, const Frame& f, float width, float height,
           float depth); ///< a row standing on f's origin level

} // namespace samplescene
