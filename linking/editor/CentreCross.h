// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

/// Cross in the middle of a panorama view, for aiming at a feature of the scene. Lies over the view, follows
/// its size and leaves the mouse to it.
class CentreCross : public QWidget
{
    Q_OBJECT

public:
    /// @param view  becomes the parent and owner
    explicit CentreCross(QWidget* view);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void moveToCentre();
};
