// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Assembles panoramas on a thread of its own, the most wanted first.

#pragma once

#include <QImage>
#include <QMutex>
#include <QString>
#include <QThread>
#include <QWaitCondition>

#include <vector>

namespace lumiscope {

/// Widths of the assembled pictures, pixels.
constexpr int kSharpWidth = 8192;
constexpr int kCoarseWidth = 4096;

/// One picture of a station.
struct PictureOrder
{
    int station = 0;
    int width = kCoarseWidth;
    QString path;

    bool operator==(const PictureOrder& other) const
    {
        return station == other.station && width == other.width;
    }
};

class PanoramaLoader : public QThread
{
    Q_OBJECT

public:
    explicit PanoramaLoader(QObject* parent = nullptr);
    /// Waits for the picture that is being assembled.
    ~PanoramaLoader() override;

    /// What is wanted now, the first one first; replaces what was wanted before. A picture already begun is
    /// finished and told all the same, and not begun again before it was `taken`. From any thread.
    void want(std::vector<PictureOrder> orders);

    /// The receiver of `loaded` knows of this picture now.
    void taken(int station, int width);

Q_SIGNALS:
    /// @param picture  RGB888; null when the file is no panorama that can be read
    void loaded(int station, int width, const QImage& picture);

protected:
    void run() override;

private:
    bool next(PictureOrder* order);

    QMutex m_mutex;
    QWaitCondition m_changed;
    std::vector<PictureOrder> m_orders;
    std::vector<PictureOrder> m_underway; ///< begun, and not taken yet
    bool m_ending = false;
};

} // namespace lumiscope
