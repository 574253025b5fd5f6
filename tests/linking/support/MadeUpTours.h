// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Projects made up at random, with every field at its extremes and real files behind them.

#pragma once

#include "project/RoamProject.h"

#include <QString>

#include <random>

/// 0 to 40 panoramas, hotspots, links and plans, the same for the same seed. Holds what the format carries,
/// except for link modes and texts with entities in them, which some of the projects have.
class MadeUpTour
{
public:
    /// @param folder  where the files go, ends in "/"; emptied first
    MadeUpTour(unsigned seed, const QString& folder);

    RoamProject project;

    /// A row of the panorama list, or one outside it.
    int entrySelector();

    /// One more panorama without hotspots.
    /// @param subfolder  of the folder, ends in "/" or is empty
    PanoNode* addPanorama(const QString& subfolder, const QString& baseName);

private:
    unsigned upTo(unsigned most) { return static_cast<unsigned>(m_random()) % (most + 1); }
    bool chance(unsigned oneIn) { return upTo(oneIn - 1) == 0; }
    double real();
    qint32 integer();
    QString text(const QString& alphabet, unsigned longest);
    QString fileName(const QString& ending);
    QString write(const QString& path, const QByteArray& bytes);
    void setPose(PanoNode* node);
    void addHotspots(PanoNode* node);
    void addLinks();
    void addPlans();

    std::mt19937 m_random;
    QString m_folder;
    int m_files = 0;
};
