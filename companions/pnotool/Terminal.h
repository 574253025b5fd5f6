// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

namespace pnotool {

/// Whether a person sees standard error, so that progress may be drawn there.
bool errorsGoToTerminal();

} // namespace pnotool
