// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What the author does to the hotspots of one panorama, without a window. Rows are indexes into the
// panorama's list of photos or of texts; a row that the list does not have changes nothing.

#pragma once

#include "project/PanoNode.h"

namespace hotspots {

/// Appends a photo hotspot without picture and caption.
/// @param azimuth  radians, stored as it is, also outside [-pi, pi]
/// @param polar    radians from the upper pole
void addPhoto(PanoNode& panorama, double azimuth, double polar);
/// The same for a text hotspot.
void addInfo(PanoNode& panorama, double azimuth, double polar);

/// The hotspot of this row; nullptr where there is none. The panorama keeps ownership.
PhotoHotspot* photoAt(PanoNode* panorama, int row);
InfoHotspot* infoAt(PanoNode* panorama, int row);

/// Removes one hotspot, the others keep their order; returns whether there was one.
bool removePhoto(PanoNode& panorama, int row);
bool removeInfo(PanoNode& panorama, int row);

/// Each stores the text and returns whether it differs from the one before.
bool setCaption(PhotoHotspot& photo, const QString& caption);
bool setCaption(InfoHotspot& info, const QString& caption);
bool setContent(InfoHotspot& info, const QString& content);

/// First cell of a photo's row: "WIDTHxHEIGHT", "0x0" without a picture.
QString sizeCell(const PhotoHotspot& photo);
/// First cell of a text's row: the number of characters of its content.
QString lengthCell(const InfoHotspot& info);

} // namespace hotspots
