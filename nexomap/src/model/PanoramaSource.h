// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Failure.h"
#include "nexomap/src/FrontEnd.h"

namespace nexomap {

/// A node's panorama, read when it is first needed: a reopened tour shows its links without reading pictures.
/// Not for several threads at once.
class PanoramaSource
{
public:
    explicit PanoramaSource(std::shared_ptr<const Panorama> panorama)
        : m_path(panorama->path)
        , m_panorama(std::move(panorama))
    {}
    PanoramaSource(std::string path, std::string id)
        : m_path(std::move(path))
        , m_id(std::move(id))
    {}

    /// @throws Failure(NEXOMAP_BAD_FILE) when the file is gone or now holds another panorama
    const Panorama& get(const FrontEnd& front_end)
    {
        if (m_panorama) return *m_panorama;
        std::string error;
        std::shared_ptr<const Panorama> panorama = front_end.load(m_path, &error);
        if (!panorama) throw Failure(NEXOMAP_BAD_FILE, m_path + ": " + error);
        if (panorama->id != m_id) throw Failure(NEXOMAP_BAD_FILE, m_path + ": holds another panorama now");
        m_panorama = std::move(panorama);
        return *m_panorama;
    }
    /// Null while it was not needed yet.
    const Panorama* loaded() const { return m_panorama.get(); }

private:
    std::string m_path, m_id;
    std::shared_ptr<const Panorama> m_panorama;
};

} // namespace nexomap
