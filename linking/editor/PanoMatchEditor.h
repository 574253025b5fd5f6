// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "views/FeaturePair.h"

#include <QByteArray>
#include <QDialog>
#include <QImage>

#include <memory>

namespace Ui {
class PanoMatchEditor;
}
class HotSpotWidget;
class Linker;

/// Makes a link by hand in a project with lidar: both panoramas side by side, pairs of directions that show
/// the same feature, and from at least three of them the link, computed by the linking library.
class PanoMatchEditor : public QDialog
{
    Q_OBJECT

public:
    /// @param linker  outlives the editor
    explicit PanoMatchEditor(Linker& linker, QWidget* parent = nullptr);
    ~PanoMatchEditor() override;

    /// Begins a link between two panoramas, named by their identity texts, the smaller first: no pairs, both
    /// views looking straight ahead. The pictures are the owner's to draw, before the editor is shown.
    void setPair(const QByteArray& name_0, const QByteArray& name_1);

    /// Picture of side 0 or 1, equirectangular, 8192 x 4096, 24-bit RGB: to be drawn into, never to be
    /// replaced.
    QImage& image(int side) { return m_images[side]; }

    const FeaturePairs& pairs() const { return m_pairs; }

    /// What a click on a marker does; an index outside the list selects none.
    void selectPair(int index) { m_pairs.select(index); }

public Q_SLOTS:
    void AddLinkPair();
    void DelLinkPair();
    void Cancel();
    void AddLink();

Q_SIGNALS:
    /// The library has taken the pairs and relocated everything: whoever shows its results reads them now.
    /// Sent while the editor is still disabled.
    void linkComputed();

private:
    HotSpotWidget* view(int side) const;
    void handToLibrary();

    const std::unique_ptr<Ui::PanoMatchEditor> m_ui;
    Linker& m_linker;
    QByteArray m_name_0;
    QByteArray m_name_1;
    QImage m_images[2];
    QImage m_cross[2];  ///< normal and selected; this and the following in R, G, B, A order
    QImage m_digits[2]; ///< normal and selected
    FeaturePairs m_pairs;
};
