// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// What the point-cloud view asks of the window that shows it. Declared here so that views know no window.
class PntCloudOwner
{
public:
    virtual ~PntCloudOwner() = default;

    /// Asks the author whether the points in the selection may go.
    virtual bool confirmPointDeletion() = 0;
    /// The view has rewritten the cloud file: its compressed twin and the project's state follow.
    virtual void pointCloudRewritten(const QString& path) = 0;
};
