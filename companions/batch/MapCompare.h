// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The command "compare --map": a merged cloud and a plan against the true surfaces of a made-up building.

#pragma once

#include "companions/batch/PoseFile.h"

#include <QString>
#include <QStringList>

/// Prints what the newest cloud and the plan of a work folder are worth, after the report's poses are brought
/// into the frame of the true ones.
/// @param truthPath  truth.json; surfaces.ply and floorplan.json lie beside it
/// @param work       the folder that stood for the program's
/// @param group      identities of the panoramas in the map
/// @return what is wrong, or empty
QString compareMap(const QString& reportPath, const QString& truthPath, const QString& work,
                   const QStringList& group);
