// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

namespace pnotool {

/// The whole of what --help prints.
extern const char kUsage[];

} // namespace pnotool
