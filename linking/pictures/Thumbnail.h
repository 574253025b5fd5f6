// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>

class PnoFile;

/// The strip about the horizon of the panorama's smallest level, 256 x 96 pixels. Null when its tile cannot
/// be read or decoded.
QImage panoramaThumbnail(PnoFile& file);
