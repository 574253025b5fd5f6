// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

/// What a panorama view asks of the window that shows it. Declared here so that views know no window.
class HotSpotOwner
{
public:
    virtual ~HotSpotOwner() = default;

    /// Makes a row of the photo hotspot table current and brings its tab to the front; ignores a row that the
    /// table does not have.
    virtual void selectPhotoRow(int row) = 0;
    /// The same for the text hotspots.
    virtual void selectInfoRow(int row) = 0;
    /// A drag has changed a record of the project.
    virtual void markModified() = 0;
};
