// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/Usage.h"

namespace pnotool {

const char kUsage[] = R"(pnotool makes panorama files (.pno) and looks into them.

  pnotool make PICTURE --out FILE.pno [options]
  pnotool make DIR --out DIR [options]
  pnotool info FILE.pno [--json]
  pnotool image FILE.pno --width 8192|4096 --out PICTURE
  pnotool tile FILE.pno LEVEL COLUMN ROW --out FILE
  pnotool thumbnail FILE.pno --out PICTURE
  pnotool range FILE.pno --out RANGE.png
  pnotool --help

make: turns an equirectangular picture, twice as wide as high, into a panorama file: a
pyramid of 256 x 256 JPEG tiles. PICTURE is JPEG, PNG or TIFF, 256 to 131072 pixels wide,
and is read as a stream: memory stays at a few hundred MiB however large it is, except that
an interlaced PNG takes 3 bytes a pixel; a large progressive JPEG takes up to 6 bytes a
pixel of temporary disk space. What is transparent stands on black; colour profiles and orientation marks are not applied. The crop that GPano
XMP states is followed, and the capture time of EXIF is taken (1970-01-01 without one).
FILE.pno appears under its name only when it is whole. With a folder, every picture in it
is made into NAME.pno in the folder --out; one that fails is named, and the others go on.
  --id 14LETTERS        identity, A-Z and a-z; derived from the picture's pixels without it
  --name TEXT           name, the picture's base name without it; at most 31 bytes of UTF-8
                        are kept, fewer than 4 are filled up with "_"
  --level 10|11|12      top level, 8192, 11585 or 16384 pixels wide; without it the smallest
                        that keeps the picture's width
  --quality 50..100     JPEG quality, 90 without it; colour is kept at full resolution from
                        95 on; lowered where the file would outgrow the format's 256 MiB
  --polar MIN,MAX       what the picture's rows cover, in radians from the upper pole;
                        0,pi without it. The rest is filled with the nearest row, blurred
  --range RANGE         16-bit grey PNG or TIFF of any size, twice as wide as high: the
                        distance along the ray of every direction, 0 = none
  --range-unit METRES   one step of RANGE, 0.000001 to 1; 0.001 without it
  --points CLOUD        points in metres around the panorama (x to the picture's centre,
                        y to its left, z up): PLY, PTS, or lines "x y z red green blue";
                        thinned to 65536. Without it they are taken from RANGE
  --plan X,Y            the panorama's place on a plan, in pixels; stored with the lidar
  --time ISO8601        capture time, as 2024-05-31T14:30:00.250

info: says what the file holds; exit status 0 only if the file is whole.
image: the whole panorama. The ending of PICTURE names its format, as .png or .jpg.
tile: the bytes of one tile as they are stored. COLUMN 0 is the rightmost.
thumbnail: 256 x 96 pixels about the horizon.
range: the range picture, 8192 x 4096, and its unit.

Exit status: 0 success, 1 the input was refused or the work failed, 2 wrong usage.
)";

} // namespace pnotool
