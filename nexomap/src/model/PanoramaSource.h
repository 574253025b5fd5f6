// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Failure.h"
#include "nexomap/src/FrontEnd.h"

namespace nexomap {

/// A node's panorama, read when it is first needed: a reopened tour shows its links without reading pictures.
/// It can be put to rest: its range map is packed then, until somebody works on it again. Not for several
/// threads at once.
class PanoramaSource
{
public:
    explicit PanoramaSource(std::shared_ptr<const Panorama> panorama)
        : m_path(panorama->path)
        , m_panorama(std::move(panorama))
        , m_used(++s_clock)
    {}
    PanoramaSource(std::string path, std::string id)
        : m_path(std::move(path))
        , m_id(std::move(id))
    {}

    /// Stays valid until the next rest().
    /// @throws Failure(NEXOMAP_BAD_FILE) when the file is gone or now holds another panorama
    const Panorama& get(const FrontEnd& front_end)
    {
        look(front_end);
        if (m_panorama->range.packed) {
            auto awake = std::make_shared<Panorama>(*m_panorama);
            awake->range = m_panorama->range.packed->unpack();
            m_resting = std::move(m_panorama);
            m_panorama = std::move(awake);
        }
        m_used = ++s_clock;
        return *m_panorama;
    }
    /// As get, but a resting panorama may stay so: for its features, and ranges cell by cell.
    const Panorama& look(const FrontEnd& front_end)
    {
        if (m_panorama) return *m_panorama;
        std::string error;
        std::shared_ptr<const Panorama> panorama = front_end.load(m_path, &error);
        if (!panorama) throw Failure(NEXOMAP_BAD_FILE, m_path + ": " + error);
        if (panorama->id != m_id) throw Failure(NEXOMAP_BAD_FILE, m_path + ": holds another panorama now");
        m_panorama = std::move(panorama);
        m_used = ++s_clock;
        return *m_panorama;
    }
    /// Null while it was not needed yet. Its range map may be packed.
    const Panorama* loaded() const { return m_panorama.get(); }

    bool awake() const { return m_panorama && !m_panorama->range.range_m.empty(); }
    /// Grows with every get of any panorama.
    std::uint64_t lastUse() const { return m_used; }
    void rest()
    {
        if (!awake()) return;
        if (!m_resting) {
            auto resting = std::make_shared<Panorama>(*m_panorama);
            resting->range = {};
            resting->range.packed = PackedRange::pack(m_panorama->range);
            m_resting = std::move(resting);
        }
        m_panorama = std::move(m_resting);
    }

private:
    std::string m_path, m_id;
    std::shared_ptr<const Panorama> m_panorama;
    std::shared_ptr<const Panorama> m_resting; ///< while awake: what it was before, so that it is packed once
    std::uint64_t m_used = 0;
    inline static std::uint64_t s_clock = 0; ///< under the library's lock
};

} // namespace nexomap
