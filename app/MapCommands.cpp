// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The navigation map.

#include "app/Tourwright.h"

void Tourwright::GenMap() {}
