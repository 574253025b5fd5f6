// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Tours through a painted world that is so far away that it looks the same from everywhere.

#pragma once

#include "project/RoamProject.h"

#include <QColor>
#include <QTemporaryDir>

/// The world is painted by heading and height: sixteen sectors of 22.5 degrees, four bands.
constexpr int kSectors = 16;
constexpr int kBands = 4;
constexpr double kSector = 2.0 * 3.14159265358979323846 / kSectors;

/// What stands in this direction of the world.
QColor worldColour(double heading, double polar);

/// A project and its files, saved as a tour. The folder's name holds Chinese, blanks and an accent.
class WorldTour
{
public:
    WorldTour();

    /// A station with a panorama of the world.
    /// @param sectors  how many sectors its azimuth 0 is turned from the world's x axis
    PanoNode& addStation(const char* identity, const QString& name, int sectors, double x, double y);
    /// A station whose file is no panorama.
    PanoNode& addBrokenStation(const char* identity, const QString& name, double x, double y);

    /// Links two stations by where they stand; the floor lies `kHeight_m` below the camera.
    void link(int first, int second);

    void addPhoto(int station, double azimuth, double polar, const QString& caption, const QColor& colour);
    void addInfo(int station, double azimuth, double polar, const QString& caption, const QString& content);
    /// Makes it the plan of all stations, 50 pixels a metre, y up, the world's origin in the middle.
    void addPlan(QSize size);

    /// Saves the tour and returns its path.
    QString save(int entry = 0);
    QString path(const QString& name) const { return m_folder.path() + QLatin1Char('/') + name; }
    QString write(const QString& name, const QByteArray& bytes) const;

    static constexpr double kHeight_m = 1.5;
    RoamProject project;

private:
    PanoNode& add(const char* identity, const QString& name, double x, double y, const QByteArray& file);

    QTemporaryDir m_folder;
};

/// The same tour with another description.
QByteArray withDescription(const QByteArray& tour, const QByteArray& from, const QByteArray& to);
