// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/tour/MapPicture.h"

#include "project/PhotoPicture.h"

namespace lumiscope {

MapPicture planPicture(const QString& plan, const QString& path)
{
    MapPicture map;
    map.plan = plan;
    map.image = loadPhoto(path);
    map.size = map.image.isNull() ? QSize() : statedPhotoSize(path);
    return map;
}

} // namespace lumiscope
