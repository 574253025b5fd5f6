// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/PanoramaInput.h"

#include "companions/pnomaker/PartFile.h"
#include "companions/pnotool/Arguments.h"
#include "companions/pnotool/ClearOnSignal.h"

namespace pnotool {

std::unique_ptr<PnoFile> openPanorama(const std::string& path)
{
    auto file = std::make_unique<PnoFile>();
    const int status = file->Open(path.c_str());
    if (status == pno::Ok) return file;
    failed(path + ": " + statusText(status) + " (status " + std::to_string(status) + ")");
    return nullptr;
}

const char* statusText(int status)
{
    switch (status) {
    case pno::Ok:
        return "a whole panorama file";
    case pno::CannotOpen:
        return "the file cannot be opened";
    case pno::BadLength:
        return "the file is too short, too long or cut off";
    case pno::BadMagic:
        return "this is not a panorama file";
    case pno::BadSegment:
        return "a part of the file is damaged";
    case pno::MissingSegment:
        return "a part of the file is missing";
    default:
        return "the file cannot be used";
    }
}

int writeOutput(const std::string& path, const void* bytes, std::size_t size)
{
    const ClearOnSignal clear(path);
    pnomaker::PartFile file(path);
    if (!file.open() || !file.write(bytes, size) || !file.commit()) return failed(file.error());
    return kDone;
}

} // namespace pnotool
