// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// How the window is built and taken down; its commands stand in the files named after their page of work.

#include "app/Tourwright.h"

#include "linking/editor/PanoMatchEditor.h"
#include "linking/Linker.h"
#include "project/UnreadableField.h"
#include "ui_Tourwright.h"

#include <QLabel>
#include <QNetworkAccessManager>
#include <QNetworkReply>

namespace {

constexpr QSize kPanoramaSize(8192, 4096);
constexpr QSize kLinkImageSize(4096, 2048);

QImage textureFromResource(const char* name)
{
    const QString path = QStringLiteral(":/Tourwright/Resources/") + QLatin1String(name);
    return QImage(path).convertToFormat(QImage::Format_ARGB32).rgbSwapped();
}

void setUpTable(QTableWidget* table, const QStringList& headers, const QList<int>& widths)
{
    table->setColumnCount(headers.size());
    table->setHorizontalHeaderLabels(headers);
    for (int column = 0; column < widths.size(); ++column)
        table->setColumnWidth(column, widths[column]);
}

} // namespace

Tourwright::Tourwright(std::unique_ptr<Linker> linker, QWidget* parent)
    : QMainWindow(parent)
    , m_ui(std::make_unique<Ui::TourwrightClass>())
    , m_linker(std::move(linker))
    , m_panoramaImage(kPanoramaSize, QImage::Format_RGB888)
    , m_linkImages{QImage(kLinkImageSize, QImage::Format_RGB888),
                   QImage(kLinkImageSize, QImage::Format_RGB888)}
{
    m_ui->setupUi(this);
    // The views are created in the order in which their OpenGL contexts are wanted, the second panorama
    // first; a reader expects panorama 1 of a link on the left all the same.
    m_ui->layoutLinkViews->setDirection(QBoxLayout::RightToLeft);
    // A scroll area paints its own background, which differs from a page's in many styles.
    m_ui->scrollLink->viewport()->setAutoFillBackground(false);
    m_ui->panelLink->setAutoFillBackground(false);
    m_status = new QLabel(this);
    m_status->setTextFormat(Qt::PlainText);
    m_ui->statusBar->addPermanentWidget(m_status);
    m_warning = new QLabel(this);
    m_warning->setObjectName(QStringLiteral("labelUnreadable"));
    m_warning->setTextFormat(Qt::PlainText);
    // Whatever the author wrote into the field, it may not widen the window.
    m_warning->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_ui->statusBar->addWidget(m_warning, 1);
    loadMarkers();
    setUpViews();
    m_network = new QNetworkAccessManager(this);
    connect(m_network, &QNetworkAccessManager::finished, this, &Tourwright::ReplyFinished);
    connectCommands();
    setUpTables();
    applyEnabling();
}

Tourwright::~Tourwright()
{
    reset();
    m_linker->clean();
}

void Tourwright::handOver(const QString& applicationFolder, const QString& workingFolder,
                          const QString& outputFolder, const QString& viewerPath)
{
    m_project.folders = {applicationFolder, workingFolder, outputFolder, viewerPath};
    m_importFolder = m_photoFolder = applicationFolder;
    m_linker->init(workingFolder);
    NewRoam();
    showStatus();
}

void Tourwright::loadMarkers()
{
    m_markerPhoto[0] = textureFromResource("LinkPhoto1.png");
    m_markerPhoto[1] = textureFromResource("LinkPhoto2.png");
    m_markerInfo[0] = textureFromResource("LinkInfo1.png");
    m_markerInfo[1] = textureFromResource("LinkInfo2.png");
    m_markerLink = textureFromResource("LinkNeighborB2.png");
    m_markerBox[0] = textureFromResource("BoxSel1.png");
    m_markerBox[1] = textureFromResource("BoxSel2.png");
    m_markerDelete = textureFromResource("Delete1.png");
}

void Tourwright::setUpViews()
{
    MarkerImages hotspots;
    hotspots.photo = &m_markerPhoto[0];
    hotspots.photoSelected = &m_markerPhoto[1];
    hotspots.info = &m_markerInfo[0];
    hotspots.infoSelected = &m_markerInfo[1];
    MarkerImages link;
    link.link = &m_markerLink;

    m_ui->widgetPhoto->setUp(this, &m_panoramaImage, hotspots, HotSpotWidget::Hotspots, 0);
    m_ui->widgetLink0->setUp(this, &m_linkImages[0], link, HotSpotWidget::Link, 0);
    m_ui->widgetLink1->setUp(this, &m_linkImages[1], link, HotSpotWidget::Link, 1);
    m_ui->widgetPntCloud->setUp(this, &m_markerBox[0], &m_markerBox[1], &m_markerDelete);
}

void Tourwright::setUpTables()
{
    setUpTable(m_ui->tableLink, {tr("Auto"), tr("Panorama 1"), tr("Panorama 2")}, {55, 205});
    setUpTable(m_ui->tablePhoto, {tr("Image Size"), tr("Hotspot Title")}, {120});
    setUpTable(m_ui->tableInfo, {tr("Content Length"), tr("Hotspot Title")}, {120});
}

// One control, its signal, its command.
template <typename Sender, typename Signal, typename Slot>
void Tourwright::command(Sender* control, Signal signal, Slot slot)
{
    connect(control, signal, this, slot);
    connect(control, signal, this, &Tourwright::showStatus);
}

// The upload dialog's button calls `Upload`, the network manager `ReplyFinished`.
void Tourwright::connectCommands()
{
    command(m_ui->actionNew, &QAction::triggered, &Tourwright::NewRoam);
    command(m_ui->actionOpen, &QAction::triggered, &Tourwright::OpenRoam);
    command(m_ui->actionSave, &QAction::triggered, &Tourwright::SaveRoam);
    command(m_ui->actionSaveAs, &QAction::triggered, &Tourwright::SaveAsRoam);
    command(m_ui->actionQuit, &QAction::triggered, &Tourwright::Quit);
    command(m_ui->actionPreview, &QAction::triggered, &Tourwright::Preview);
    command(m_ui->actionUpload, &QAction::triggered, &Tourwright::UploadConfigure);
    command(m_ui->buttonAddPano, &QPushButton::clicked, &Tourwright::AddPano);
    command(m_ui->buttonDelPano, &QPushButton::clicked, &Tourwright::DelPano);
    command(m_ui->listPano, &QListWidget::currentRowChanged, &Tourwright::SelPano);
    command(m_ui->buttonAutoGenLink, &QPushButton::clicked, &Tourwright::AutoGenLink);
    command(m_ui->buttonAddLink, &QPushButton::clicked, &Tourwright::AddLink);
    command(m_ui->buttonDelLink, &QPushButton::clicked, &Tourwright::DelLink);
    command(m_ui->buttonGenMap, &QPushButton::clicked, &Tourwright::GenMap);
    command(m_ui->tableLink, &QTableWidget::cellClicked, &Tourwright::SelLink);
    command(m_ui->buttonAddPhoto, &QPushButton::clicked, &Tourwright::AddPhoto);
    command(m_ui->buttonDelPhoto, &QPushButton::clicked, &Tourwright::DelPhoto);
    command(m_ui->buttonAddInfo, &QPushButton::clicked, &Tourwright::AddInfo);
    command(m_ui->buttonDelInfo, &QPushButton::clicked, &Tourwright::DelInfo);
    command(m_ui->linePhotoCaption, &QLineEdit::textEdited, &Tourwright::EditPhotoCaption);
    command(m_ui->buttonSelPhoto, &QPushButton::clicked, &Tourwright::EditPhotoSrc);
    command(m_ui->lineInfoCaption, &QLineEdit::textEdited, &Tourwright::EditInfoCaption);
    command(m_ui->plainInfo, &QPlainTextEdit::textChanged, &Tourwright::EditInfoContent);
    command(m_ui->tablePhoto, &QTableWidget::currentCellChanged, &Tourwright::SelPhoto);
    command(m_ui->tableInfo, &QTableWidget::currentCellChanged, &Tourwright::SelInfo);
    // A click on the row that is current already takes the view's selection back from the other table.
    connect(m_ui->tablePhoto, &QTableWidget::cellClicked, m_ui->widgetPhoto, &HotSpotWidget::selectPhoto);
    connect(m_ui->tableInfo, &QTableWidget::cellClicked, m_ui->widgetPhoto, &HotSpotWidget::selectInfo);
}

void Tourwright::showStatus()
{
    const QString name = m_project.file_path.section(QLatin1Char('/'), -1);
    const QString mark = m_project.modified ? QStringLiteral(" *") : QString();
    m_status->setText((name.isEmpty() ? tr("Unnamed tour") : name) + mark + QStringLiteral("   ") +
                      tr("Panoramas: %1").arg(m_project.panoramas.size()) + QStringLiteral("   ") +
                      tr("Links: %1").arg(m_project.links.size()));

    const auto unreadable = firstUnreadableField(m_project);
    m_warning->setText(unreadable ? tr("Cannot be read back once saved: %1 \"%2\"")
                                        .arg(unreadable->field, unreadable->text.simplified())
                                  : QString());
    m_warning->setToolTip(m_warning->text().toHtmlEscaped());
}
