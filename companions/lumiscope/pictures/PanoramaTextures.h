// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The panoramas on the graphics card: the one seen and those that a walk may need.

#pragma once

#include "companions/lumiscope/pictures/PanoramaLoader.h"
#include "views/PanoramaSphere.h"

#include <QImage>

#include <list>
#include <vector>

class QOpenGLFunctions;

namespace lumiscope {

/// Pictures go up a few rows at a time, so that no frame waits for one. Every call but the questions wants
/// the view's context current.
class PanoramaTextures
{
public:
    /// Takes a picture; it can be drawn when `upload` is through with it.
    /// @param like  whose program and mesh it is drawn with; outlives the pictures
    void add(QOpenGLFunctions& gl, int station, int width, const QImage& picture, const PanoramaSphere& like);

    /// Uploads for about so long, pictures of the station `first` before the others.
    /// @param awaited  stop as soon as a picture of the station is complete
    /// @return the stations of which a picture has become complete
    std::vector<int> upload(QOpenGLFunctions& gl, int first, double budget_ms, bool awaited);

    /// Whether pictures are waiting to be uploaded.
    bool isBusy() const;

    /// Whether a picture of this station is.
    bool isWaiting(int station) const;

    /// Whether the picture is there, complete or not.
    bool has(int station, int width) const;

    /// The best complete picture of a station; null when there is none.
    PanoramaSphere* sphere(int station);
    /// Its width in pixels; 0 when there is none.
    int width(int station) const;

    /// Lets go of all pictures but these.
    /// @param stations  whose pictures stay as well as they are
    void keep(QOpenGLFunctions& gl, const std::vector<PictureOrder>& orders,
              const std::vector<int>& stations);

    void release(QOpenGLFunctions& gl);

private:
    struct Slot
    {
        int station = -1;
        int width = 0;
        QImage waiting; ///< null when it is complete
        int rows = 0;   ///< uploaded
        PanoramaSphere sphere;

        bool isComplete() const { return waiting.isNull(); }
    };

    const Slot* best(int station) const;
    bool uploadStep(QOpenGLFunctions& gl, Slot& slot);

    std::list<Slot> m_slots; ///< a list: spheres that are being drawn stay where they are
};

} // namespace lumiscope
