// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Small tours in memory for the tests of the upload.

#pragma once

#include "project/RoamProject.h"

/// `panoramas` panoramas named AAAAAAAAAAAAAA, BBBBBBBBBBBBBB, ..., each linked with the next.
void fillTour(RoamProject& project, int panoramas, int links);
