// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Reads the pictures of photo hotspots in bounded memory, whatever their files claim to be.

#pragma once

#include <QImage>
#include <QSize>
#include <QString>

/// No photo of a tour is wider or higher, in pixels.
constexpr int kLargestPhotoSide = 4096;

/// A larger JPEG is not decoded at all: 200 million pixels, the most that cameras deliver in one shot. For
/// other formats, which cannot be scaled while they are read, the limit is half of it.
constexpr qint64 kMostPhotoPixels = 200'000'000;

/// Width and height that the file's header states, before any turning; invalid when the file is no plain
/// file, cannot be read, is no picture, or exceeds the limit of `kMostPhotoPixels`. Decodes nothing.
QSize statedPhotoSize(const QString& path);

/// Whether a picture of this size has to be scaled before it may be part of a tour.
bool exceedsPhotoSide(QSize size);

/// The picture, upright as its camera noted it, scaled smoothly to fit into a square of `kLargestPhotoSide`
/// where it exceeds that, with its aspect ratio kept. The format is told by the content, not by the name.
/// Null where `statedPhotoSize` is invalid or the picture cannot be decoded.
QImage loadPhoto(const QString& path);
