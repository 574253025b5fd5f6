// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The nine requests of an upload: which path, which query items in which order, which body.

#pragma once

#include "project/RoamProject.h"
#include "publish/UploadRequest.h"

namespace publish {

/// All but the login take the token, the album and its name from `RoamProject::cloud`. Indices are valid
/// ones.
UploadRequest loginRequest(const QString& account, const QString& password);
UploadRequest listRequest(const RoamProject& project);
UploadRequest panoramaRequest(const RoamProject& project, std::size_t panorama);
/// Its entry panorama is the project's; panorama 0 where the entry index names none.
UploadRequest albumRequest(const RoamProject& project);
UploadRequest locationRequest(const RoamProject& project, std::size_t panorama);
UploadRequest linkTagsRequest(const RoamProject& project, std::size_t panorama);
UploadRequest linkRequest(const RoamProject& project, std::size_t link);

/// Whether the file's name tells what the request has to say: 35 characters, two panoramas and the level, for
/// match data; 27 characters, the panorama first, for photos and plans.
bool isModelName(const QString& fileName);
bool isPhotoName(const QString& fileName);
UploadRequest modelRequest(const RoamProject& project, const QString& path);
UploadRequest photoRequest(const RoamProject& project, const QString& path);

/// Identity text of a panorama, which is its name in the service.
QString panoramaId(const RoamProject& project, std::size_t panorama);

} // namespace publish
