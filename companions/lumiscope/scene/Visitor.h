// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Where the visitor stands and looks: plain numbers that input changes and drawing reads.

#pragma once

#include "companions/lumiscope/scene/FloorMarker.h"
#include "companions/lumiscope/tour/WalkTour.h"
#include "views/sphere/SphereDrag.h"

#include <optional>

namespace lumiscope {

/// A view in the world's frame, so that it means the same at every station.
struct Look
{
    double heading = 0.0; ///< of the middle of the view, radians counter-clockwise from x, any turn
    double polar = sphere::kHalfPi;
    double zoom = 1.0; ///< 1: the larger side of the view spans 90 degrees
};

/// The same view in the frame of a panorama with this heading of its azimuth 0, and back.
sphere::Camera cameraAt(const Look& look, double direction);
Look lookOf(const sphere::Camera& camera, double direction);

class Visitor
{
public:
    /// Puts the visitor at the tour's entry.
    /// @param tour  outlives the visitor; has at least one station
    explicit Visitor(const WalkTour* tour);

    int station() const { return m_station; }
    const Station& here() const { return m_tour->stations[static_cast<std::size_t>(m_station)]; }
    const Look& look() const { return m_look; }
    sphere::Camera camera() const { return cameraFor(m_station); }
    /// The present view as it is in another station's panorama.
    sphere::Camera cameraFor(int station) const;
    sphere::ViewSize size() const { return m_size; }

    void resize(sphere::ViewSize size);

    /// Steps of the arrow keys: positive to the left and up.
    void turn(int left, int up);
    /// Steps of the wheel and of plus and minus: positive nearer.
    void zoom(int steps);
    /// @param factor  above 0; above 1 nearer
    void zoomBy(double factor);

    void beginDrag(sphere::PixelPoint cursor);
    void drag(sphere::PixelPoint cursor);

    /// Stands at another station and looks the same way in the world.
    void goTo(int station);

    /// Where the marker of a neighbour stands on the screen.
    MarkerSpot spot(const Neighbour& neighbour) const;
    /// Index into the neighbours; the nearest of those whose targets hold the pixel.
    std::optional<int> markerAt(sphere::PixelPoint pixel) const;
    /// The neighbour that the visitor looks towards: of those in the view's width the one nearest to its
    /// middle.
    std::optional<int> markerInView() const;

private:
    double zoomLimit() const;

    const WalkTour* m_tour;
    int m_station = 0;
    Look m_look;
    sphere::ViewSize m_size;
    sphere::ViewDrag m_drag;
};

} // namespace lumiscope
