// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The grammar of the tour description: one place builds its elements, for the tour file and for the upload.

#pragma once

#include "project/RoamProject.h"

#include <QString>

/// Every attribute is written as it stands, without escaping: that is the format, so a quotation mark in a
/// caption or name makes the text ill-formed. Only the content of `link_info` is escaped. Numbers are
/// fixed-point with a decimal point under every locale; a value that is not finite is written as zero.
namespace tourxml {

/// `value` with exactly `digits` digits after the point, rounded to nearest.
QString fixedPoint(double value, int digits = 7);

/// The identity text of a 16-byte field, each byte as Latin-1.
QString identityText(const char (&name)[16]);

/// "&", "<" and ">" as entities.
QString escapedContent(const QString& content);

/// One element each, without tabs before and line end after.
QString location(const PanoNode& node);
QString linkPhoto(const PhotoHotspot& photo);
QString linkInfo(const InfoHotspot& info);

/// The tour file tells a link's reliability, the album service does not take it.
enum class Reliability
{
    Written,
    LeftOut
};
QString panoLink(const PanoLink& link, Reliability reliability = Reliability::Written);

/// The hotspots of a panorama as lines (four tabs, element, CR LF): photos that have a file, then texts.
QString hotspotLines(const PanoNode& node);

/// The whole description, empty when the project has no panorama. Settles the project's entry panorama first.
/// @param entrySelector  row of the entry panorama; a negative one, or one behind the last panorama, means
///                       the first panorama; stored as the project's entry index
QString build(RoamProject& project, int entrySelector);

} // namespace tourxml
