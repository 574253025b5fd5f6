// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/editor/PanoMatchEditor.h"

#include "linking/editor/CentreCross.h"
#include "linking/Linker.h"
#include "ui_PanoMatchEditor.h"

#include <QGuiApplication>
#include <QMessageBox>

namespace {

constexpr QSize kPanoramaSize(8192, 4096);
constexpr std::size_t kFewestPairs = 3;

QImage textureFromResource(const char* name)
{
    const QString path = QStringLiteral(":/Tourwright/Resources/") + QLatin1String(name);
    return QImage(path).convertToFormat(QImage::Format_ARGB32).rgbSwapped();
}

} // namespace

PanoMatchEditor::PanoMatchEditor(Linker& linker, QWidget* parent)
    : QDialog(parent, Qt::Window)
    , m_ui(std::make_unique<Ui::PanoMatchEditor>())
    , m_linker(linker)
    , m_images{QImage(kPanoramaSize, QImage::Format_RGB888), QImage(kPanoramaSize, QImage::Format_RGB888)}
    , m_cross{textureFromResource("Cross1.png"), textureFromResource("Cross2.png")}
    , m_digits{textureFromResource("Digital1.png"), textureFromResource("Digital2.png")}
{
    m_ui->setupUi(this);
    // The panoramas must not change below it while it is open.
    setModal(true);

    MarkerImages markers;
    markers.cross = &m_cross[0];
    markers.crossSelected = &m_cross[1];
    markers.digits = &m_digits[0];
    markers.digitsSelected = &m_digits[1];
    for (const int side : {0, 1}) {
        m_images[side].fill(Qt::white);
        view(side)->setUp(nullptr, &m_images[side], markers, HotSpotWidget::FeaturePairs, side);
        new CentreCross(view(side));
    }

    connect(m_ui->buttonAddPair, &QPushButton::clicked, this, &PanoMatchEditor::AddLinkPair);
    connect(m_ui->buttonDelPair, &QPushButton::clicked, this, &PanoMatchEditor::DelLinkPair);
    connect(m_ui->buttonAddLink, &QPushButton::clicked, this, &PanoMatchEditor::AddLink);
    connect(m_ui->buttonCancel, &QPushButton::clicked, this, &PanoMatchEditor::Cancel);
}

PanoMatchEditor::~PanoMatchEditor() = default;

HotSpotWidget* PanoMatchEditor::view(int side) const
{
    return side == 0 ? m_ui->widgetAddLink0 : m_ui->widgetAddLink1;
}

void PanoMatchEditor::setPair(const QByteArray& name_0, const QByteArray& name_1)
{
    m_name_0 = name_0;
    m_name_1 = name_1;
    m_pairs = {};
    for (const int side : {0, 1}) {
        view(side)->resetView();
        view(side)->showPairs(&m_pairs);
    }
}

void PanoMatchEditor::AddLinkPair()
{
    FeaturePair pair;
    pair.point_0 = view(0)->viewingDirection();
    pair.point_1 = view(1)->viewingDirection();
    m_pairs.list.push_back(pair);
}

void PanoMatchEditor::DelLinkPair()
{
    if (m_pairs.selected >= 0) m_pairs.list.erase(m_pairs.list.begin() + m_pairs.selected);
    m_pairs.select(-1);
}

void PanoMatchEditor::Cancel()
{
    close();
}

void PanoMatchEditor::AddLink()
{
    if (m_pairs.list.size() < kFewestPairs) {
        QMessageBox::warning(this, tr("Add Panorama Link"),
                             tr("The number of feature points cannot be less than 3!"));
        return;
    }
    setEnabled(false);
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    handToLibrary();
    Q_EMIT linkComputed();
    QGuiApplication::restoreOverrideCursor();
    setEnabled(true);
    close();
}

void PanoMatchEditor::handToLibrary()
{
    m_linker.addMatch(m_name_0, m_name_1);
    for (const FeaturePair& pair : m_pairs.list)
        m_linker.addLinkPair(m_name_0, m_name_1, pair.point_0.azimuth, pair.point_0.polar,
                             pair.point_1.azimuth, pair.point_1.polar);
    m_linker.analyzeMatch(m_name_0, m_name_1);
    m_linker.relocateAll();
}
