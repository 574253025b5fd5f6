// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Reads the tour description back into panoramas, hotspots and links.

#pragma once

#include "project/RoamProject.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

namespace tourxml {

/// How a visitor first looks, in the entry panorama's frame, radians.
struct EntryView
{
    double direction = 0.0;              ///< azimuth
    double elevation = 1.5707963267949;  ///< polar angle from the upper pole
    double view_angle = 1.5707963267949; ///< that the larger side of the window spans
};

/// What a description says. Panoramas have no image information, base name, file path and thumbnail yet:
/// those come from the panorama files. Photo and plan paths are bare file names, or empty where the text was
/// none: a description never names a place in the file system.
struct Description
{
    std::vector<std::unique_ptr<PanoNode>> panoramas;
    std::vector<std::unique_ptr<PanoLink>> links;
    quint64 entry_id = 0; ///< identity number of the entry panorama; need not be one of the panoramas
    EntryView entry_view;
};

/// A missing attribute has the default of the format, which differs between attributes of the same meaning. A
/// text that is not a finite number counts as 0. Modes other than "2" become 1; match data turns 1 into 0
/// later.
/// @param error  the reason when false is returned; the description is untouched then
[[nodiscard]] bool read(const QByteArray& xml, Description* description, QString* error);

/// What is left to do on the content of a text hotspot after an XML parser's own unescaping: "&lt;", "&gt;",
/// then "&amp;" once more, so that entities written twice over come out as the character, too.
QString unescapedContent(const QString& text);

} // namespace tourxml
