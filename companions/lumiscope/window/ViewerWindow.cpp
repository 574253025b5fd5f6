// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Building the window, its layout and its keys; how a tour is shown is in TourShowing.cpp.

#include "companions/lumiscope/window/ViewerWindow.h"

#include "companions/lumiscope/window/ContentPanel.h"
#include "companions/lumiscope/window/MapPanel.h"
#include "companions/lumiscope/window/Style.h"
#include "companions/lumiscope/window/WalkView.h"

#include <QKeyEvent>
#include <QLabel>
#include <QThreadPool>
#include <QToolButton>

namespace lumiscope {

namespace {

constexpr int kPatience_ms = 400;
constexpr int kEdge = 12; ///< pixels between the controls and the window's edge
const QSize kMapSize(300, 230);
const QSize kLeastSize(480, 360);

} // namespace

ViewerWindow::ViewerWindow(QString application, QWidget* parent)
    : QWidget(parent)
    , m_application(std::move(application))
    , m_view(new WalkView(this))
    , m_map(new MapPanel(this))
    , m_photo(new PhotoPanel(this))
    , m_text(new TextPanel(this))
    , m_message(plainLabel(QString(), this))
    , m_place(groundedLabel(this))
    , m_notice(groundedLabel(this))
    , m_hover(groundedLabel(this))
    , m_pictures(std::make_unique<PanoramaLoader>())
{
    setWindowTitle(tr("Lumiscope"));
    setMinimumSize(kLeastSize);
    setStyleSheet(QStringLiteral("lumiscope--ViewerWindow { background: #181c22; }"));
    setAttribute(Qt::WA_StyledBackground);
    buildControls();
    connectView();
    m_patience.setSingleShot(true);
    m_patience.setInterval(kPatience_ms);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        if (!m_tour.stations.empty()) return showPlace();
        m_notice->setText(tr("Loading..."));
        m_notice->setVisible(!m_message->isVisible());
        layOut();
    });
    connect(m_pictures.get(), &PanoramaLoader::loaded, this, &ViewerWindow::takePicture);
    m_pictures->start();
}

ViewerWindow::~ViewerWindow()
{
    m_loader.reset();
    m_pictures.reset();
    QThreadPool::globalInstance()->waitForDone(); // photos are read from the scratch folder
}

QToolButton* ViewerWindow::button(const char* name, const QString& text, const QString& tip)
{
    auto* made = new QToolButton(this);
    made->setObjectName(QLatin1String(name));
    made->setText(text);
    made->setToolTip(tip);
    made->setStyleSheet(buttonStyle());
    made->setFixedSize(kButtonSide, kButtonSide);
    made->setFocusPolicy(Qt::NoFocus); // keys belong to the view
    made->hide();
    return made;
}

void ViewerWindow::buildControls()
{
    m_view->setObjectName(QStringLiteral("view"));
    m_map->setObjectName(QStringLiteral("map"));
    m_message->setObjectName(QStringLiteral("message"));
    m_place->setObjectName(QStringLiteral("place"));
    m_notice->setObjectName(QStringLiteral("notice"));
    m_hover->setObjectName(QStringLiteral("hover"));
    m_message->setAlignment(Qt::AlignCenter);
    m_message->setWordWrap(true);
    m_message->setMargin(40);
    QFont large = m_message->font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    m_message->setFont(large);
    m_message->hide();
    m_map->hide();

    auto* nearer = button("buttonNearer", QStringLiteral("+"), tr("Zoom in (+)"));
    auto* farther = button("buttonFarther", QStringLiteral(u"\u2212"), tr("Zoom out (-)"));
    auto* full = button("buttonFullScreen", QStringLiteral(u"\u2922"), tr("Full screen (F11)"));
    m_mapButton = button("buttonMap", QStringLiteral(u"\u25BE"), tr("Show or fold the map (M)"));
    m_buttons = {nearer, farther, full};
    connect(nearer, &QToolButton::clicked, this, [this] { m_view->zoom(1); });
    connect(farther, &QToolButton::clicked, this, [this] { m_view->zoom(-1); });
    connect(full, &QToolButton::clicked, this, &ViewerWindow::toggleFullScreen);
    connect(m_mapButton, &QToolButton::clicked, this, &ViewerWindow::foldMap);
    for (QWidget* panel : {static_cast<QWidget*>(m_photo), static_cast<QWidget*>(m_text)})
        panel->raise();
}

void ViewerWindow::connectView()
{
    connect(m_view, &WalkView::stationChosen, this, &ViewerWindow::goTo);
    connect(m_view, &WalkView::photoChosen, this, &ViewerWindow::openPhoto);
    connect(m_view, &WalkView::infoChosen, this, &ViewerWindow::openInfo);
    connect(m_view, &WalkView::turned, this, &ViewerWindow::turnMap);
    connect(m_view, &WalkView::hovered, this, &ViewerWindow::hover);
    connect(m_view, &WalkView::ready, this, &ViewerWindow::arrive);
    // The next pictures are begun when the frame that the visitor waits for is there.
    connect(m_view, &WalkView::painted, this, &ViewerWindow::seeFrame, Qt::QueuedConnection);
    connect(m_view, &WalkView::walked, this, &ViewerWindow::orderPictures, Qt::QueuedConnection);
    connect(m_map, &MapPanel::stationChosen, this, &ViewerWindow::goTo);
    for (ContentPanel* panel : {static_cast<ContentPanel*>(m_photo), static_cast<ContentPanel*>(m_text)})
        connect(panel, &ContentPanel::closed, m_view, QOverload<>::of(&QWidget::setFocus));
}

void ViewerWindow::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_view->setFocus();
    // Without a driver that can draw there would be an empty window and no word.
    QTimer::singleShot(0, this, [this] {
        if (!m_view->isValid() || !m_view->isUsable())
            showMessage(
                tr("The graphics driver of this computer cannot show panoramas: OpenGL 2.1 is needed."));
    });
}

void ViewerWindow::resizeEvent(QResizeEvent*)
{
    layOut();
}

void ViewerWindow::layOut()
{
    m_view->setGeometry(rect());
    m_message->setGeometry(rect());
    for (QWidget* panel : {static_cast<QWidget*>(m_photo), static_cast<QWidget*>(m_text)})
        panel->setGeometry(rect());
    const QSize map = kMapSize.boundedTo(QSize(width() / 2, height() / 2));
    m_map->setGeometry(kEdge, height() - kEdge - map.height(), map.width(), map.height());
    const int foldTop = m_folded ? height() - kEdge - kButtonSide : m_map->y() - kButtonSide - 6;
    m_mapButton->move(kEdge, foldTop);
    int bottom = height() - kEdge;
    for (auto each = m_buttons.rbegin(); each != m_buttons.rend(); ++each) {
        (*each)->move(width() - kEdge - kButtonSide, bottom - kButtonSide);
        bottom -= kButtonSide + 6;
    }
    m_place->adjustSize();
    m_place->move(kEdge, kEdge);
    m_notice->adjustSize();
    m_notice->move((width() - m_notice->width()) / 2, (height() - m_notice->height()) / 2);
}

void ViewerWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F11)
        toggleFullScreen();
    else if (event->key() == Qt::Key_Escape && isFullScreen())
        toggleFullScreen();
    else if (event->key() == Qt::Key_M && !m_tour.stations.empty())
        foldMap();
    else
        event->ignore();
}

void ViewerWindow::toggleFullScreen()
{
    setWindowState(windowState() ^ Qt::WindowFullScreen);
}

void ViewerWindow::foldMap()
{
    m_folded = !m_folded;
    m_map->setVisible(!m_folded);
    m_mapButton->setText(m_folded ? QStringLiteral(u"\u25B4") : QStringLiteral(u"\u25BE"));
    layOut();
}

void ViewerWindow::hover(const QString& text, QPoint at)
{
    m_hover->setVisible(!text.isEmpty());
    if (text.isEmpty()) return;
    m_hover->setText(text);
    m_hover->setMaximumWidth(width() / 2);
    m_hover->adjustSize();
    const int left = qBound(0, at.x() + 14, qMax(0, width() - m_hover->width()));
    const int top = qBound(0, at.y() - m_hover->height() - 8, qMax(0, height() - m_hover->height()));
    m_hover->move(left, top);
}

} // namespace lumiscope
