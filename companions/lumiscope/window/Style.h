// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// How the controls over the panorama look.

#pragma once

#include <QString>

class QLabel;
class QWidget;

namespace lumiscope {

constexpr int kButtonSide = 36; ///< pixels

/// White on half-transparent black.
QString buttonStyle();

/// A label that shows its text as it is, never as markup.
QLabel* plainLabel(const QString& text, QWidget* parent);

/// The same on a dark ground, for text right over a panorama.
QLabel* groundedLabel(QWidget* parent);

} // namespace lumiscope
