// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Gives a photo hotspot its picture: always a copy in the working folder, never the file that was chosen.

#pragma once

#include "project/PanoNode.h"

#include <QImage>
#include <QString>
#include <QTime>

enum class PhotoOutcome
{
    Chosen,
    NotAPicture, ///< no plain file, unreadable, no picture, damaged, or above `kMostPhotoPixels`
    NotCopied    ///< there is no place for the copy, or it cannot be written
};

struct ChosenPhoto
{
    PhotoOutcome outcome = PhotoOutcome::NotAPicture;
    QString path;   ///< full path of the copy; empty unless chosen
    QImage picture; ///< the copy's content; null unless chosen
};

/// Where the copy goes: working folder + the panorama's identity text + "-" + eight digits + ".jpg". The
/// digits follow from the time, in seconds since midnight; where that name is taken, the next eight are
/// drawn.
/// @param workingFolder  ends in "/"
/// @param chosen         full path of the chosen file
/// @return empty when `chosen` has no "/" or the identity text cannot be part of a file name
QString photoCopyPath(const QString& workingFolder, const PanoNode& panorama, const QString& chosen,
                      QTime now);

/// Copies a picture to `destination`: unchanged, or, where it exceeds `kLargestPhotoSide`, scaled to fit and
/// written as JPEG of quality 90. On failure nothing is left at `destination`, and a file that was there
/// stays as it was.
ChosenPhoto copyPhoto(const QString& chosen, const QString& destination);

/// Copies a picture into the working folder and makes it the hotspot's; the hotspot changes only when the
/// outcome is `Chosen`.
/// @param panorama  the panorama that the hotspot belongs to
ChosenPhoto choosePhoto(const PanoNode& panorama, PhotoHotspot& photo, const QString& chosen,
                        const QString& workingFolder);
