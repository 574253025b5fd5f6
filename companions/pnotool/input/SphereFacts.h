// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnotool/input/PictureSource.h"

#include <optional>
#include <string>

namespace pnotool {

/// What an XMP packet says in the GPano schema (namespace http://ns.google.com/photos/1.0/panorama/).
struct SphereFacts
{
    std::string projection; ///< "equirectangular" where it is stated; may be empty
    std::optional<SphereCrop> crop;
};

/// Values stand as attributes or as elements, under whatever prefix the packet binds to the namespace.
SphereFacts sphereFacts(const std::string& xmp);

} // namespace pnotool
